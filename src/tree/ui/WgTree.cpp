#include "tree/ui/WgTree.h"

#include "base/Streams.h"
#include "base/ui/Colors.h"
#include "base/ui/QtCanvas.h"
#include "controls/HTMLRender.h"
#include "tree/WgCellStyle.h"
#include "tree/WgTreeErrors.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QRegion>
#include <QResizeEvent>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>

namespace {

// Width of a system scroll bar, as the classic metrics give it.
constexpr int ScrollBarSize = 17;

// Parsed "<html>" text of an item, kept with the item.
struct TMarkup : TWgMarkupData {
    std::unique_ptr<TWgHTMLData> Data;
};

} // namespace

// ---- the link between model and view, with the edit's own interest in items

// The model reports to the view through this; an item that goes must also
// end an edit that runs on it, which the view alone does not know of.
class TWgTree::TLinkProxy : public TWgTreeViewLink {
public:
    TLinkProxy(TWgTree& Owner, TWgTreeView& View) : FOwner(Owner), FView(View) {}
    void UpdateBegun() override { FView.UpdateBegun(); }
    void UpdateEnded(int Count) override { FView.UpdateEnded(Count); }
    void MarkStale(std::uint32_t Marks) override { FView.MarkStale(Marks); }
    void ForgetItem(TWgTreeItem* Item) override {
        FOwner.ItemGoing(Item);
        FView.ForgetItem(Item);
    }
    void RemoveVisibleRow(TWgTreeItem* Item) override { FView.RemoveVisibleRow(Item); }
    void ClearVisibleRows() override { FView.ClearVisibleRows(); }
    void InvalidateItem(TWgTreeItem* Item, int Column) override {
        FView.InvalidateItem(Item, Column);
    }
    void RecomputeHRange() override { FView.RecomputeHRange(); }
    void AutoSizeSection(int SectionIndex) override { FView.AutoSizeSection(SectionIndex); }
    void AutoSizeAllSections() override { FView.AutoSizeAllSections(); }
    void SortChildren(TWgTreeItem* Parent, bool Recursive) override {
        FView.SortChildren(Parent, Recursive);
    }
    int MeasureCellHeight(TWgTreeItem* Item, int Column, int Width) override {
        return FView.MeasureCellHeight(Item, Column, Width);
    }
    int MeasureItemWidth(TWgTreeItem* Item) override { return FView.MeasureItemWidth(Item); }
    int ClientWidth() override { return FView.ClientWidth(); }
    std::unique_ptr<TWgMarkupData> ParseMarkup(const WideString& Text) override {
        return FView.ParseMarkup(Text);
    }
    bool Confirm(const char* Text, const char* Title) override {
        return FView.Confirm(Text, Title);
    }

private:
    TWgTree& FOwner;
    TWgTreeView& FView;
};

// The header of a tree: a width or order change of a section moves the
// columns of the rows too.
class TWgTree::THeaderWidget : public TWgHeader {
public:
    THeaderWidget(TWgTree& Owner, TWgHeaderModel& Model)
        : TWgHeader(Model, &Owner), FOwner(Owner) {}
    void InvalidateSection(TWgHeaderSection* Section) override {
        TWgHeader::InvalidateSection(Section);
        FOwner.HeaderChanged();
    }
    void InvalidateRight(int Position) override {
        TWgHeader::InvalidateRight(Position);
        FOwner.HeaderChanged();
    }
    // The resize line runs on across the rows.
    void DrawResizeLine(int X) override {
        TWgHeader::DrawResizeLine(X);
        if (FOwner.FView) FOwner.FView->update();
    }

private:
    TWgTree& FOwner;
};

// ---- TWgTree

