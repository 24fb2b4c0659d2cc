#pragma once
// Toolbars: TCustomWgToolBar, a panel that lays out a row of buttons, and
// TWgToolbar; the flat glyph buttons TCustomWgGraphicButton,
// TCustomWgToolButton and TWgToolButton. The arithmetic lives in the core
// (WgToolBarLayout, WgToolBarPaint); these widgets host it.

#include "base/ImageList.h"
#include "controls/WgAction.h"
#include "controls/WgToolBarLayout.h"
#include "controls/WgToolBarPaint.h"
#include "controls/ui/WgPanel.h"
#include "controls/ui/WgPopupMenu.h"

#include <QPointer>
#include <QWidget>

#include <functional>

class TCustomWgToolBar;

class TCustomWgGraphicButton : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
public:
    using TNotifyEvent = std::function<void(QObject* Sender)>;
    explicit TCustomWgGraphicButton(QWidget* Parent = nullptr);

    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }

    const WideString& Caption() const { return FCaption; }
    virtual void SetCaption(const WideString& Value);
    // A "|" splits the hint into its short form, shown under the pointer,
    // and its long form, for the status line.
    const WideString& Hint() const { return FHint; }
    void SetHint(const WideString& Value);
    bool Flat() const { return FFlat; }
    void SetFlat(bool Value);
    // A button that stays pressed.
    bool Down() const { return FDown; }
    void SetDown(bool Value);
    int ImageIndex() const { return FImageIndex; }
    void SetImageIndex(int Value);
    const TWgImageList* Images() const { return FImages; }
    void SetImages(const TWgImageList* Value);
    // Own glyph, shown when no image list is used.
    const TMemoryBitmap& Glyph() const { return FGlyph; }
    void SetGlyph(const TMemoryBitmap& Value);
    bool ShowGlyph() const { return FShowGlyph; }
    void SetShowGlyph(bool Value);
    bool ShowText() const { return FShowText; }
    void SetShowText(bool Value);
    bool Transparent() const { return FTransparent; }
    void SetTransparent(bool Value);
    bool ShowBorder() const { return FShowBorder; }
    void SetShowBorder(bool Value);
    TColor Color() const { return FColor; }
    void SetColor(TColor Value);
    const TFont& Font() const { return FFont; }
    void SetFont(const TFont& Value);

    // Binds the button to an action (null lets go): it shows the action's
    // caption, hint, image, state and checked state (as Down), now and at
    // every change, and a click without OnClick runs the action.
    TWgAction* Action() const { return FActionLink.Action(); }
    void SetAction(TWgAction* Value);

    // The pointer is over the button.
    bool Hot() const { return FHot; }
    // Fires OnClick, or without one runs the action.
    virtual void Click();
    TNotifyEvent OnClick;

    // The face as painted now.
    virtual TWgButtonFace Face() const;
    // Size of the content, for the bar's layout.
    virtual TSize ContentSize() const;

protected:
    bool event(QEvent* Event) override;
    void paintEvent(QPaintEvent* Event) override;
    void enterEvent(QEnterEvent* Event) override;
    void leaveEvent(QEvent* Event) override;
    void mousePressEvent(QMouseEvent* Event) override;
    void mouseReleaseEvent(QMouseEvent* Event) override;
    void changeEvent(QEvent* Event) override;
    // Something that changes the content's size or the look changed.
    virtual void FaceChanged();
    void SetHotState(bool Value);

    bool FPressed = false;

private:
    int FTag = 0;
    WideString FCaption;
    WideString FHint;
    bool FFlat = true;
    bool FDown = false;
    int FImageIndex = -1;
    const TWgImageList* FImages = nullptr;
    TMemoryBitmap FGlyph;
    bool FShowGlyph = true;
    bool FShowText = false;
    bool FTransparent = false;
    bool FShowBorder = true;
    TColor FColor = clBtnFace;
    TFont FFont;
    bool FHot = false;
    TWgActionLink FActionLink;
};

class TCustomWgToolButton : public TCustomWgGraphicButton {
    Q_OBJECT
public:
    explicit TCustomWgToolButton(QWidget* Parent = nullptr);
    ~TCustomWgToolButton() override;

    TWgToolButtonType ButtonType() const { return FButtonType; }
    void SetButtonType(TWgToolButtonType Value);
    // A button of another type has no caption: setting one clears it.
    void SetCaption(const WideString& Value) override;
    bool Wrap() const { return FWrap; }
    void SetWrap(bool Value);
    bool UseImageList() const { return FUseImageList; }
    void SetUseImageList(bool Value);
    int NumGlyphs() const { return FNumGlyphs; }
    void SetNumGlyphs(int Value) { FNumGlyphs = Value; }
    TWgPopupMenu* PullDownMenu() const { return FPullDownMenu; }
    void SetPullDownMenu(TWgPopupMenu* Value) { FPullDownMenu = Value; }

    TCustomWgToolBar* ToolBar() const;
    TWgButtonFace Face() const override;

protected:
    void mousePressEvent(QMouseEvent* Event) override;
    bool event(QEvent* Event) override;
    void FaceChanged() override;

private:
    TWgToolButtonType FButtonType = ebtButton;
    bool FWrap = false;
    bool FUseImageList = true;
    int FNumGlyphs = 1;
    QPointer<TWgPopupMenu> FPullDownMenu;
};

