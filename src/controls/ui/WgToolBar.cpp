#include "controls/ui/WgToolBar.h"

#include "base/ui/QtCanvas.h"
#include "controls/HTMLCaption.h"
#include "controls/WgHint.h"
#include "controls/ui/WgHintWindow.h"
#include "controls/ui/WgPopupMenu.h"

#include <QChildEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace {

// Where a button that has just been created waits until the layout places
// it: beyond every other, so it is ordered last.
constexpr int NewButtonPosition = 32000;

} // namespace

// ---------------------------------------------------------------- graphic button

TCustomWgGraphicButton::TCustomWgGraphicButton(QWidget* Parent) : QWidget(Parent) {
    FFont.Name = u"Tahoma";
    FFont.Height = -11;
    resize(24, 24);
}

#define WG_BUTTON_SETTER(Name, Type, Field)                                                        \
    void TCustomWgGraphicButton::Set##Name(Type Value) {                                           \
        if (Field == Value) return;                                                                \
        Field = Value;                                                                             \
        FaceChanged();                                                                             \
    }

WG_BUTTON_SETTER(Caption, const WideString&, FCaption)
WG_BUTTON_SETTER(Flat, bool, FFlat)
WG_BUTTON_SETTER(Down, bool, FDown)
WG_BUTTON_SETTER(ImageIndex, int, FImageIndex)
WG_BUTTON_SETTER(Images, const TWgImageList*, FImages)
WG_BUTTON_SETTER(ShowGlyph, bool, FShowGlyph)
WG_BUTTON_SETTER(ShowText, bool, FShowText)
WG_BUTTON_SETTER(Transparent, bool, FTransparent)
WG_BUTTON_SETTER(ShowBorder, bool, FShowBorder)
WG_BUTTON_SETTER(Color, TColor, FColor)
WG_BUTTON_SETTER(Font, const TFont&, FFont)

#undef WG_BUTTON_SETTER

void TCustomWgGraphicButton::SetHint(const WideString& Value) {
    FHint = Value;
    // The short form shows in our hint window (see event()), the long one
    // on the status line.
    setStatusTip(QString::fromStdU16String(CaptionPlainText(GetLongHint(Value))));
    // A glyph-only button is known to assistive tools by its hint.
    setAccessibleName(QString::fromStdU16String(CaptionPlainText(GetShortHint(Value))));
}

bool TCustomWgGraphicButton::event(QEvent* Event) {
    if (Event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(Event);
        if (!TWgHintWindow::ShowControlHint(this, help->globalPos(), FHint)) Event->ignore();
        return true;
    }
    return QWidget::event(Event);
}

void TCustomWgGraphicButton::SetGlyph(const TMemoryBitmap& Value) {
    FGlyph = Value;
    FaceChanged();
}

void TCustomWgGraphicButton::SetAction(TWgAction* Value) {
    FActionLink.OnChange = [this](TWgAction& Action) {
        SetCaption(Action.Caption());
        if (FHint != Action.Hint()) SetHint(Action.Hint());
        SetImageIndex(Action.ImageIndex());
        SetDown(Action.Checked());
        setEnabled(Action.Enabled());
        // A button outside any window is never shown: it would become a
        // window of its own.
        if (parentWidget() || !Action.Visible()) setVisible(Action.Visible());
    };
    FActionLink.Bind(Value);
}

void TCustomWgGraphicButton::Click() {
    if (!isEnabled()) return;
    if (OnClick)
        OnClick(this);
    else if (TWgAction* action = Action())
        action->Execute();
}

TWgButtonFace TCustomWgGraphicButton::Face() const {
    TWgButtonFace face;
    face.Flat = FFlat;
    face.Hot = FHot;
    face.Down = FDown || FPressed;
    face.Enabled = isEnabled();
    face.Transparent = FTransparent;
    face.ShowBorder = FShowBorder;
    face.Color = FColor;
    face.ShowGlyph = FShowGlyph;
    face.ShowCaption = FShowText;
    face.Caption = FCaption;
    face.Font = FFont;
    face.Images = FImages;
    face.ImageIndex = FImageIndex;
    face.Glyph = &FGlyph;
    return face;
}

TSize TCustomWgGraphicButton::ContentSize() const {
    // Measuring needs the real font; a painter on a throw-away image gives it.
    QImage scratch(1, 1, QImage::Format_RGB32);
    QPainter painter(&scratch);
    TQtCanvas canvas(painter);
    return ToolButtonContentSize(canvas, Face());
}

void TCustomWgGraphicButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    TQtCanvas canvas(painter, &palette());
    PaintToolButton(canvas, Rect(0, 0, width(), height()), Face());
}

void TCustomWgGraphicButton::SetHotState(bool Value) {
    if (FHot == Value) return;
    FHot = Value;
    update();
}

void TCustomWgGraphicButton::enterEvent(QEnterEvent*) {
    SetHotState(true);
}

void TCustomWgGraphicButton::leaveEvent(QEvent*) {
    SetHotState(false);
}

void TCustomWgGraphicButton::mousePressEvent(QMouseEvent* Event) {
    if (Event->button() != Qt::LeftButton) return;
    FPressed = true;
    update();
}

void TCustomWgGraphicButton::mouseReleaseEvent(QMouseEvent* Event) {
    if (Event->button() != Qt::LeftButton || !FPressed) return;
    FPressed = false;
    update();
    if (rect().contains(Event->position().toPoint())) Click();
}

void TCustomWgGraphicButton::changeEvent(QEvent* Event) {
    if (Event->type() == QEvent::EnabledChange) update();
    QWidget::changeEvent(Event);
}

void TCustomWgGraphicButton::FaceChanged() {
    update();
}

// ---------------------------------------------------------------- tool button

TCustomWgToolButton::TCustomWgToolButton(QWidget* Parent) : TCustomWgGraphicButton(Parent) {
    if (TCustomWgToolBar* bar = ToolBar()) bar->ButtonAdded(this);
}

TCustomWgToolButton::~TCustomWgToolButton() = default;

// ---------------------------------------------------------------- tool button

TWgToolButton::TWgToolButton(QWidget* Parent) : TCustomWgToolButton(Parent) {
    setFocusPolicy(Qt::TabFocus);
}

void TWgToolButton::paintEvent(QPaintEvent* Event) {
    TCustomWgToolButton::paintEvent(Event);
    if (!hasFocus()) return;
    // The keyboard's mark: a dotted rectangle inside the face.
    QPainter painter(this);
    TQtCanvas canvas(painter, &palette());
    canvas.SetPenColor(clWindowText);
    canvas.SetPenStyle(psDot);
    const TRect r = Rect(2, 2, width() - 3, height() - 3);
    canvas.MoveTo(r.Left, r.Top);
    canvas.LineTo(r.Right, r.Top);
    canvas.LineTo(r.Right, r.Bottom);
    canvas.LineTo(r.Left, r.Bottom);
    canvas.LineTo(r.Left, r.Top);
}