TWgTree::TWgTree(QWidget* Parent) : QWidget(Parent), FTree(std::make_unique<TCustomWgTree>()) {
    setObjectName(QStringLiteral("TWgTree"));
    FLink = std::make_unique<TLinkProxy>(*this, FTree->View());
    FTree->SetView(FLink.get());
    FHeader = new THeaderWidget(*this, FTree->Header());
    FHeader->setFocusPolicy(Qt::NoFocus);
    FView = new TWgTreeViewWidget(*this, this);
    FHScroll = new QScrollBar(Qt::Horizontal, this);
    FVScroll = new QScrollBar(Qt::Vertical, this);
    FHScroll->setFocusPolicy(Qt::NoFocus);
    FVScroll->setFocusPolicy(Qt::NoFocus);
    FHScroll->hide();
    FVScroll->hide();
    FCorner = new QWidget(this);
    FCorner->setAutoFillBackground(true);
    FCorner->hide();
    setFocusProxy(FView);
    setFocusPolicy(Qt::StrongFocus);

    FTree->SetFont(TWgTreeFont{8, 0, "Tahoma"});
    FTree->OnEditRequest = [this](TCustomWgTree&, TWgTreeItem* Item, int Column) {
        DoEditItem(Item, Column);
    };
    FTree->Header().OnSectionClick = [this](TWgHeaderModel&, TWgHeaderSection* Section) {
        FTree->HeaderClick(Section, QApplication::keyboardModifiers() & Qt::ControlModifier);
    };
    connect(FVScroll, &QScrollBar::valueChanged, this, [this](int Value) {
        if (FSyncing) return;
        CancelEditForLayout();
        View().SetVScroll(Value);
    });
    connect(FHScroll, &QScrollBar::valueChanged, this, [this](int Value) {
        if (FSyncing) return;
        CancelEditForLayout();
        View().SetHPosition(Value);
        FHeader->update();
    });
    FView->SetMeasure();
    WireMarkup();
    resize(200, 150);
}

void TWgTree::WireMarkup() {
    FHtml = std::make_unique<TWgHTMLRender>(&View().MeasureCanvas());
    FTree->OnMarkupParse = [this](const WideString& Text) -> std::unique_ptr<TWgMarkupData> {
        auto markup = std::make_unique<TMarkup>();
        markup->Data = FHtml->NewData();
        // The tree's font and text colour are the defaults of the markup.
        const TFont font = View().TreeFont();
        TWgHTMLData& data = *markup->Data;
        data.DefaultFont = AnsiString(font.Name.begin(), font.Name.end());
        data.DefaultHeight = font.Height;
        data.DefaultStyle = font.Style;
        data.DefaultColor = font.Color;
        data.Charset = font.Charset;
        FHtml->SetCurrentData(markup->Data.get());
        try {
            FHtml->PrepareText(Text, 0, false);
        } catch (const Exception&) {
            // Broken markup is drawn as nothing rather than stopping the paint.
        }
        FHtml->SetCurrentData(nullptr);
        return markup;
    };
    FTree->OnMarkupMeasure = [this](const WideString& Text, TWgMarkupData* Data, int Width,
                                    bool WordWrap) {
        auto* markup = dynamic_cast<TMarkup*>(Data);
        std::unique_ptr<TWgHTMLData> scratch;
        int height = 0;
        try {
            if (markup && !WordWrap) {
                // Parsed once; its lines do not depend on the width.
                FHtml->SetCurrentData(markup->Data.get());
                FHtml->MeasureData();
                height = markup->Data->TextSize.cy;
            } else {
                scratch = FHtml->NewData();
                if (markup) {
                    scratch->DefaultFont = markup->Data->DefaultFont;
                    scratch->DefaultHeight = markup->Data->DefaultHeight;
                    scratch->DefaultStyle = markup->Data->DefaultStyle;
                }
                FHtml->SetCurrentData(scratch.get());
                FHtml->PrepareText(Text, Width, WordWrap);
                FHtml->MeasureData();
                height = scratch->TextSize.cy;
            }
        } catch (const Exception&) {
            height = 0; // broken markup keeps the line height
        }
        FHtml->SetCurrentData(nullptr);
        return height;
    };
    FTree->OnMarkupDraw = [this](TCanvas& Canvas, const TRect& R, const WideString& Text,
                                 TWgMarkupData* Data) {
        auto* markup = dynamic_cast<TMarkup*>(Data);
        FHtml->SetCurrentData(markup ? markup->Data.get() : nullptr);
        try {
            if (!markup) FHtml->PrepareText(Text, R.Width(), false);
            FHtml->DrawHtml(Canvas, TPoint{R.Left, R.Top}, R, clNone);
        } catch (const Exception&) {
        }
        FHtml->SetCurrentData(nullptr);
    };
}

