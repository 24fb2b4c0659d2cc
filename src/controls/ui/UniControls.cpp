#include "controls/ui/UniControls.h"

#include "base/Exceptions.h"
#include "base/ui/Keys.h"
#include "base/ui/QtCanvas.h"

#include <QDialog>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QTextCursor>
#include <QTextDocument>

namespace {

constexpr char16_t ParagraphSeparator = 0x2029;

TFont FontOf(const QFont& F) {
    TFont font;
    font.Name = F.family().toStdU16String();
    const int pixels = F.pixelSize() > 0 ? F.pixelSize() : int(F.pointSizeF() * 96.0 / 72.0 + 0.5);
    font.Height = -pixels;
    font.Style = TFontStyles((F.bold() ? fsBold : 0) | (F.italic() ? fsItalic : 0) |
                             (F.underline() ? fsUnderline : 0) | (F.strikeOut() ? fsStrikeOut : 0));
    return font;
}

// Rows of owner-drawn lists go through the list's OnDrawItem; other lists
// keep Qt's own painting.
class TUniListDelegate : public QStyledItemDelegate {
public:
    explicit TUniListDelegate(TUniListBox& List) : QStyledItemDelegate(&List), FList(&List) {}

    void paint(QPainter* Painter, const QStyleOptionViewItem& Option,
               const QModelIndex& Index) const override {
        if (FList->Style() != lbOwnerDrawFixed) {
            QStyledItemDelegate::paint(Painter, Option, Index);
            return;
        }
        const QPalette palette = FList->palette();
        TQtCanvas canvas(*Painter, &palette);
        TOwnerDrawState state = 0;
        if (Option.state & QStyle::State_Selected) state |= odSelected;
        if (Option.state & QStyle::State_HasFocus) state |= odFocused;
        const QRect r = Option.rect;
        FList->DrawRow(canvas, Index.row(), Bounds(r.left(), r.top(), r.width(), r.height()),
                       state);
    }

    QSize sizeHint(const QStyleOptionViewItem& Option, const QModelIndex& Index) const override {
        QSize size = QStyledItemDelegate::sizeHint(Option, Index);
        if (FList->Style() == lbOwnerDrawFixed) size.setHeight(FList->ItemHeight());
        return size;
    }

private:
    TUniListBox* FList;
};

} // namespace

int TUniEdit::VirtualKey(int QtKey) {
    return VirtualKeyOf(QtKey);
}

// --- TUniListItems ----------------------------------------------------------

int TUniListItems::Count() const {
    return FOwner->count();
}

void TUniListItems::CheckIndex(int Index) const {
    if (Index < 0 || Index >= Count())
        throw EStringListError(FormatIndexMessage(RtlMessages::SListIndexError, Index));
}

int TUniListItems::AddObject(const WideString& S, TObjectValue Object) {
    auto* item = new QListWidgetItem(QString::fromStdU16String(S));
    item->setData(Qt::UserRole, QVariant::fromValue<qlonglong>(Object));
    FOwner->addItem(item);
    return Count() - 1;
}

WideString TUniListItems::Strings(int Index) const {
    CheckIndex(Index);
    return FOwner->item(Index)->text().toStdU16String();
}

TObjectValue TUniListItems::Objects(int Index) const {
    CheckIndex(Index);
    return TObjectValue(FOwner->item(Index)->data(Qt::UserRole).toLongLong());
}

void TUniListItems::Delete(int Index) {
    CheckIndex(Index);
    // A deleted selected row leaves no selection behind, as a list box does;
    // Qt would move it to a neighbour.
    const bool wasCurrent = FOwner->currentRow() == Index;
    delete FOwner->takeItem(Index);
    if (wasCurrent) FOwner->SetItemIndex(-1);
}

void TUniListItems::Clear() {
    FOwner->clear();
}

std::vector<WideString> TUniListItems::ToVector() const {
    std::vector<WideString> rows;
    for (int i = 0; i < Count(); ++i)
        rows.push_back(FOwner->item(i)->text().toStdU16String());
    return rows;
}

// --- TUniListBox ------------------------------------------------------------

TUniListBox::TUniListBox(QWidget* Parent) : QListWidget(Parent) {
    setItemDelegate(new TUniListDelegate(*this));
    setSelectionMode(QAbstractItemView::SingleSelection);
}

