#include "base/ui/QtDialogs.h"

#include "wide/CodePage.h"

#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QInputDialog>
#include <QMessageBox>

#include <cstdio>

namespace {

QString Q(const WideString& S) {
    return QString::fromStdU16String(S);
}

QString FromNarrowPath(const AnsiString& Path) {
    return QFile::decodeName(QByteArray::fromStdString(Path));
}
AnsiString ToNarrowPath(const QString& Path) {
    return QFile::encodeName(Path).toStdString();
}

bool NativeDialogs = true;

bool RunFileDialog(QWidget* Parent, TFileDialogParams& Params, bool Save) {
    QFileDialog dialog(Parent);
    PrepareFileDialog(dialog, Params, Save);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return false;
    Params.FileName = ToNarrowPath(dialog.selectedFiles().first());
    // Equal filter texts are told apart by position: the first match wins.
    const int index = ToQtNameFilters(Params.Filter).indexOf(dialog.selectedNameFilter());
    if (index >= 0) Params.FilterIndex = index + 1;
    return true;
}

} // namespace

void PrepareFileDialog(QFileDialog& Dialog, const TFileDialogParams& Params, bool Save) {
    // An empty title leaves the dialog its own ("Open", "Save As").
    if (!Params.Title.empty()) Dialog.setWindowTitle(Q(Params.Title));
    Dialog.setAcceptMode(Save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    Dialog.setFileMode(Save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    Dialog.setOption(QFileDialog::DontUseNativeDialog, !NativeDialogs);
    if (!Params.OverwritePrompt) Dialog.setOption(QFileDialog::DontConfirmOverwrite);
    const QStringList filters = ToQtNameFilters(Params.Filter);
    Dialog.setNameFilters(filters);
    if (Params.FilterIndex >= 1 && Params.FilterIndex <= filters.size())
        Dialog.selectNameFilter(filters[Params.FilterIndex - 1]);
    if (!Params.DefaultExt.empty()) Dialog.setDefaultSuffix(Q(Params.DefaultExt));
    if (!Params.InitialDir.empty()) Dialog.setDirectory(FromNarrowPath(Params.InitialDir));
    if (!Params.FileName.empty()) Dialog.selectFile(FromNarrowPath(Params.FileName));
}

QStringList ToQtNameFilters(const WideString& Filter) {
    const QStringList parts = Q(Filter).split(QLatin1Char('|'));
    QStringList result;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1];
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        result << parts[i] + QStringLiteral(" (") + patterns + QLatin1Char(')');
    }
    return result;
}

bool Headless() {
    return QGuiApplication::platformName() == QLatin1String("offscreen");
}

int TQtDialogs::MessageBox(const WideString& Text, const WideString& Caption, unsigned Flags) {
    if (Headless()) {
        // Nobody can answer a box without a screen: say it on the error
        // stream and take the answer of Escape, so a headless run never waits.
        std::fprintf(stderr, "%s: %s\n", qPrintable(Q(Caption)), qPrintable(Q(Text)));
        const unsigned set = Flags & 0xF;
        return set == MB_OK ? IDOK : set == MB_YESNO ? IDNO : IDCANCEL;
    }
    QMessageBox box(Parent);
    box.setWindowTitle(Q(Caption));
    box.setText(Q(Text));
    switch (Flags & 0xF0) {
    case MB_ICONERROR:
        box.setIcon(QMessageBox::Critical);
        break;
    case MB_ICONQUESTION:
        box.setIcon(QMessageBox::Question);
        break;
    case MB_ICONWARNING:
        box.setIcon(QMessageBox::Warning);
        break;
    case MB_ICONINFORMATION:
        box.setIcon(QMessageBox::Information);
        break;
    default:
        break;
    }
    struct {
        unsigned Set;
        QMessageBox::StandardButtons Buttons;
    } sets[] = {{MB_OK, QMessageBox::Ok},
                {MB_OKCANCEL, QMessageBox::Ok | QMessageBox::Cancel},
                {MB_YESNOCANCEL, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel},
                {MB_YESNO, QMessageBox::Yes | QMessageBox::No}};
    for (const auto& s : sets)
        if ((Flags & 0xF) == s.Set) box.setStandardButtons(s.Buttons);
    switch (box.exec()) {
    case QMessageBox::Ok:
        return IDOK;
    case QMessageBox::Yes:
        return IDYES;
    case QMessageBox::No:
        return IDNO;
    default:
        return IDCANCEL;
    }
}

bool TQtDialogs::InputQuery(const WideString& Caption, const WideString& Prompt,
                            AnsiString& Value) {
    bool ok = false;
    const QString text = QInputDialog::getText(Parent, Q(Caption), Q(Prompt), QLineEdit::Normal,
                                               Q(AnsiToWide(Value)), &ok);
    if (!ok) return false;
    // The input box is narrow: what it returns passes through the code page.
    Value = WideToAnsi(text.toStdU16String());
    return true;
}

bool TQtDialogs::NativeFileDialogs() {
    return NativeDialogs;
}

void TQtDialogs::SetNativeFileDialogs(bool Value) {
    NativeDialogs = Value;
}

bool TQtDialogs::OpenDialog(TFileDialogParams& Params) {
    return RunFileDialog(Parent, Params, false);
}

bool TQtDialogs::SaveDialog(TFileDialogParams& Params) {
    return RunFileDialog(Parent, Params, true);
}

TDialogs& InstalledDialogs() {
    if (TDialogs* dialogs = Dialogs()) return *dialogs;
    static TQtDialogs fallback;
    return fallback;
}