TWgTree::~TWgTree() {
    // An open edit ends before the items go; editors forget the tree.
    if (FInplaceEditor && FInplaceEditor->Editing()) FInplaceEditor->CompleteOperation(false);
    for (TWgTreeInplaceEditor* editor : std::vector(FManager.Editors()))
        editor->TreeDestroyed();
    // The child widgets refer to the tree's parts: they go while those exist.
    delete FView;
    FView = nullptr;
    delete FHeader;
    FHeader = nullptr;
    FTree->SetView(&FTree->View());
    FTree->OnMarkupParse = nullptr;
    FTree->OnMarkupMeasure = nullptr;
    FTree->OnMarkupDraw = nullptr;
}

void TWgTree::LoadItemsData(const std::vector<std::uint8_t>& Bytes) {
    EndEdit(true);
    TMemoryStream in(Bytes);
    FTree->SetLoading(true);
    FTree->Items().LoadFromStream(in);
    FTree->SetLoading(false);
    FTree->Loaded();
    SyncScrollBars();
}

void TWgTree::LoadSectionsData(const std::vector<std::uint8_t>& Bytes) {
    EndEdit(true);
    TMemoryStream in(Bytes);
    FTree->Header().Sections().LoadFromStream(in);
    // The header has its columns: it finishes loading (popup names, sticky
    // shares, height) and takes back what its store kept of them.
    FTree->Header().Loaded();
    FTree->Restore();
    FTree->DisplayChanged(tsmClearVis | tsmClearAll | tsmRedrawMark | tsmHRange);
    LayoutChildren();
    FHeader->update();
}

namespace {

bool ReadFile(const QString& FileName, std::vector<std::uint8_t>& Bytes) {
    QFile file(FileName);
    if (!file.open(QIODevice::ReadOnly)) return false;
    const QByteArray data = file.readAll();
    Bytes.assign(data.begin(), data.end());
    return true;
}

} // namespace

bool TWgTree::LoadItemsFile(const QString& FileName) {
    std::vector<std::uint8_t> bytes;
    if (!ReadFile(FileName, bytes)) return false;
    LoadItemsData(bytes);
    return true;
}

bool TWgTree::LoadSectionsFile(const QString& FileName) {
    std::vector<std::uint8_t> bytes;
    if (!ReadFile(FileName, bytes)) return false;
    LoadSectionsData(bytes);
    return true;
}

void TWgTree::SetShowColumns(bool Value) {
    EndEdit(true);
    FTree->SetShowColumnsProp(Value);
    LayoutChildren();
}

void TWgTree::SetHeaderHeight(int Value) {
    FTree->Header().LockHeight = true;
    FTree->Header().SetHeight(Value);
    LayoutChildren();
}

void TWgTree::SetLineHeight(int Value) {
    EndEdit(true);
    if (Value <= 0) {
        FTree->SetAutoLineHeight(true);
        return;
    }
    FTree->SetAutoLineHeight(false);
    FTree->SetLineHeightProp(Value);
}

void TWgTree::SetTreeFont(const AnsiString& Name, int PixelHeight) {
    TWgTreeFont font = FTree->Font();
    font.Name = Name;
    // Sizes are in points at 96 pixels an inch.
    font.Size = std::max(1, PixelHeight * 72 / 96);
    FTree->SetFont(font);
    FTree->DisplayChanged(tsmClearVis | tsmClearAll | tsmRedrawMark | tsmHRange);
}

