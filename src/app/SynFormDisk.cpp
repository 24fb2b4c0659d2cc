// The document's file and other programs: a definition that another
// program saved while it was open here is never overwritten without a
// question, and the user may reload it instead of keeping the edits.

#include "app/SynEditor.h"

#include "base/Dialogs.h"
#include "base/ui/QtDialogs.h"

#include <QDateTime>
#include <QEvent>
#include <QFile>
#include <QFileInfo>

namespace {

const WideString DiskCaption = u"KV Scribex Message";

WideString DisplayName(const AnsiString& FileName) {
    return QFileInfo(QFile::decodeName(QByteArray::fromStdString(FileName)))
        .fileName()
        .toStdU16String();
}

} // namespace

TSynForm::TDiskState TSynForm::ReadDiskState(const AnsiString& FileName) {
    TDiskState state;
    state.FileName = FileName;
    const QFileInfo info(QFile::decodeName(QByteArray::fromStdString(FileName)));
    state.Exists = info.exists();
    if (state.Exists) {
        state.Size = info.size();
        state.ModifiedMs = info.lastModified().toMSecsSinceEpoch();
    }
    return state;
}

bool TSynForm::DiskChanged() const {
    // Only the document's own file counts; a document without one has none.
    if (FDisk.FileName.empty() || FDisk.FileName != SaveDialog.FileName) return false;
    return !(ReadDiskState(FDisk.FileName) == FDisk);
}

void TSynForm::CheckDiskChange() {
    if (FAskingAboutDisk || !DiskChanged()) return;
    FAskingAboutDisk = true;
    const TDiskState now = ReadDiskState(FDisk.FileName);
    const WideString name = DisplayName(FDisk.FileName);
    int answer = IDNO;
    if (now.Exists) {
        answer = InstalledDialogs().MessageBox(
            u"The file \"" + name +
                u"\" has been changed by another program.\n\nReload it? Your changes here are "
                u"lost. No keeps the document as it is here.",
            DiskCaption, MB_YESNO | MB_ICONWARNING);
    } else {
        InstalledDialogs().MessageBox(u"The file \"" + name +
                                          u"\" has been removed or renamed by another program. "
                                          u"Save keeps the document as it is here.",
                                      DiskCaption, MB_OK | MB_ICONWARNING);
    }
    FAskingAboutDisk = false;
    if (answer == IDYES) {
        const AnsiString file = FDisk.FileName;
        OpenDocument(file);
        SaveDialog.FileName = file;
    } else {
        // Kept: this state of the disk is known now, and a save may replace it.
        FDisk = now;
        if (!now.Exists) MarkModified();
    }
}

bool TSynForm::ConfirmOverwriteChanged() {
    if (!DiskChanged() || !ReadDiskState(FDisk.FileName).Exists) return true;
    const int answer = InstalledDialogs().MessageBox(
        u"The file \"" + DisplayName(FDisk.FileName) +
            u"\" has been changed by another program since it was opened here.\n\n"
            u"Overwrite it with the document as it is here?",
        DiskCaption, MB_YESNO | MB_ICONWARNING);
    return answer == IDYES;
}

void TSynForm::changeEvent(QEvent* Event) {
    QWidget::changeEvent(Event);
    // Checked once the window is active again, never inside the activation.
    if (Event->type() == QEvent::ActivationChange && isActiveWindow())
        QMetaObject::invokeMethod(this, &TSynForm::CheckDiskChange, Qt::QueuedConnection);
}
