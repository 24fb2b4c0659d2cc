#include "tree/ui/WgTreeInplace.h"

#include "base/ui/Messages.h"
#include "tree/ui/WgTree.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>

namespace {

QString Q(const WideString& S) {
    return QString::fromStdU16String(S);
}

bool IsEnter(const QKeyEvent& Event) {
    return (Event.key() == Qt::Key_Return || Event.key() == Qt::Key_Enter) &&
           (Event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

bool IsEscape(const QKeyEvent& Event) {
    return Event.key() == Qt::Key_Escape &&
           (Event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

QRect ToQRect(const TRect& R) {
    return QRect(R.Left, R.Top, std::max(R.Right - R.Left, 0), std::max(R.Bottom - R.Top, 0));
}

} // namespace

// ---- the manager

void TWgTreeInplaceManager::Register(TWgTreeInplaceEditor* Editor) {
    if (std::find(FEditors.begin(), FEditors.end(), Editor) == FEditors.end())
        FEditors.push_back(Editor);
}

void TWgTreeInplaceManager::Unregister(TWgTreeInplaceEditor* Editor) {
    FEditors.erase(std::remove(FEditors.begin(), FEditors.end(), Editor), FEditors.end());
}

TWgTreeInplaceEditor* TWgTreeInplaceManager::GetSuitableEditor(TWgFieldType Type) const {
    for (TWgTreeInplaceEditor* editor : FEditors)
        if (editor->Types.count(Type)) return editor;
    return nullptr;
}

// ---- the editor base

TWgTreeInplaceEditor::TWgTreeInplaceEditor(QObject* Parent) : QObject(Parent) {}

TWgTreeInplaceEditor::~TWgTreeInplaceEditor() {
    // Derived editors end their operation while their control still exists;
    // here only the registration goes.
    if (FTree) FTree->EditorUnregistered(this);
}

void TWgTreeInplaceEditor::SetTree(TWgTree* Value) {
    if (Value == FTree) return;
    if (FEditing) CompleteOperation(false);
    if (FTree) FTree->EditorUnregistered(this);
    FTree = Value;
    if (FTree) FTree->EditorRegistered(this);
}

bool TWgTreeInplaceEditor::GetVisible() const {
    return Control() && Control()->isVisible();
}

void TWgTreeInplaceEditor::SetEditorParent() {
    if (Control() && FTree) Control()->setParent(FTree->ViewWidget());
}

void TWgTreeInplaceEditor::StartOperation() {
    SetEditorParent();
    bool defaultConversion = true;
    TriggerBeforeOperation(defaultConversion);
    DoStartOperation();
    FEditing = true;
}

void TWgTreeInplaceEditor::CompleteOperation(bool Accepted) {
    FEditing = false;
    bool defaultConversion = true;
    TriggerAfterOperation(Accepted, defaultConversion);
    // The focus goes back to the rows only when it has not gone elsewhere:
    // a click on another control keeps that control focused.
    QWidget* focus = QApplication::focusWidget();
    RegainFocus = FTree && FTree->window() && FTree->window()->focusWidget() &&
                  (!focus || IsOwnWidget(focus) || focus == FTree->ViewWidget());
    DoStopOperation(true);
    if (FTree) FTree->EditFinished(this, Accepted);
}

void TWgTreeInplaceEditor::TriggerBeforeOperation(bool& DefaultConversion) {
    DefaultConversion = true;
    if (OnBeforeOperation) OnBeforeOperation(*this, DefaultConversion);
    if (DefaultConversion && ValueAsText.empty()) ValueAsText = DefaultValueAsText;
}

void TWgTreeInplaceEditor::TriggerAfterOperation(bool& Accepted, bool& DefaultConversion) {
    DefaultConversion = true;
    if (OnAfterOperation) OnAfterOperation(*this, Accepted, DefaultConversion);
}

void TWgTreeInplaceEditor::TriggerValidateResult(bool& InputValid) {
    if (OnValidateResult) OnValidateResult(*this, InputValid);
}

void TWgTreeInplaceEditor::DoStartOperation() {
    if (!Control()) return;
    Control()->show();
    Control()->raise();
    Control()->setFocus(Qt::OtherFocusReason);
}

void TWgTreeInplaceEditor::DoStopOperation(bool) {
    if (QWidget* control = Control()) {
        control->hide();
        control->setParent(nullptr);
    }
    if (!FTree || !RegainFocus) return;
    QWidget* view = FTree->ViewWidget();
    if (view->isEnabled() && view->isVisible() && FTree->isEnabled() && FTree->parentWidget() &&
        FTree->parentWidget()->isEnabled())
        view->setFocus(Qt::OtherFocusReason);
}

void TWgTreeInplaceEditor::AcceptByEnter() {
    bool valid = true;
    FEditing = false;
    TriggerValidateResult(valid);
    FEditing = true;
    if (valid)
        CompleteOperation(true);
    else if (Control())
        Control()->setFocus(Qt::OtherFocusReason);
}

void TWgTreeInplaceEditor::FocusLeft() {
    if (FTree && FTree->ExplorerEditMode) {
        bool valid = true;
        FEditing = false;
        TriggerValidateResult(valid);
        FEditing = true;
        CompleteOperation(valid);
    } else {
        CompleteOperation(false);
    }
}

bool TWgTreeInplaceEditor::IsOwnWidget(QObject* Object) const {
    QWidget* control = Control();
    if (!control || !Object || !Object->isWidgetType()) return false;
    QWidget* w = static_cast<QWidget*>(Object);
    return w == control || control->isAncestorOf(w);
}

// ---- the line editor

TWgTreeInplaceEdit::TWgTreeInplaceEdit(QObject* Parent) : TWgTreeInplaceEditor(Parent) {
    Types = {sftText};
    FEditor = new QLineEdit();
    FEditor->setObjectName(QStringLiteral("TWgInpEdit"));
    FEditor->setFrame(false);
    FEditor->hide();
    FEditor->installEventFilter(this);
    FEditObject = FEditor.data();
}

TWgTreeInplaceEdit::~TWgTreeInplaceEdit() {
    if (FEditing) CompleteOperation(false);
    delete FEditor.data();
}

QLineEdit* TWgTreeInplaceEdit::Editor() const {
    return FEditor;
}

QWidget* TWgTreeInplaceEdit::Control() const {
    return FEditor;
}

void TWgTreeInplaceEdit::TriggerBeforeOperation(bool& DefaultConversion) {
    FEditor->setGeometry(ToQRect(CellRect));
    if (FTree) FEditor->setFont(FTree->ViewWidget()->font());
    TWgTreeInplaceEditor::TriggerBeforeOperation(DefaultConversion);
    if (DefaultConversion) FEditor->setText(Q(ValueAsText));
}

void TWgTreeInplaceEdit::TriggerAfterOperation(bool& Accepted, bool& DefaultConversion) {
    TWgTreeInplaceEditor::TriggerAfterOperation(Accepted, DefaultConversion);
    if (Accepted && DefaultConversion) ValueAsText = FEditor->text().toStdU16String();
}

bool TWgTreeInplaceEdit::eventFilter(QObject* Watched, QEvent* Event) {
    if (Watched != FEditObject) return false;
    switch (Event->type()) {
    case QEvent::KeyPress: {
        auto* key = static_cast<QKeyEvent*>(Event);
        if (!FEditing) return false;
        if (IsEnter(*key)) {
            AcceptByEnter();
            return true;
        }
        if (IsEscape(*key)) {
            CompleteOperation(false);
            return true;
        }
        return false;
    }
    case QEvent::ShortcutOverride: {
        // Enter and Esc belong to the editor, not to a dialog's buttons.
        auto* key = static_cast<QKeyEvent*>(Event);
        if (FEditing && (IsEnter(*key) || IsEscape(*key))) {
            Event->accept();
            return true;
        }
        return false;
    }
    case QEvent::FocusOut: {
        auto* focus = static_cast<QFocusEvent*>(Event);
        // A context menu of the box takes no focus from the edit.
        if (!FEditing || focus->reason() == Qt::PopupFocusReason ||
            IsOwnWidget(QApplication::focusWidget()))
            return false;
        // The control ends its own focus handling before it is hidden.
        static_cast<QObject*>(FEditor)->event(Event);
        FocusLeft();
        return true;
    }
    default:
        return false;
    }
}

// ---- the combo box editor

TWgTreeInplaceComboBox::TWgTreeInplaceComboBox(QObject* Parent) : TWgTreeInplaceEditor(Parent) {
    Types = {sftEnum};
    FEditor = new QComboBox();
    FEditor->setObjectName(QStringLiteral("THackInplaceComboBox"));
    FEditor->setEditable(true);
    FEditor->setInsertPolicy(QComboBox::NoInsert);
    FEditor->setFrame(false);
    FEditor->hide();
    FEditor->installEventFilter(this);
    FEditor->lineEdit()->installEventFilter(this);
    FEditor->view()->installEventFilter(this);
    FBoxObject = FEditor.data();
    FLineObject = FEditor->lineEdit();
    FListObject = FEditor->view();
}

TWgTreeInplaceComboBox::~TWgTreeInplaceComboBox() {
    if (FEditing) CompleteOperation(false);
    delete FEditor.data();
}

QComboBox* TWgTreeInplaceComboBox::Editor() const {
    return FEditor;
}

QWidget* TWgTreeInplaceComboBox::Control() const {
    return FEditor;
}

bool TWgTreeInplaceComboBox::ListDropped() const {
    return FEditor->view() && FEditor->view()->isVisible();
}

void TWgTreeInplaceComboBox::TriggerBeforeOperation(bool& DefaultConversion) {
    FEditor->setGeometry(ToQRect(CellRect));
    if (FTree) FEditor->setFont(FTree->ViewWidget()->font());
    TWgTreeInplaceEditor::TriggerBeforeOperation(DefaultConversion);
    if (DefaultConversion) FEditor->setEditText(Q(ValueAsText));
}

void TWgTreeInplaceComboBox::TriggerAfterOperation(bool& Accepted, bool& DefaultConversion) {
    TWgTreeInplaceEditor::TriggerAfterOperation(Accepted, DefaultConversion);
    if (Accepted && DefaultConversion) ValueAsText = FEditor->currentText().toStdU16String();
}

void TWgTreeInplaceComboBox::DoStartOperation() {
    TWgTreeInplaceEditor::DoStartOperation();
    if (InitiallyDropped) FEditor->showPopup();
}

void TWgTreeInplaceComboBox::EnterPressed() {
    if (ListDropped()) {
        const int row = FEditor->view()->currentIndex().row();
        if (row >= 0) FEditor->setCurrentIndex(row);
        FEditor->hidePopup();
    }
    AcceptByEnter();
}

bool TWgTreeInplaceComboBox::eventFilter(QObject* Watched, QEvent* Event) {
    const bool inBox = Watched == FBoxObject || Watched == FLineObject;
    const bool inList = Watched == FListObject;
    if ((!inBox && !inList) || FEditor.isNull()) return false;
    switch (Event->type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
    case QEvent::FocusOut:
        break;
    default:
        if (PrivateMessageNumber(Event) != FocusCheckMessage) return false;
    }
    if (PrivateMessageNumber(Event) == FocusCheckMessage) {
        // Posted at the loss of focus: only now is it known where the focus went.
        if (FEditing && !ListDropped() && !IsOwnWidget(QApplication::focusWidget())) FocusLeft();
        return true;
    }
    switch (Event->type()) {
    case QEvent::KeyPress: {
        auto* key = static_cast<QKeyEvent*>(Event);
        if (!FEditing) return false;
        if (IsEnter(*key)) {
            EnterPressed();
            return true;
        }
        // Esc in the open list only closes the list.
        if (IsEscape(*key) && inBox && !ListDropped()) {
            CompleteOperation(false);
            return true;
        }
        return false;
    }
    case QEvent::ShortcutOverride: {
        auto* key = static_cast<QKeyEvent*>(Event);
        if (FEditing && inBox && (IsEnter(*key) || IsEscape(*key))) {
            Event->accept();
            return true;
        }
        return false;
    }
    case QEvent::FocusOut:
        if (FEditing && inBox) PostPrivateMessage(FEditor, FocusCheckMessage);
        return false;
    default:
        return false;
    }
}