void TWgTree::SetFlat(bool Value) {
    if (FFlat == Value) return;
    FFlat = Value;
    LayoutChildren();
    update();
}

void TWgTree::resizeEvent(QResizeEvent*) {
    CancelEditForLayout();
    LayoutChildren();
}

TColor TWgTree::HeaderColor() const {
    return FHeader->PaintOptions().Color;
}

void TWgTree::SetHeaderColor(TColor Value) {
    TColor& color = FHeader->PaintOptions().Color;
    if (color == Value) return;
    color = Value;
    FHeader->update();
}

void TWgTree::SetBorderColor(TColor& Field, TColor Value) {
    if (Field == Value) return;
    Field = Value;
    update();
}

void TWgTree::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const int border = FFlat ? 1 : 2;
    // The rows paint every pixel of their own (they are opaque): the fill
    // leaves them out.
    QRegion free(rect().adjusted(border, border, -border, -border));
    if (FView && FView->isVisibleTo(this)) free -= FView->geometry();
    for (const QRect& r : free)
        p.fillRect(r, ToQColor(FBorderColorWindow));
    if (FFlat) {
        p.setPen(ToQColor(FBorderColorShadow));
        p.drawRect(rect().adjusted(0, 0, -1, -1)); // a pen rectangle covers one more pixel
        return;
    }
    // The sunken edge: two lines on each side, top and left in one colour,
    // bottom and right in the other.
    auto edge = [&p](const QRect& R, TColor TopLeft, TColor BottomRight) {
        p.setPen(ToQColor(TopLeft));
        p.drawLine(R.topLeft(), R.topRight());
        p.drawLine(R.topLeft(), R.bottomLeft());
        p.setPen(ToQColor(BottomRight));
        p.drawLine(R.bottomLeft(), R.bottomRight());
        p.drawLine(R.topRight(), R.bottomRight());
    };
    edge(rect(), FBorderColorShadow, FBorderColorHighlight);
    edge(rect().adjusted(1, 1, -1, -1), FBorderColorDkShadow, FBorderColorFace);
}

void TWgTree::changeEvent(QEvent* Event) {
    if (Event->type() == QEvent::EnabledChange) {
        FTree->Enabled = isEnabled();
        FTree->DisplayChanged();
    }
    QWidget::changeEvent(Event);
}

void TWgTree::LayoutChildren() {
    const int border = FFlat ? 1 : 2;
    QRect client = rect().adjusted(border, border, -border, -border);
    const TWgScrollBarInfo& h = View().HScrollBar();
    const TWgScrollBarInfo& v = View().VScrollBar();
    const int vw = v.Visible ? ScrollBarSize : 0;
    const int hh = h.Visible ? ScrollBarSize : 0;
    FVScroll->setVisible(v.Visible);
    FHScroll->setVisible(h.Visible);
    FCorner->setVisible(v.Visible && h.Visible);
    int top = client.top();
    // With ScrollbarOpposite the vertical bar stands on the left and the
    // rest moves right by its width.
    const int barLeft = FScrollbarOpposite ? client.left() : client.right() + 1 - vw;
    const int left = FScrollbarOpposite ? client.left() + vw : client.left();
    if (FTree->ShowColumns()) {
        const int height = FTree->Header().Height();
        FHeader->setGeometry(left, top, std::max(client.width() - vw, 0), height);
        FHeader->show();
        top += height;
    } else {
        FHeader->hide();
    }
    const int rowsHeight = std::max(client.bottom() + 1 - top - hh, 0);
    const int rowsWidth = std::max(client.width() - vw, 0);
    FVScroll->setGeometry(barLeft, top, vw, rowsHeight);
    FHScroll->setGeometry(left, top + rowsHeight, rowsWidth, hh);
    FCorner->setGeometry(barLeft, top + rowsHeight, vw, hh);
    FView->setGeometry(left, top, rowsWidth, rowsHeight);
}

void TWgTree::SetScrollbarOpposite(bool Value) {
    if (Value == FScrollbarOpposite) return;
    FScrollbarOpposite = Value;
    LayoutChildren();
    update();
}

