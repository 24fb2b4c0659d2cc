#include "app/AddKeywordsDialog.h"

#include "controls/ui/UniControls.h"

TAddForm::TAddForm(QWidget* Parent) : QDialog(Parent) {
    setWindowTitle(QStringLiteral("Add"));
    setFixedSize(262, 262);

    UniLabel1 = new TUniLabel(u"Enter new items", this);
    UniLabel1->setGeometry(8, 8, 160, 16);
    Edit = new TUniEdit(this);
    Edit->setGeometry(8, 24, 161, 21);
    Edit->OnKeyDown = [this](QObject*, int& Key, Qt::KeyboardModifiers) { EditKeyDown(Key); };

    List = new TUniListBox(this);
    List->setGeometry(8, 52, 161, 202);
    List->SetMultiSelect(true);

    // Neither button is the default one, so Enter in Edit never closes the form.
    btnAdd = new TUniBitBtn(u"Add", this);
    btnAdd->setGeometry(178, 22, 75, 25);
    btnAdd->OnClick = [this](QObject*) { btnAddClick(); };
    btnDel = new TUniBitBtn(u"Del", this);
    btnDel->setGeometry(178, 52, 75, 25);
    btnDel->OnClick = [this](QObject*) { btnDelClick(); };
    btnOk = new TUniBitBtn(u"OK", this);
    btnOk->setGeometry(178, 198, 75, 25);
    btnOk->SetModalResult(1);
    btnAbort = new TUniBitBtn(u"", this);
    btnAbort->SetKind(bkAbort);
    btnAbort->setGeometry(178, 229, 75, 25);
    Edit->setAccessibleName(QStringLiteral("New item"));
    List->setAccessibleName(QStringLiteral("Items to add"));
    btnDel->setAccessibleName(QStringLiteral("Delete item"));
    btnAbort->setAccessibleName(QStringLiteral("Cancel"));
}

int TAddForm::ShowModal() {
    if (ModalHook) {
        FormShow();
        return ModalHook(*this);
    }
    return exec();
}

void TAddForm::FormShow() {
    Edit->setFocus();
}

void TAddForm::btnAddClick() {
    // No duplicate check: a word entered twice is listed twice.
    const WideString text = Edit->Text();
    if (text.empty()) return;
    List->Items().Add(text);
    Edit->SetText(WideString());
}

void TAddForm::btnDelClick() {
    if (List->SelCount() > 0) List->DeleteSelected();
}

void TAddForm::EditKeyDown(int& Key) {
    if (Key == 13) btnAddClick();
}

void TAddForm::showEvent(QShowEvent* Event) {
    QDialog::showEvent(Event);
    FormShow();
}

void TAddForm::reject() {
    done(2); // closing the window counts as Cancel, which no command takes for OK
}
