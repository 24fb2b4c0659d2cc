// The main window at the keyboard and on the screen: the keys of the trees
// and lists, the sheet keys of the options section, the names that
// assistive tools read, and the sizes that keep every section reachable.

#include "app/SynEditor.h"
#include "app/SynFormProblems.h"

#include "controls/ui/PlusPageControl.h"
#include "controls/ui/UniControls.h"
#include "controls/ui/WgMenuBar.h"
#include "controls/ui/WgPanel.h"
#include "controls/ui/WgPgCtl.h"
#include "controls/ui/WgToolBar.h"
#include "tree/WgHeaderSections.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/ui/WgTree.h"

#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>

#include <algorithm>

namespace {

// Room for the page area beside the side panel at the smallest window size.
constexpr int MinPageAreaWidth = 360;
// The window system's frame around the window, where it is not known yet.
constexpr int FrameAllowanceX = 16;
constexpr int FrameAllowanceY = 48;

void Shortcut(QWidget* Parent, const QKeySequence& Key, Qt::ShortcutContext Context,
              const std::function<void()>& Action) {
    auto* shortcut = new QShortcut(Key, Parent);
    shortcut->setContext(Context);
    QObject::connect(shortcut, &QShortcut::activated, Parent, Action);
}

// Insert, F2 and Delete on a list run its page's Add, Rename or Edit, and
// Remove: the toolbar's commands without the pointer.
void ListKeys(QWidget* List, const std::function<void()>& Add, const std::function<void()>& Edit,
              const std::function<void()>& Remove) {
    if (Add) Shortcut(List, QKeySequence(Qt::Key_Insert), Qt::WidgetShortcut, Add);
    if (Edit) Shortcut(List, QKeySequence(Qt::Key_F2), Qt::WidgetShortcut, Edit);
    if (Remove) Shortcut(List, QKeySequence(Qt::Key_Delete), Qt::WidgetShortcut, Remove);
}

} // namespace

void TSynForm::CreateKeyboard() {
    // The two sheets of the options section: Ctrl+Tab and Ctrl+PageDown go
    // to the next, Ctrl+Shift+Tab and Ctrl+PageUp to the previous.
    auto sheetStep = [this](int Step) {
        const int count = 2;
        const int next = ((PlusPageControl1->ActivePageIndex() + Step) % count + count) % count;
        PlusPageControl1->SetActivePageIndex(next);
        SectionControl(0)->setFocus(Qt::TabFocusReason);
    };
    for (const QKeySequence& key :
         {QKeySequence(Qt::CTRL | Qt::Key_Tab), QKeySequence(Qt::CTRL | Qt::Key_PageDown)})
        Shortcut(TabOptions, key, Qt::WidgetWithChildrenShortcut, [sheetStep] { sheetStep(1); });
    for (const QKeySequence& key : {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab),
                                    QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab),
                                    QKeySequence(Qt::CTRL | Qt::Key_PageUp)})
        Shortcut(TabOptions, key, Qt::WidgetWithChildrenShortcut, [sheetStep] { sheetStep(-1); });

    // F2 and Enter edit the value of the focused row; Insert and Delete add
    // and remove a record of the block and fold trees.
    // The value column fills what the option column leaves of the rows,
    // also after it has fitted itself to new texts or the user moved the
    // option column's edge.
    for (TWgTree* tree : {WgTree1, WgTree2, WgTreeFold}) {
        tree->ViewWidget()->installEventFilter(this);
        tree->Tree().Header().OnSectionChange = [this, tree](TWgHeaderModel&, TWgHeaderSection*,
                                                             TSectionChangeMode Mode) {
            if (Mode == scmWidth) FitValueColumn(*tree);
        };
    }

    // Each toolbar's buttons come just before the list they work on, so Tab
    // walks the page from top to bottom.
    const std::array<QWidget*, 3> lists = {Pages.lbMenu, Pages.lbMenuItem, Pages.lbUserMenu};
    for (std::size_t b = 0; b < Toolbars.size(); ++b) {
        QWidget* previous = nullptr;
        for (QObject* child : Toolbars[b]->children())
            if (auto* button = qobject_cast<TWgToolButton*>(child)) {
                if (previous) QWidget::setTabOrder(previous, button);
                previous = button;
            }
        if (previous) QWidget::setTabOrder(previous, lists[b]);
    }

    using P = TSynFormPages;
    auto page = [this](void (P::*Command)()) { return [this, Command] { (Pages.*Command)(); }; };
    ListKeys(Pages.lbMenu, page(&P::MenuAddClick), page(&P::MenuRenameClick),
             page(&P::MenuRemoveClick));
    ListKeys(Pages.lbMenuItem, page(&P::MenuItemAddClick), page(&P::MenuItemEditClick),
             page(&P::MenuItemRemoveClick));
    ListKeys(Pages.lbUserMenu, page(&P::tbUserAddClick), page(&P::tbUserEditClick),
             page(&P::tbUserDeleteClick));
    ListKeys(Pages.HintsList, nullptr, nullptr, page(&P::BtnHintsDeleteClick));

    // F8 shows the next problem of the definition, from anywhere in the window.
    Shortcut(this, QKeySequence(Qt::Key_F8), Qt::WindowShortcut, [this] { Problems->GoToNext(); });
}