void TWgTree::SyncScrollBars() {
    if (!FView || !FHeader) return;
    // A layout change inside asks for another pass; three passes end a
    // flip-flop of a bar that appears and takes the room it was needed for.
    if (FSyncing) {
        FResyncNeeded = true;
        return;
    }
    FSyncing = true;
    for (int pass = 0; pass < 3; ++pass) {
        FResyncNeeded = false;
        SetBarsFromView();
        if (!FResyncNeeded) break;
    }
    FHeader->update();
    FSyncing = false;
}

void TWgTree::SetBarsFromView() {
    TWgTreeView& view = View();
    const TWgScrollBarInfo h = view.HScrollBar();
    const TWgScrollBarInfo v = view.VScrollBar();
    // Qt counts the range of the position; the view gives the last unit and
    // the page, so the last position is Max - Page + 1.
    FHScroll->setRange(0, std::max(h.Max - h.Page + 1, 0));
    FHScroll->setPageStep(std::max(h.Page, 1));
    FHScroll->setSingleStep(8);
    FHScroll->setValue(h.Position);
    FHScroll->setEnabled(h.Needed);
    FVScroll->setRange(0, std::max(view.MaxTopIndex(), 0));
    FVScroll->setPageStep(std::max(v.Page, 1));
    FVScroll->setSingleStep(1);
    FVScroll->setValue(v.Position);
    FVScroll->setEnabled(v.Needed);
    if (FVScroll->isVisibleTo(this) != v.Visible || FHScroll->isVisibleTo(this) != h.Visible)
        LayoutChildren();
}

void TWgTree::HeaderChanged() {
    // Drawing the header must not recurse into the rows' update.
    if (FInHeaderChange || !FView) return;
    FInHeaderChange = true;
    CancelEditForLayout();
    FTree->DisplayChanged(tsmClearAll | tsmRedrawMark | tsmUpdated);
    FView->update();
    FInHeaderChange = false;
}

void TWgTree::CancelEditForLayout() {
    if (FInplaceEditor && FInplaceEditor->Editing()) EndEdit(true);
}

// ---- in-place editing

bool TWgTree::IsEditing() const {
    return FInplaceEditor && FInplaceEditor->Editing();
}

void TWgTree::EndEdit(bool ByCancel) {
    if (IsEditing()) FInplaceEditor->CompleteOperation(!ByCancel);
}

void TWgTree::EditItem(TWgTreeItem* Item, int SectionIndex) {
    if (!FTree->DoInplaceEdit) return;
    EndEdit(true);
    DoEditItem(Item, SectionIndex);
}

void TWgTree::EditorUnregistered(TWgTreeInplaceEditor* Editor) {
    FManager.Unregister(Editor);
    if (FInplaceEditor == Editor) FInplaceEditor = nullptr;
}

void TWgTree::ItemGoing(TWgTreeItem* Item) {
    if (FEditItem != Item) return;
    // The edit item goes before the editor is ended: whatever the editor's
    // handler makes of the end, nothing is written into a row on its way out.
    FEditItem = nullptr;
    if (!IsEditing()) return;
    FInplaceEditor->Item = nullptr;
    FInplaceEditor->CompleteOperation(false);
}

TWgFieldType TWgTree::CellTypeOf(TWgTreeItem* Item, int SectionIndex) const {
    TWgHeaderSection* section =
        SectionIndex >= 0 ? FTree->Header().Sections().GetSection(SectionIndex) : nullptr;
    if (Item->UseStyles()) {
        TWgCellStyle* style = nullptr;
        const int main = FTree->MainTreeColumn();
        if (FTree->VirtualityLevel() == vlNone && SectionIndex >= 0 && SectionIndex != main) {
            const int index = SectionIndex < main ? SectionIndex : SectionIndex - 1;
            if (index < Item->StylesCount()) style = Item->GetStyles(index);
        }
        if (!style) style = Item->GetMainStyle();
        if (style) return style->CellType();
    }
    return section ? section->FieldType : MainTextType;
}

