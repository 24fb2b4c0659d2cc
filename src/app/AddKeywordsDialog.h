#pragma once
// TAddForm: collects new keywords or tags for a group, one at a time, into
// a list. Only the list counts on OK. Created once and reused.

#include <QDialog>

#include <functional>

class TUniBitBtn;
class TUniEdit;
class TUniLabel;
class TUniListBox;

class TAddForm : public QDialog {
    Q_OBJECT
public:
    explicit TAddForm(QWidget* Parent = nullptr);

    // Runs the dialog and gives its modal result; ModalHook, when set, plays
    // the user instead of a modal loop and returns the result.
    int ShowModal();
    std::function<int(TAddForm& Form)> ModalHook;

    void FormShow();
    void btnAddClick();
    void btnDelClick();
    void EditKeyDown(int& Key);

    TUniLabel* UniLabel1;
    TUniEdit* Edit;
    TUniListBox* List;
    TUniBitBtn* btnAdd;
    TUniBitBtn* btnDel;
    TUniBitBtn* btnOk;
    TUniBitBtn* btnAbort;

protected:
    void showEvent(QShowEvent* Event) override;
    void reject() override;
};
