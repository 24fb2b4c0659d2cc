#pragma once
// In-place editors of the tree: components that register with a tree for
// the field types they serve and put a control exactly over the edited
// cell. The tree owns the start and the end of an operation; an editor owns
// its control, which it creates hidden once and reuses.

#include "base/Geometry.h"
#include "base/Types.h"
#include "tree/WgTypes.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <set>
#include <vector>

class QComboBox;
class QLineEdit;
class QWidget;
class TWgTree;
class TWgTreeItem;
class TWgTreeInplaceEditor;

using TWgFieldTypes = std::set<TWgFieldType>;

using TInplaceOperationEvent =
    std::function<void(TWgTreeInplaceEditor& Sender, bool& DefaultConversion)>;
using TInplaceAfterOperationEvent =
    std::function<void(TWgTreeInplaceEditor& Sender, bool& Accepted, bool& DefaultConversion)>;
using TInplaceValidationEvent = std::function<void(TWgTreeInplaceEditor& Sender, bool& InputValid)>;

// The editors registered with one tree, in registration order.
class TWgTreeInplaceManager {
public:
    void Register(TWgTreeInplaceEditor* Editor);
    void Unregister(TWgTreeInplaceEditor* Editor);
    // The first editor whose Types hold Type; none when no editor serves it.
    TWgTreeInplaceEditor* GetSuitableEditor(TWgFieldType Type) const;
    const std::vector<TWgTreeInplaceEditor*>& Editors() const { return FEditors; }

private:
    std::vector<TWgTreeInplaceEditor*> FEditors;
};

class TWgTreeInplaceEditor : public QObject {
    Q_OBJECT
public:
    explicit TWgTreeInplaceEditor(QObject* Parent = nullptr);
    ~TWgTreeInplaceEditor() override;

    WideString DefaultValueAsText;
    TWgFieldTypes Types;
    TWgTreeItem* Item = nullptr;
    WideString ValueAsText;
    int SectionIndex = -1;
    TWgFieldType DataType = sftText;
    TRect CellRect;
    bool RegainFocus = false;
    TInplaceOperationEvent OnBeforeOperation;
    TInplaceAfterOperationEvent OnAfterOperation;
    TInplaceValidationEvent OnValidateResult;

    bool Editing() const { return FEditing; }
    TWgTree* Tree() const { return FTree; }
    // Ends a running operation and moves the registration to the new tree.
    void SetTree(TWgTree* Value);
    // The control that edits; the tree looks at it to tell focus moves apart.
    virtual QWidget* Control() const = 0;

    virtual bool GetVisible() const;
    virtual void SetEditorParent();
    virtual void StartOperation();
    virtual void CompleteOperation(bool Accepted);
    virtual void TriggerBeforeOperation(bool& DefaultConversion);
    virtual void TriggerAfterOperation(bool& Accepted, bool& DefaultConversion);
    virtual void TriggerValidateResult(bool& InputValid);
    virtual void DoStartOperation();
    virtual void DoStopOperation(bool BeforeAccept);

protected:
    // Enter: validation runs with Editing off, so that a focus change made
    // by a message box in the handler does not end the operation twice.
    void AcceptByEnter();
    // Loss of focus: with ExplorerEditMode the value is validated and kept,
    // otherwise the operation is cancelled.
    void FocusLeft();
    bool IsOwnWidget(QObject* Object) const;

    bool FEditing = false;
    TWgTree* FTree = nullptr;

private:
    friend class TWgTree;
    // The tree is going: no further calls into it.
    void TreeDestroyed() { FTree = nullptr; }
};

// The line editor (text cells).
class TWgTreeInplaceEdit : public TWgTreeInplaceEditor {
    Q_OBJECT
public:
    explicit TWgTreeInplaceEdit(QObject* Parent = nullptr);
    ~TWgTreeInplaceEdit() override;

    QLineEdit* Editor() const;
    QWidget* Control() const override;
    void TriggerBeforeOperation(bool& DefaultConversion) override;
    void TriggerAfterOperation(bool& Accepted, bool& DefaultConversion) override;

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    QPointer<QLineEdit> FEditor;
    // The control as an object, to tell events apart without a typed look at
    // a control that is being destroyed.
    const QObject* FEditObject = nullptr;
};

// The editable combo box (enumerated cells). Its list takes the focus for a
// moment when it drops down; a posted message makes the decision about the
// loss of focus after the focus has really moved.
class TWgTreeInplaceComboBox : public TWgTreeInplaceEditor {
    Q_OBJECT
public:
    explicit TWgTreeInplaceComboBox(QObject* Parent = nullptr);
    ~TWgTreeInplaceComboBox() override;

    // The private message that re-checks the focus after it moved.
    static constexpr int FocusCheckMessage = 3859;

    bool InitiallyDropped = true;
    QComboBox* Editor() const;
    QWidget* Control() const override;
    void TriggerBeforeOperation(bool& DefaultConversion) override;
    void TriggerAfterOperation(bool& Accepted, bool& DefaultConversion) override;
    void DoStartOperation() override;

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    bool ListDropped() const;
    void EnterPressed();

    QPointer<QComboBox> FEditor;
    // The box, its edit and its list as objects: while the box is destroyed
    // its parts still send events, and the box is no combo box any more.
    const QObject* FBoxObject = nullptr;
    const QObject* FLineObject = nullptr;
    const QObject* FListObject = nullptr;
};
