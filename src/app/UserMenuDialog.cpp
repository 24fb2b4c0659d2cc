#include "app/UserMenuDialog.h"

#include "app/KindIcons.h"
#include "base/Strings.h"
#include "controls/ui/UniControls.h"

#include <QComboBox>

const std::array<const char16_t*, 21> KindCaptions = {
    u"Load",   u"Variable", u"Property", u"Event",  u"Method", u"Function", u"Procedure",
    u"Tag",    u"Method 2", u"Class",    u"misc 0", u"misc 1", u"misc 2",   u"misc 3",
    u"misc 4", u"misc 5",   u"misc 6",   u"misc 7", u"misc 8", u"misc 9",   u"None"};

WideString EscapeItemText(const WideString& Text) {
    // The quote first, so the backslashes added here are never touched again.
    const WideString quoted = ReplaceAll(Text, u"\"", u"\\\"");
    return ReplaceAll(quoted, u"\r\n", u"\x000C");
}

WideString UnescapeItemText(const WideString& Text) {
    const WideString unquoted = ReplaceAll(Text, u"\\\"", u"\"");
    return ReplaceAll(unquoted, u"\x000C", u"\r\n");
}

int KindFromComboIndex(int ComboIndex) {
    return ComboIndex >= 0 && ComboIndex <= 19 ? ComboIndex : 20;
}

int ComboIndexFromKind(int Kind) {
    const int masked = Kind & 0x7F;
    return masked <= 19 ? masked : -1;
}

TUserMenuForm::TUserMenuForm(QWidget* Parent) : QDialog(Parent) {
    setWindowTitle(QStringLiteral("User"));
    setFixedSize(353, 243); // fixed single border
    setProperty("SingleBorder", true); // the skin draws a single border, not a dialog frame
    setWindowFlags(Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);

    UniLabel2 = new TUniLabel(u"Item", this);
    UniLabel2->setGeometry(8, 8, 60, 16);
    txtItem = new TUniEdit(this);
    txtItem->setGeometry(8, 24, 177, 21);

    ComboBoxEx1 = new QComboBox(this);
    ComboBoxEx1->setGeometry(192, 24, 153, 22);
    ComboBoxEx1->setIconSize(QSize(16, 16));
    ComboBoxEx1->setMaxVisibleItems(8); // DropDownCount
    for (int i = 0; i < int(KindCaptions.size()); ++i) {
        const QString caption = QString::fromUtf16(KindCaptions[std::size_t(i)]);
        if (i < KindIconCount)
            ComboBoxEx1->addItem(QIcon(KindPixmap(i)), caption);
        else
            ComboBoxEx1->addItem(caption); // "None" has no image
    }
    ComboBoxEx1->setCurrentIndex(-1); // no row until the first Edit chooses one

    UniLabel3 = new TUniLabel(u"Code", this);
    UniLabel3->setGeometry(8, 52, 60, 16);
    DataMemo = new TUniMemo(this);
    DataMemo->setGeometry(8, 68, 337, 136);
    DataMemo->SetWordWrap(false);
    DataMemo->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    DataMemo->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);

    UniBitBtn1 = new TUniBitBtn(u"", this);
    UniBitBtn1->SetKind(bkOK);
    UniBitBtn1->setGeometry(190, 212, 75, 25);
    UniBitBtn2 = new TUniBitBtn(u"", this);
    UniBitBtn2->SetKind(bkCancel);
    UniBitBtn2->setGeometry(270, 212, 75, 25);
    txtItem->setAccessibleName(QStringLiteral("Item"));
    ComboBoxEx1->setAccessibleName(QStringLiteral("Kind"));
    DataMemo->setAccessibleName(QStringLiteral("Code"));
    DataMemo->setAccessibleDescription(QStringLiteral("Ctrl+Tab leaves the code"));
    UniBitBtn1->setAccessibleName(QStringLiteral("OK"));
    UniBitBtn2->setAccessibleName(QStringLiteral("Cancel"));
}

int TUserMenuForm::ShowModal() {
    if (ModalHook) {
        FormShow();
        return ModalHook(*this);
    }
    return exec();
}

void TUserMenuForm::FormShow() {
    ComboBoxEx1->setFocus();
    txtItem->setFocus(); // the name field ends with the focus
}

void TUserMenuForm::showEvent(QShowEvent* Event) {
    QDialog::showEvent(Event);
    FormShow();
}

void TUserMenuForm::reject() {
    done(2); // closing the window counts as Cancel
}