// A tool button of a bar: also reached by Tab, and Space or Enter click it.
class TWgToolButton : public TCustomWgToolButton {
    Q_OBJECT
public:
    explicit TWgToolButton(QWidget* Parent = nullptr);

protected:
    void paintEvent(QPaintEvent* Event) override;
    void keyPressEvent(QKeyEvent* Event) override;
    void keyReleaseEvent(QKeyEvent* Event) override;
    void focusInEvent(QFocusEvent* Event) override;
    void focusOutEvent(QFocusEvent* Event) override;
};

class TCustomWgToolBar : public TWgPanel {
    Q_OBJECT
public:
    explicit TCustomWgToolBar(QWidget* Parent = nullptr);

    int BtnWidth() const { return FMetrics.BtnWidth; }
    void SetBtnWidth(int Value);
    int BtnHeight() const { return FMetrics.BtnHeight; }
    void SetBtnHeight(int Value);
    int LargeBtnWidth() const { return FMetrics.LargeBtnWidth; }
    int LargeBtnHeight() const { return FMetrics.LargeBtnHeight; }
    bool LargeSize() const { return FMetrics.LargeSize; }
    void SetLargeSize(bool Value);
    int BtnOffsHorz() const { return FMetrics.BtnOffsHorz; }
    void SetBtnOffsHorz(int Value);
    int BtnOffsVert() const { return FMetrics.BtnOffsVert; }
    void SetBtnOffsVert(int Value);
    bool ShowGlyph() const { return FShowGlyph; }
    void SetShowGlyph(bool Value);
    bool ShowCaption() const { return FShowCaption; }
    void SetShowCaption(bool Value);
    int GlyphLayout() const { return FGlyphLayout; }
    int Spacing() const { return FSpacing; }
    int Margin() const { return FMargin; }
    bool Flat() const { return FFlat; }
    void SetFlat(bool Value);
    bool AutoSize() const { return FMetrics.AutoSize; }
    void SetAutoSize(bool Value);
    bool AutoWrap() const { return FMetrics.AutoWrap; }
    void SetAutoWrap(bool Value);
    int MinSize() const { return FMetrics.MinSize; }
    void SetMinSize(int Value);
    TColor ButtonColor() const { return FButtonColor; }
    void SetButtonColor(TColor Value);
    int Orientation() const { return FMetrics.Orientation; }
    void SetOrientation(int Value);
    bool AdjustButtonWidth() const { return FMetrics.AdjustButtonWidth; }
    bool AdjustButtonHeight() const { return FMetrics.AdjustButtonHeight; }
    bool ShowBorder() const { return FShowBorder; }
    void SetShowBorder(bool Value);
    const TWgImageList* Images() const { return FImages; }
    void SetImages(const TWgImageList* Value);
    // Glyphs of a button under the pointer and of a disabled one, by the
    // same index as Images.
    const TWgImageList* HotImages() const { return FHotImages; }
    void SetHotImages(const TWgImageList* Value);
    const TWgImageList* DisabledImages() const { return FDisabledImages; }
    void SetDisabledImages(const TWgImageList* Value);
    bool UseImageList() const { return FUseImageList; }
    void SetUseImageList(bool Value);
    bool TransparentButtons() const { return FTransparentButtons; }
    void SetTransparentButtons(bool Value);
    bool ShowMoreMenu() const { return FMetrics.ShowMoreMenu; }
    void SetShowMoreMenu(bool Value);
    // Button captions that begin with "<html>" are drawn as markup.
    bool IsHTML() const { return FIsHTML; }
    void SetIsHTML(bool Value);
    void SetBevelOuter(TPanelBevel Value) override;
    void SetBevelInner(TPanelBevel Value) override;
    void SetFont(const TFont& Value) override;

    // The buttons in layout order.
    QList<TCustomWgToolButton*> Buttons() const;
    // Runs the layout now (it also runs by itself on every change).
    void Realign();
    // A new button: it goes to the end of the row.
    void ButtonAdded(TCustomWgToolButton* Button);

protected:
    void resizeEvent(QResizeEvent* Event) override;
    void childEvent(QChildEvent* Event) override;
    void paintEvent(QPaintEvent* Event) override;
    void LookChanged() override;
    void Changed();

    TWgToolBarMetrics FMetrics;

private:
    bool FShowGlyph = true;
    bool FShowCaption = false;
    int FGlyphLayout = 0;
    int FSpacing = 4;
    int FMargin = -1;
    bool FFlat = true;
    TColor FButtonColor = clBtnFace;
    bool FShowBorder = true;
    const TWgImageList* FImages = nullptr;
    const TWgImageList* FHotImages = nullptr;
    const TWgImageList* FDisabledImages = nullptr;
    bool FUseImageList = false;
    bool FTransparentButtons = false;
    bool FIsHTML = false;
    bool FLayingOut = false;
};

class TWgToolbar : public TCustomWgToolBar {
    Q_OBJECT
public:
    using TCustomWgToolBar::TCustomWgToolBar;
};