bool TSynForm::TreeKey(TWgTree& Tree, QKeyEvent& Key) {
    if (Key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier)) return false;
    const bool records = &Tree == WgTree2 || &Tree == WgTreeFold;
    switch (Key.key()) {
    case Qt::Key_F2:
    case Qt::Key_Return:
    case Qt::Key_Enter: {
        TWgTreeItem* item = Tree.Tree().FocusedItem();
        // Separator rows of the records have no value to edit.
        if (!item || (item->Tag() != sftText && item->Tag() != sftEnum)) return true;
        Tree.EditItem(item, 1);
        return true;
    }
    case Qt::Key_Insert:
        if (!records) return false;
        AddRecordWithCells(Tree);
        return true;
    case Qt::Key_Delete:
        if (!records) return false;
        DeleteLastRecord(Tree);
        return true;
    default:
        return false;
    }
}

void TSynForm::FitValueColumn(TWgTree& Tree) {
    if (FFittingColumn) return;
    TWgHeaderSections& sections = Tree.Tree().Header().Sections();
    if (sections.Count() < 2) return;
    TWgHeaderSection* option = sections.GetSection(0);
    TWgHeaderSection* value = sections.GetSection(1);
    if (!option || !value) return;
    // Fitted to its texts where the column sizes itself, and never narrower
    // than what the rows leave beside the option column.
    int width = std::max(value->MinWidth(), Tree.ViewWidget()->width() - option->Width());
    if (value->AutoSize()) width = std::max(width, Tree.View().FitWidth(value));
    if (value->Width() == width) return;
    FFittingColumn = true;
    value->SetWidth(width);
    FFittingColumn = false;
}

void TSynForm::SetAccessibleNames() {
    auto name = [](QWidget* Widget, const char* Name) {
        Widget->setAccessibleName(QString::fromLatin1(Name));
    };
    name(WgMenuBar1, "Menu bar");
    name(WgPanel2, "Sections");
    name(WgPanel1, "Section heading");
    name(WgPageControl1, "Section pages");
    name(PlusPageControl1, "Option sheets");
    name(WgTree1, "Syntax options");
    name(WgTree1->ViewWidget(), "Syntax options");
    name(WgTree2, "Blocks");
    name(WgTree2->ViewWidget(), "Blocks");
    name(WgTreeFold, "Folding rules");
    name(WgTreeFold->ViewWidget(), "Folding rules");
    name(BtnBlockAdd, "Add block");
    name(BtnBlockDelete, "Delete last block");
    name(BtnFoldAdd, "Add folding rule");
    name(BtnFoldDelete, "Delete last folding rule");
    name(Pages.lbMenu, "Groups");
    name(Pages.lbMenuItem, "Items of the group");
    name(Pages.lbUserMenu, "User menu entries");
    name(Pages.HintsEdit, "New hint");
    name(Pages.HintsList, "Hints");
    name(Pages.BtnHintsAdd, "Add hint");
    name(Pages.BtnHintsDelete, "Delete hint");
    name(Pages.btnHintsSort, "Sort hints");
    name(Pages.SampleMemo, "Syntax sample");
    name(Pages.InfoMemo, "Author information");
    name(Pages.BtnInfoKeyAdd, "Add default author lines");
    name(StatusBar1, "Status");
    name(StatusPanels[0], "Document name");
    name(StatusPanels[1], "Document state");
    const std::array<const char*, 3> bars = {"Group commands", "Item commands",
                                             "User menu commands"};
    for (std::size_t i = 0; i < Toolbars.size(); ++i)
        if (Toolbars[i]) name(Toolbars[i], bars[i]);
    for (std::size_t i = 0; i < SectionLabels.size(); ++i)
        SectionLabels[i]->setAccessibleName(SectionLabels[i]->text());
}

void TSynForm::SetMinimumWindowSize() {
    // The side panel keeps its last label above the bottom band, so every
    // section stays reachable by the pointer at the smallest size.
    const QLabel* last = SectionLabels.back();
    WgPanel2->setMinimumHeight(last->geometry().bottom() + 1 + 4 + panBottom->height());
    Shape1->setMinimumWidth(MinPageAreaWidth);
}

void TSynForm::FitToScreen() {
    const QScreen* where = screen();
    if (!where) return;
    const QRect area = where->availableGeometry();
    // The frame is known once the window manager has framed the window.
    const QRect frame = frameGeometry();
    const int frameX = frame.width() > width() ? frame.width() - width() : FrameAllowanceX;
    const int frameY = frame.height() > height() ? frame.height() - height() : FrameAllowanceY;
    const QSize room(std::max(1, area.width() - frameX), std::max(1, area.height() - frameY));
    if (minimumWidth() > room.width() || minimumHeight() > room.height())
        setMinimumSize(std::min(minimumWidth(), room.width()),
                       std::min(minimumHeight(), room.height()));
    if (width() > room.width() || height() > room.height())
        resize(std::min(width(), room.width()), std::min(height(), room.height()));
    const QRect placed = frameGeometry();
    if (!area.contains(placed))
        move(std::clamp(placed.left(), area.left(),
                        std::max(area.left(), area.right() - placed.width())),
             std::clamp(placed.top(), area.top(),
                        std::max(area.top(), area.bottom() - placed.height())));
}