void TWgToolButton::keyPressEvent(QKeyEvent* Event) {
    const bool plain = !(Event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    if (plain && !Event->isAutoRepeat() &&
        (Event->key() == Qt::Key_Space || Event->key() == Qt::Key_Return ||
         Event->key() == Qt::Key_Enter)) {
        // Pressed while the key is down, clicked when it goes up, as with the mouse.
        FPressed = true;
        update();
        return;
    }
    TCustomWgToolButton::keyPressEvent(Event);
}

void TWgToolButton::keyReleaseEvent(QKeyEvent* Event) {
    if (FPressed && !Event->isAutoRepeat() &&
        (Event->key() == Qt::Key_Space || Event->key() == Qt::Key_Return ||
         Event->key() == Qt::Key_Enter)) {
        FPressed = false;
        update();
        Click();
        return;
    }
    TCustomWgToolButton::keyReleaseEvent(Event);
}

void TWgToolButton::focusInEvent(QFocusEvent* Event) {
    TCustomWgToolButton::focusInEvent(Event);
    update();
}

void TWgToolButton::focusOutEvent(QFocusEvent* Event) {
    TCustomWgToolButton::focusOutEvent(Event);
    FPressed = false;
    update();
}

TCustomWgToolBar* TCustomWgToolButton::ToolBar() const {
    return qobject_cast<TCustomWgToolBar*>(parentWidget());
}

void TCustomWgToolButton::SetButtonType(TWgToolButtonType Value) {
    if (FButtonType == Value) return;
    FButtonType = Value;
    if (Value != ebtButton) TCustomWgGraphicButton::SetCaption({});
    FaceChanged();
}

void TCustomWgToolButton::SetCaption(const WideString& Value) {
    TCustomWgGraphicButton::SetCaption(FButtonType == ebtButton ? Value : WideString());
}

void TCustomWgToolButton::SetWrap(bool Value) {
    if (FWrap == Value) return;
    FWrap = Value;
    FaceChanged();
}

void TCustomWgToolButton::SetUseImageList(bool Value) {
    if (FUseImageList == Value) return;
    FUseImageList = Value;
    FaceChanged();
}

TWgButtonFace TCustomWgToolButton::Face() const {
    TWgButtonFace face = TCustomWgGraphicButton::Face();
    if (const TCustomWgToolBar* bar = ToolBar()) {
        face.Flat = bar->Flat();
        face.ShowGlyph = bar->ShowGlyph() && ShowGlyph();
        face.ShowCaption = bar->ShowCaption() || ShowText();
        face.Spacing = bar->Spacing();
        if (bar->TransparentButtons()) face.Transparent = true;
        face.Color = bar->ButtonColor();
        face.Font = bar->Font();
        face.IsHTML = bar->IsHTML();
        if (FUseImageList && bar->UseImageList() && bar->Images()) {
            face.Images = bar->Images();
            face.HotImages = bar->HotImages();
            face.DisabledImages = bar->DisabledImages();
        }
    }
    if (!FUseImageList) face.Images = nullptr;
    if (FButtonType != ebtButton) {
        face.ShowGlyph = false;
        face.ShowCaption = false;
        face.ShowBorder = false;
        face.Transparent = true;
    }
    return face;
}

void TCustomWgToolButton::mousePressEvent(QMouseEvent* Event) {
    if (FButtonType != ebtButton) return;
    TCustomWgGraphicButton::mousePressEvent(Event);
    if (FPullDownMenu && Event->button() == Qt::LeftButton) {
        FPressed = false;
        FPullDownMenu->Popup(mapToGlobal(QPoint(0, height())));
    }
}

bool TCustomWgToolButton::event(QEvent* Event) {
    const bool handled = TCustomWgGraphicButton::event(Event);
    if (Event->type() == QEvent::ShowToParent || Event->type() == QEvent::HideToParent)
        if (TCustomWgToolBar* bar = ToolBar()) bar->Realign();
    return handled;
}

void TCustomWgToolButton::FaceChanged() {
    TCustomWgGraphicButton::FaceChanged();
    if (TCustomWgToolBar* bar = ToolBar()) bar->Realign();
}

// ---------------------------------------------------------------- toolbar

TCustomWgToolBar::TCustomWgToolBar(QWidget* Parent) : TWgPanel(Parent) {
    // A bar frames nothing by default, so that buttons start at the offsets.
    FLook.BevelOuter = bvNone;
    FLook.BevelInner = bvNone;
    setFocusPolicy(Qt::NoFocus); // not a tab stop
    resize(width(), 28);
}

#define WG_BAR_METRIC(Name, Type, Field)                                                           \
    void TCustomWgToolBar::Set##Name(Type Value) {                                                 \
        if (FMetrics.Field == Value) return;                                                       \
        FMetrics.Field = Value;                                                                    \
        Changed();                                                                                 \
    }
#define WG_BAR_SETTER(Name, Type, Field)                                                           \
    void TCustomWgToolBar::Set##Name(Type Value) {                                                 \
        if (Field == Value) return;                                                                \
        Field = Value;                                                                             \
        Changed();                                                                                 \
    }

WG_BAR_METRIC(BtnWidth, int, BtnWidth)
WG_BAR_METRIC(BtnHeight, int, BtnHeight)
WG_BAR_METRIC(LargeSize, bool, LargeSize)
WG_BAR_METRIC(BtnOffsHorz, int, BtnOffsHorz)
WG_BAR_METRIC(BtnOffsVert, int, BtnOffsVert)
WG_BAR_METRIC(AutoSize, bool, AutoSize)
WG_BAR_METRIC(AutoWrap, bool, AutoWrap)
WG_BAR_METRIC(MinSize, int, MinSize)
WG_BAR_METRIC(Orientation, int, Orientation)
WG_BAR_METRIC(ShowMoreMenu, bool, ShowMoreMenu)
WG_BAR_SETTER(ShowGlyph, bool, FShowGlyph)
WG_BAR_SETTER(ShowCaption, bool, FShowCaption)
WG_BAR_SETTER(Flat, bool, FFlat)
WG_BAR_SETTER(ButtonColor, TColor, FButtonColor)
WG_BAR_SETTER(ShowBorder, bool, FShowBorder)
WG_BAR_SETTER(Images, const TWgImageList*, FImages)
WG_BAR_SETTER(HotImages, const TWgImageList*, FHotImages)
WG_BAR_SETTER(DisabledImages, const TWgImageList*, FDisabledImages)
WG_BAR_SETTER(UseImageList, bool, FUseImageList)
WG_BAR_SETTER(TransparentButtons, bool, FTransparentButtons)
WG_BAR_SETTER(IsHTML, bool, FIsHTML)

