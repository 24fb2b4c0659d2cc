#pragma once
// TWgPanel: a panel with a colour, gradient or bitmap background, bevels
// and a caption. The look is kept as a TWgPanelLook and painted by the
// core painter.

#include "controls/WgPanelPaint.h"

#include <QFrame>

class TWgPanel : public QFrame {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
    Q_PROPERTY(uint Color READ Color WRITE SetColor)
public:
    explicit TWgPanel(QWidget* Parent = nullptr);

    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }

    const TWgPanelLook& Look() const { return FLook; }
    TColor Color() const { return FLook.Color; }
    void SetColor(TColor Value);
    TWgBackgroundType BackgroundType() const { return FLook.BackgroundType; }
    void SetBackgroundType(TWgBackgroundType Value);
    TColor GradientStartColor() const { return FLook.GradientStartColor; }
    void SetGradientStartColor(TColor Value);
    TColor GradientEndColor() const { return FLook.GradientEndColor; }
    void SetGradientEndColor(TColor Value);
    int GradientSteps() const { return FLook.GradientSteps; }
    void SetGradientSteps(int Value);
    const TMemoryBitmap& Background() const { return FBackground; }
    void SetBackground(const TMemoryBitmap& Value);
    TPanelBevel BevelOuter() const { return FLook.BevelOuter; }
    virtual void SetBevelOuter(TPanelBevel Value);
    TPanelBevel BevelInner() const { return FLook.BevelInner; }
    virtual void SetBevelInner(TPanelBevel Value);
    int BevelWidth() const { return FLook.BevelWidth; }
    void SetBevelWidth(int Value);
    int BorderWidth() const { return FLook.BorderWidth; }
    void SetBorderWidth(int Value);
    TColor BevelSpaceColor() const { return FLook.BevelSpaceColor; }
    void SetBevelSpaceColor(TColor Value);
    const WideString& Caption() const { return FLook.Caption; }
    void SetCaption(const WideString& Value);
    TWgAlignment Alignment() const { return FLook.Alignment; }
    void SetAlignment(TWgAlignment Value);
    // The font of the caption, with its colour.
    const TFont& Font() const { return FLook.Font; }
    virtual void SetFont(const TFont& Value);

protected:
    void paintEvent(QPaintEvent* Event) override;
    // Called when a property that shapes the inside changed.
    virtual void LookChanged() { update(); }

    TWgPanelLook FLook;

private:
    int FTag = 0;
    TMemoryBitmap FBackground;
};
