#pragma once
// The wide standard controls the forms use: list box, edit, memo, label and
// glyph button. Qt's own widgets already hold wide text; these classes add
// what the forms rely on beyond that: object values beside list strings,
// ItemIndex with -1 for none and the list's index error, owner drawing of
// rows through our canvas, key and change events with the sender first, and
// an int Tag on every control.

#include "base/Canvas.h"
#include "base/Types.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

#include <functional>
#include <vector>

class TUniListBox;

enum TListBoxStyle : std::uint8_t { lbStandard = 0, lbOwnerDrawFixed = 1 };

enum TOwnerDrawStateFlag : unsigned { odSelected = 1, odFocused = 16 };
using TOwnerDrawState = unsigned;

// Paints one row of an owner-drawn list box. The canvas arrives with the
// list's font and with the brush and font colour of the row's state.
using TUniDrawItemEvent = std::function<void(TUniListBox& Control, TCanvas& Canvas, int Index,
                                             const TRect& Rect, TOwnerDrawState State)>;
using TUniNotifyEvent = std::function<void(QObject* Sender)>;
// Key is the classic virtual key number (13 Enter, 27 Escape, ...) and may
// be set to 0 to swallow the key.
using TUniKeyEvent = std::function<void(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift)>;

// The rows of a list box as a string list with object values.
class TUniListItems {
public:
    explicit TUniListItems(TUniListBox& Owner) : FOwner(&Owner) {}

    int Count() const;
    int Add(const WideString& S) { return AddObject(S, 0); }
    int AddObject(const WideString& S, TObjectValue Object);
    // Reading outside 0..Count-1 raises EStringListError with the list's index text.
    WideString Strings(int Index) const;
    TObjectValue Objects(int Index) const;
    void Delete(int Index);
    void Clear();
    std::vector<WideString> ToVector() const;

private:
    void CheckIndex(int Index) const;
    TUniListBox* FOwner;
};

class TUniListBox : public QListWidget {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
    Q_PROPERTY(int ItemIndex READ ItemIndex WRITE SetItemIndex)
public:
    explicit TUniListBox(QWidget* Parent = nullptr);

    TUniListItems& Items() { return FItems; }
    const TUniListItems& Items() const { return FItems; }

    // The selected row (the focused row with MultiSelect), -1 without one.
    int ItemIndex() const;
    void SetItemIndex(int Value);

    bool MultiSelect() const { return FMultiSelect; }
    void SetMultiSelect(bool Value);
    bool Selected(int Index) const;
    void SetSelected(int Index, bool Value);
    int SelCount() const;
    void DeleteSelected();

    TListBoxStyle Style() const { return FStyle; }
    void SetStyle(TListBoxStyle Value);
    int ItemHeight() const { return FItemHeight; }
    void SetItemHeight(int Value);

    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }

    // Fires when the user changes the selection by mouse or keyboard, not
    // when the program sets ItemIndex.
    TUniNotifyEvent OnClick;
    TUniDrawItemEvent OnDrawItem;

    // Paints row Index into Canvas as the owner-drawn list would; used by
    // the row delegate and by tests.
    void DrawRow(TCanvas& Canvas, int Index, const TRect& Rect, TOwnerDrawState State);

protected:
    void mouseReleaseEvent(QMouseEvent* Event) override;
    void keyPressEvent(QKeyEvent* Event) override;

private:
    TUniListItems FItems{*this};
    bool FMultiSelect = false;
    TListBoxStyle FStyle = lbStandard;
    int FItemHeight = 13;
    int FTag = 0;
};

class TUniEdit : public QLineEdit {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
public:
    explicit TUniEdit(QWidget* Parent = nullptr);

    WideString Text() const { return text().toStdU16String(); }
    void SetText(const WideString& Value) { setText(QString::fromStdU16String(Value)); }

    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }

    TUniKeyEvent OnKeyDown;

    // The classic virtual key number of a Qt key, for the letters, digits
    // and the keys the forms look at; 0 for keys without one.
    static int VirtualKey(int QtKey);

protected:
    void keyPressEvent(QKeyEvent* Event) override;

private:
    int FTag = 0;
};

class QKeyEvent;

// Ctrl+Tab (1) and Ctrl+Shift+Tab (-1), which leave a text view whose own
// Tab types or selects; 0 for any other key.
int CtrlTabStep(const QKeyEvent* Event);

class TUniMemo;

// The lines of a memo: its text split on line feeds, where a final line
// end adds no empty line.
class TUniMemoLines {
public:
    explicit TUniMemoLines(TUniMemo& Owner) : FOwner(&Owner) {}

    int Count() const;
    WideString Strings(int Index) const;
    // Appends a line and its line end, as one change of the text.
    void Add(const WideString& S);
    // Appends Count lines, Line(i) each, as one change of the text: the same
    // text as Count calls of Add, without Count changes.
    void AddLines(int Count, const std::function<WideString(int Index)>& Line);
    void Clear();
    std::vector<WideString> ToVector() const;

private:
    TUniMemo* FOwner;
};

class TUniMemo : public QPlainTextEdit {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
public:
    explicit TUniMemo(QWidget* Parent = nullptr);

    TUniMemoLines& Lines() { return FLines; }
    const TUniMemoLines& Lines() const { return FLines; }

    // The whole text, line breaks as carriage return and line feed.
    WideString Text() const;
    void SetText(const WideString& Value);
    // The text exactly as the control holds it, line breaks as line feeds.
    WideString RawText() const;

    void SetWordWrap(bool Value);

    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }

    // Fires on every change of the text, the program's own included.
    TUniNotifyEvent OnChange;

protected:
    // Tab types a tab here; Ctrl+Tab and Ctrl+Shift+Tab leave the memo.
    void keyPressEvent(QKeyEvent* Event) override;

private:
    TUniMemoLines FLines{*this};
    int FTag = 0;
};

class TUniLabel : public QLabel {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
public:
    explicit TUniLabel(const WideString& Caption = WideString(), QWidget* Parent = nullptr);

    WideString Caption() const { return text().toStdU16String(); }
    void SetCaption(const WideString& Value) { setText(QString::fromStdU16String(Value)); }

    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }

private:
    int FTag = 0;
};

// The stock buttons: caption, glyph and modal result come with the kind.
enum TBitBtnKind : std::uint8_t { bkCustom = 0, bkOK = 1, bkCancel = 2, bkAbort = 3 };

class TUniBitBtn : public QPushButton {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
    Q_PROPERTY(int ModalResult READ ModalResult WRITE SetModalResult)
public:
    explicit TUniBitBtn(const WideString& Caption = WideString(), QWidget* Parent = nullptr);

    WideString Caption() const { return text().toStdU16String(); }
    void SetCaption(const WideString& Value) { setText(QString::fromStdU16String(Value)); }
    void SetGlyph(const QPixmap& Glyph) { setIcon(QIcon(Glyph)); }

    TBitBtnKind Kind() const { return FKind; }
    void SetKind(TBitBtnKind Value);
    // A click with a modal result other than 0 ends the dialog it sits on
    // with that result.
    int ModalResult() const { return FModalResult; }
    void SetModalResult(int Value) { FModalResult = Value; }

    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }

    TUniNotifyEvent OnClick;

private:
    void Clicked();

    TBitBtnKind FKind = bkCustom;
    int FModalResult = 0;
    int FTag = 0;
};
