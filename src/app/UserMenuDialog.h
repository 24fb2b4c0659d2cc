#pragma once
// TUserMenuForm: the dialog of one menu item with a kind, a name and the
// code that the companion editor inserts. The user menu page and the
// completion pages share it. Created once and reused.

#include "base/Types.h"

#include <QDialog>

#include <array>
#include <functional>

class QComboBox;
class TUniBitBtn;
class TUniEdit;
class TUniLabel;
class TUniMemo;

// Memo text to stored item text and back. Only these dialogs rewrite item
// text this way; the file reader and writer have rules of their own.
WideString EscapeItemText(const WideString& Text);
WideString UnescapeItemText(const WideString& Text);

// The kind combo's rows are the kinds 0 to 19 and "None". The two mappings
// are not inverse on purpose: kind 20 opens with no row selected, and no
// row as well as "None" give kind 20 back.
int KindFromComboIndex(int ComboIndex);
int ComboIndexFromKind(int Kind);
extern const std::array<const char16_t*, 21> KindCaptions;

class TUserMenuForm : public QDialog {
    Q_OBJECT
public:
    explicit TUserMenuForm(QWidget* Parent = nullptr);

    WideString Caption() const { return windowTitle().toStdU16String(); }
    void SetCaption(const WideString& Value) { setWindowTitle(QString::fromStdU16String(Value)); }

    // Runs the dialog and gives its modal result. With ModalHook set, the
    // hook plays the user instead of a modal loop: it fills the controls and
    // returns the result.
    int ShowModal();
    std::function<int(TUserMenuForm& Form)> ModalHook;

    void FormShow();

    TUniLabel* UniLabel2;
    TUniEdit* txtItem;
    QComboBox* ComboBoxEx1;
    TUniLabel* UniLabel3;
    TUniMemo* DataMemo;
    TUniBitBtn* UniBitBtn1;
    TUniBitBtn* UniBitBtn2;

protected:
    void showEvent(QShowEvent* Event) override;
    void reject() override;
};