int TUniListBox::ItemIndex() const {
    const int row = currentRow();
    if (row < 0 || row >= count()) return -1;
    if (!FMultiSelect && !item(row)->isSelected()) return -1;
    return row;
}

void TUniListBox::SetItemIndex(int Value) {
    if (Value < 0 || Value >= count()) {
        clearSelection();
        setCurrentRow(-1);
        return;
    }
    setCurrentRow(Value);
}

void TUniListBox::SetMultiSelect(bool Value) {
    FMultiSelect = Value;
    setSelectionMode(Value ? QAbstractItemView::ExtendedSelection
                           : QAbstractItemView::SingleSelection);
}

bool TUniListBox::Selected(int Index) const {
    FItems.Objects(Index); // the index check of the list
    return item(Index)->isSelected();
}

void TUniListBox::SetSelected(int Index, bool Value) {
    FItems.Objects(Index);
    item(Index)->setSelected(Value);
}

int TUniListBox::SelCount() const {
    return int(selectedItems().size());
}

void TUniListBox::DeleteSelected() {
    for (int i = count() - 1; i >= 0; --i)
        if (item(i)->isSelected()) delete takeItem(i);
    SetItemIndex(-1);
}

void TUniListBox::SetStyle(TListBoxStyle Value) {
    if (FStyle == Value) return;
    FStyle = Value;
    setUniformItemSizes(Value == lbOwnerDrawFixed);
    doItemsLayout();
}

void TUniListBox::SetItemHeight(int Value) {
    if (FItemHeight == Value || Value <= 0) return;
    FItemHeight = Value;
    doItemsLayout();
}

void TUniListBox::DrawRow(TCanvas& Canvas, int Index, const TRect& Rect, TOwnerDrawState State) {
    TFont font = FontOf(this->font());
    font.Color = (State & odSelected) ? clHighlightText : clWindowText;
    Canvas.SetFont(font);
    Canvas.SetBrushColor((State & odSelected) ? clHighlight : clWindow);
    if (OnDrawItem) {
        OnDrawItem(*this, Canvas, Index, Rect, State);
        return;
    }
    Canvas.FillRect(Rect);
    if (Index >= 0 && Index < count())
        Canvas.TextOut(Rect.Left + 2, Rect.Top, FItems.Strings(Index));
}

void TUniListBox::mouseReleaseEvent(QMouseEvent* Event) {
    QListWidget::mouseReleaseEvent(Event);
    if (OnClick && itemAt(Event->position().toPoint())) OnClick(this);
}

void TUniListBox::keyPressEvent(QKeyEvent* Event) {
    // The chosen row, not the row with the focus mark: a list that gets the
    // focus marks its first row unchosen, and Space or an arrow then chooses it.
    const int before = ItemIndex();
    QListWidget::keyPressEvent(Event);
    if (OnClick && ItemIndex() != before && ItemIndex() >= 0) OnClick(this);
}

// --- TUniEdit ---------------------------------------------------------------

TUniEdit::TUniEdit(QWidget* Parent) : QLineEdit(Parent) {}

void TUniEdit::keyPressEvent(QKeyEvent* Event) {
    if (OnKeyDown) {
        int key = VirtualKey(Event->key());
        if (key != 0) {
            OnKeyDown(this, key, Event->modifiers());
            if (key == 0) {
                Event->accept();
                return;
            }
        }
    }
    QLineEdit::keyPressEvent(Event);
}

// --- TUniMemo ---------------------------------------------------------------

int TUniMemoLines::Count() const {
    return int(ToVector().size());
}

WideString TUniMemoLines::Strings(int Index) const {
    const std::vector<WideString> lines = ToVector();
    if (Index < 0 || Index >= int(lines.size()))
        throw EStringListError(FormatIndexMessage(RtlMessages::SListIndexError, Index));
    return lines[std::size_t(Index)];
}

void TUniMemoLines::Add(const WideString& S) {
    AddLines(1, [&S](int) { return S; });
}

void TUniMemoLines::AddLines(int Count, const std::function<WideString(int Index)>& Line) {
    if (Count <= 0) return;
    // Only the last character matters: a text that does not end its last
    // line gets the line end first. The document counts a closing block end
    // of its own, which is not part of the text.
    QTextDocument* document = FOwner->document();
    const int count = document->characterCount();
    QString insertion;
    if (count > 1 && document->characterAt(count - 2) != QChar::ParagraphSeparator)
        insertion += QChar(u'\n');
    for (int i = 0; i < Count; ++i) {
        insertion += QString::fromStdU16String(Line(i));
        insertion += QChar(u'\n');
    }
    QTextCursor cursor(document);
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(insertion);
}