#undef WG_BAR_METRIC
#undef WG_BAR_SETTER

void TCustomWgToolBar::SetBevelOuter(TPanelBevel Value) {
    TWgPanel::SetBevelOuter(Value);
    Changed();
}

void TCustomWgToolBar::SetBevelInner(TPanelBevel Value) {
    TWgPanel::SetBevelInner(Value);
    Changed();
}

void TCustomWgToolBar::SetFont(const TFont& Value) {
    TWgPanel::SetFont(Value);
    Changed();
}

void TCustomWgToolBar::LookChanged() {
    TWgPanel::LookChanged();
}

void TCustomWgToolBar::Changed() {
    Realign();
    update();
    for (TCustomWgToolButton* button : Buttons())
        button->update();
}

QList<TCustomWgToolButton*> TCustomWgToolBar::Buttons() const {
    QList<TCustomWgToolButton*> buttons =
        findChildren<TCustomWgToolButton*>(QString(), Qt::FindDirectChildrenOnly);
    std::vector<TWgToolBarItem> items;
    for (TCustomWgToolButton* b : buttons)
        items.push_back({ebtButton, true, false, b->x(), b->y(), 0, 0, {}, b});
    OrderToolBarItems(items, FMetrics.Orientation);
    QList<TCustomWgToolButton*> ordered;
    for (const auto& item : items)
        ordered.append(static_cast<TCustomWgToolButton*>(item.Data));
    return ordered;
}

void TCustomWgToolBar::ButtonAdded(TCustomWgToolButton* Button) {
    Button->move(NewButtonPosition, NewButtonPosition);
    Realign();
}

void TCustomWgToolBar::Realign() {
    if (FLayingOut) return;
    FLayingOut = true;
    std::vector<TWgToolBarItem> items;
    for (TCustomWgToolButton* b :
         findChildren<TCustomWgToolButton*>(QString(), Qt::FindDirectChildrenOnly)) {
        const TSize content = b->ButtonType() == ebtButton ? b->ContentSize() : TSize{};
        items.push_back({b->ButtonType(),
                         !b->isHidden(),
                         b->Wrap(),
                         b->x(),
                         b->y(),
                         content.cx,
                         content.cy,
                         {},
                         b});
    }
    OrderToolBarItems(items, FMetrics.Orientation);

    TWgToolBarMetrics m = FMetrics;
    m.Width = width();
    m.Height = height();
    m.Insets = ToolBarInsets(false, FLook.BorderWidth, FLook.BevelInner != bvNone,
                             FLook.BevelOuter != bvNone, FLook.BevelWidth);
    const int thickness = LayoutToolBar(m, items);
    for (const auto& item : items)
        static_cast<QWidget*>(item.Data)->setGeometry(item.Bounds.Left, item.Bounds.Top,
                                                      item.Bounds.Width(), item.Bounds.Height());
    if (FMetrics.AutoSize) {
        if (FMetrics.Orientation == 1)
            setFixedWidth(thickness);
        else
            setFixedHeight(thickness);
    }
    FLayingOut = false;
}

void TCustomWgToolBar::resizeEvent(QResizeEvent* Event) {
    TWgPanel::resizeEvent(Event);
    Realign();
}

void TCustomWgToolBar::childEvent(QChildEvent* Event) {
    TWgPanel::childEvent(Event);
    if (Event->type() == QEvent::ChildRemoved) Realign();
}

void TCustomWgToolBar::paintEvent(QPaintEvent* Event) {
    TWgPanel::paintEvent(Event);
    if (!FShowBorder) return;
    QPainter painter(this);
    TQtCanvas canvas(painter, &palette());
    // A thin etched line at the top and bottom, outside the layout's insets.
    canvas.DrawEdge(Rect(0, 0, width(), height()), EDGE_ETCHED, BF_TOP | BF_BOTTOM);
}
