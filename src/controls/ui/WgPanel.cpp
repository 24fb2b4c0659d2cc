#include "controls/ui/WgPanel.h"

#include "base/ui/QtCanvas.h"

#include <QPainter>

TWgPanel::TWgPanel(QWidget* Parent) : QFrame(Parent) {
    FLook.Font.Name = u"Tahoma";
    FLook.Font.Height = -11;
}

#define WG_PANEL_SETTER(Name, Type, Field)                                                         \
    void TWgPanel::Set##Name(Type Value) {                                                         \
        if (FLook.Field == Value) return;                                                          \
        FLook.Field = Value;                                                                       \
        LookChanged();                                                                             \
    }

WG_PANEL_SETTER(Color, TColor, Color)
WG_PANEL_SETTER(BackgroundType, TWgBackgroundType, BackgroundType)
WG_PANEL_SETTER(GradientStartColor, TColor, GradientStartColor)
WG_PANEL_SETTER(GradientEndColor, TColor, GradientEndColor)
WG_PANEL_SETTER(GradientSteps, int, GradientSteps)
WG_PANEL_SETTER(BevelOuter, TPanelBevel, BevelOuter)
WG_PANEL_SETTER(BevelInner, TPanelBevel, BevelInner)
WG_PANEL_SETTER(BevelWidth, int, BevelWidth)
WG_PANEL_SETTER(BorderWidth, int, BorderWidth)
WG_PANEL_SETTER(BevelSpaceColor, TColor, BevelSpaceColor)
WG_PANEL_SETTER(Alignment, TWgAlignment, Alignment)
WG_PANEL_SETTER(Font, const TFont&, Font)

#undef WG_PANEL_SETTER

void TWgPanel::SetCaption(const WideString& Value) {
    if (FLook.Caption == Value) return;
    FLook.Caption = Value;
    update();
}

void TWgPanel::SetBackground(const TMemoryBitmap& Value) {
    FBackground = Value;
    FLook.Background = &FBackground;
    update();
}

void TWgPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    TQtCanvas canvas(painter, &palette());
    PaintPanel(canvas, Rect(0, 0, width(), height()), FLook);
}