void TUniMemoLines::Clear() {
    FOwner->clear();
}

std::vector<WideString> TUniMemoLines::ToVector() const {
    const WideString raw = FOwner->RawText();
    std::vector<WideString> lines;
    std::size_t start = 0;
    while (start < raw.size()) {
        const std::size_t end = raw.find(u'\n', start);
        if (end == WideString::npos) {
            lines.push_back(raw.substr(start));
            break;
        }
        lines.push_back(raw.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

TUniMemo::TUniMemo(QWidget* Parent) : QPlainTextEdit(Parent) {
    connect(this, &QPlainTextEdit::textChanged, this, [this] {
        if (OnChange) OnChange(this);
    });
}

int CtrlTabStep(const QKeyEvent* Event) {
    const Qt::KeyboardModifiers mods = Event->modifiers() & ~Qt::KeypadModifier;
    if ((Event->key() != Qt::Key_Tab && Event->key() != Qt::Key_Backtab) ||
        !(mods & Qt::ControlModifier) || (mods & Qt::AltModifier))
        return 0;
    return Event->key() == Qt::Key_Backtab || (mods & Qt::ShiftModifier) ? -1 : 1;
}

void TUniMemo::keyPressEvent(QKeyEvent* Event) {
    if (const int step = CtrlTabStep(Event)) {
        // The editor's own focusNextPrevChild refuses while the text is
        // editable; the widget's walks the window's tab chain.
        QWidget::focusNextPrevChild(step > 0);
        return;
    }
    QPlainTextEdit::keyPressEvent(Event);
}

WideString TUniMemo::RawText() const {
    // The raw text keeps every character as typed (plain text would turn
    // no-break spaces into spaces); only block ends become line feeds.
    WideString text = document()->toRawText().toStdU16String();
    for (char16_t& c : text)
        if (c == ParagraphSeparator) c = u'\n';
    return text;
}

WideString TUniMemo::Text() const {
    const WideString raw = RawText();
    WideString text;
    text.reserve(raw.size());
    for (char16_t c : raw) {
        if (c == u'\n') text += u'\r';
        text += c;
    }
    return text;
}

void TUniMemo::SetText(const WideString& Value) {
    WideString text;
    text.reserve(Value.size());
    for (std::size_t i = 0; i < Value.size(); ++i) {
        if (Value[i] == u'\r') {
            if (i + 1 < Value.size() && Value[i + 1] == u'\n') continue;
            text += u'\n';
        } else {
            text += Value[i];
        }
    }
    setPlainText(QString::fromStdU16String(text));
}

void TUniMemo::SetWordWrap(bool Value) {
    setLineWrapMode(Value ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap);
}

// --- TUniLabel --------------------------------------------------------------

TUniLabel::TUniLabel(const WideString& Caption, QWidget* Parent)
    : QLabel(QString::fromStdU16String(Caption), Parent) {
    setTextFormat(Qt::PlainText);
}

// --- TUniBitBtn -------------------------------------------------------------

TUniBitBtn::TUniBitBtn(const WideString& Caption, QWidget* Parent)
    : QPushButton(QString::fromStdU16String(Caption), Parent) {
    // Only a stock OK button is the default one; Enter elsewhere stays in its field.
    setAutoDefault(false);
    connect(this, &QPushButton::clicked, this, [this] { Clicked(); });
}

void TUniBitBtn::SetKind(TBitBtnKind Value) {
    FKind = Value;
    QStyle::StandardPixmap glyph = QStyle::SP_DialogOkButton;
    switch (Value) {
    case bkOK:
        SetCaption(u"OK");
        FModalResult = 1;
        setDefault(true);
        break;
    case bkCancel:
        SetCaption(u"Cancel");
        FModalResult = 2;
        glyph = QStyle::SP_DialogCancelButton;
        break;
    case bkAbort:
        SetCaption(u"Abort");
        FModalResult = 3;
        glyph = QStyle::SP_BrowserStop;
        break;
    case bkCustom:
        return;
    }
    setIcon(style()->standardIcon(glyph));
}

void TUniBitBtn::Clicked() {
    if (OnClick) OnClick(this);
    if (FModalResult == 0) return;
    if (auto* dialog = qobject_cast<QDialog*>(window())) dialog->done(FModalResult);
}