WideString TWgTree::CellTextOf(TWgTreeItem* Item, int SectionIndex) const {
    const int main = FTree->MainTreeColumn();
    if (SectionIndex < 0 || SectionIndex == main) return Item->Text();
    const int index = SectionIndex < main ? SectionIndex : SectionIndex - 1;
    if (FTree->VirtualityLevel() != vlNone) {
        WideString text;
        if (FTree->OnVirtualTextNeeded) FTree->OnVirtualTextNeeded(*FTree, Item, index, text);
        return text;
    }
    return Item->ColumnTextAt(index);
}

void TWgTree::DoEditItem(TWgTreeItem* Item, int SectionIndex) {
    if (!Item) throw EWgTreeError(WgTreeMessages::SItemNotSpecified);
    TWgTreeView& view = View();
    const auto& rows = view.VisibleList();
    if (std::find(rows.begin(), rows.end(), Item) == rows.end()) view.EnsureVisible(Item);
    if (IsEditing()) FInplaceEditor->CompleteOperation(false);
    if (!FTree->DoInplaceEdit || !Item->Enabled() || !Item->AllowEdit()) return;
    TWgHeaderSections& sections = FTree->Header().Sections();
    if (sections.Count() > 0 && SectionIndex != -1) {
        TWgHeaderSection* s = sections.GetSection(SectionIndex);
        if (!s || !s->Editable) return;
    }
    if (FTree->ShowColumns() && SectionIndex == -1) SectionIndex = FTree->MainTreeColumn();
    FEditItem = Item;
    if (SectionIndex != -1) {
        TWgHeaderSection* s = sections.GetSection(SectionIndex);
        if (!s || !s->Visible()) {
            FEditItem = nullptr;
            return;
        }
    }
    TWgFieldType cellType = CellTypeOf(Item, SectionIndex);
    bool canEdit = true;
    if (OnTryEdit) OnTryEdit(*this, Item, SectionIndex, cellType, canEdit);
    TWgTreeInplaceEditor* editor = FManager.GetSuitableEditor(cellType);
    if (OnInplaceEditorNeeded) OnInplaceEditorNeeded(*this, Item, SectionIndex, cellType, editor);
    // A cell without an editor is read-only; EditItem stays set until the next try.
    if (!canEdit || !editor) return;
    const WideString text = CellTextOf(Item, SectionIndex);
    const TRect cell = view.EditCellRect(Item, FTree->ShowColumns() ? SectionIndex : -1);
    SyncScrollBars();
    FHeader->update();
    FInplaceEditor = editor;
    if (editor->Tree() != this) editor->SetTree(this);
    editor->ValueAsText = text;
    editor->Item = Item;
    editor->SectionIndex = SectionIndex;
    editor->DataType = cellType;
    editor->CellRect = cell;
    editor->StartOperation();
}

void TWgTree::EditFinished(TWgTreeInplaceEditor* Editor, bool Accepted) {
    TWgTreeItem* item = Editor->Item;
    const int column = Editor->SectionIndex;
    TWgHeaderSection* section =
        column >= 0 ? FTree->Header().Sections().GetSection(column) : nullptr;
    if (Accepted && item && FTree->VirtualityLevel() == vlNone) {
        const int main = FTree->MainTreeColumn();
        if (column != -1 && column != main) {
            const int index = column < main ? column : column - 1;
            TWgWideStringList& texts = item->ColumnText();
            while (texts.Count() <= index)
                texts.Add(WideString());
            texts.Put(index, Editor->ValueAsText);
        } else {
            item->SetText(Editor->ValueAsText);
        }
    }
    // Without an item (it was deleted under the editor) nothing was stored:
    // the end counts as a cancellation, whatever the editor's handler said.
    if (OnEndEditItem) OnEndEditItem(*this, item, section, !Accepted || !item);
    if (FInplaceEditor == Editor) FInplaceEditor = nullptr;
}
