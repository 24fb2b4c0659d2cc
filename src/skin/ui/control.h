#pragma once
// Control skins: a companion object per control that sits in the control's
// event stream as a filter, lets the control do its work, and paints it from
// the skin. BeforeProc sees each event first and may keep it from the
// control; AfterProc runs once the control has handled it. A member that
// paints in place of the control does so in PaintClient; the others paint
// over what the control drew. Whatever a skin changes on its control is put
// back by Unsubclass, so a detached control is as it was.

#include "base/Bitmap.h"
#include "skin/manager.h"

#include <QEvent>
#include <QImage>
#include <QObject>
#include <QPalette>
#include <QPointer>
#include <QRect>
#include <QVariant>
#include <QWidget>

#include <memory>
#include <vector>

class QPainter;
class TDataSkinObject;
class TSkinData;
class TVeneerForm;

// Skin states of a control skin.
enum TSkinControlState : int { scsNone = 0, scsRunning = 1, scsRestored = 2, scsGone = 6 };

class TSkinControl : public QObject {
    Q_OBJECT
public:
    TSkinControl();
    ~TSkinControl() override;

    // Hangs the skin on Control. OwnColor: the skin also takes over the
    // control's face colour.
    virtual void InitSkin(TVeneerForm* Form, TSkinData* Data, bool OwnColor, QWidget* Control);
    // Gives the control back everything the skin changed; a control that is
    // gone is not touched.
    virtual void Unsubclass();
    // False keeps the event from the control.
    virtual bool BeforeProc(QObject* Target, QEvent* Event);
    virtual void AfterProc(QObject* Target, QEvent* Event);
    // Paints the control in place: the whole of R, in control coordinates.
    virtual void Paint(QPainter& Painter, const QRect& R);
    // The skin data changed: the colour again, and a repaint.
    virtual void SkinChange();
    virtual void Repaint();
    // A skin that answers True paints even a control of a skin without its
    // images (the rest let the control paint itself then).
    virtual bool CanPaint() const { return true; }

    QWidget* Control() const { return FControl; }
    TSkinData* Skin = nullptr;
    TVeneerForm* Form = nullptr;
    int MouseState = 0; // msHover, msPressed
    int Result = 0;
    bool Enabled = true;
    bool Focused = false;
    bool Active = true;
    bool OwnColor = false;
    bool Inited = false;
    bool ParentBack = false; // the parent's background shows through
    int State = scsNone;
    int Member = 0; // the member's kind (TSkinTab 2, TSkinObjImage 1 to 3, ...)
    QRect Rect;     // the control's rectangle at the last paint

    // Skins for which every rule of the decision names a class.
    static std::unique_ptr<TSkinControl> Create(TSkinClass Class);

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override;
    // Events AfterProc wants after the control has handled them.
    virtual bool HasAfter(QObject* Target, QEvent::Type Type) const;
    // The control's paint replaced by Paint.
    void PaintClient(QWidget* Target);
    // Filters a further widget of the control (a tab bar, a header, a
    // child edit); undone by Unsubclass.
    void Watch(QWidget* Extra);
    // Sets an attribute for the skin's lifetime.
    void KeepAttribute(QWidget* Widget, Qt::WidgetAttribute Attribute, bool On);
    // One colour of the control's palette for the skin's lifetime.
    void SetPaletteColour(QPalette::ColorRole Role, const QColor& Colour);
    // Fills with the skin's face colour.
    QColor Face() const;
    QColor SkinColor(unsigned Colour) const;
    bool HasOption(int Option) const;
    // A work bitmap of Size, one skin face in it, ready for the painter; the
    // last one is kept while frame and size stay the same.
    const QImage& FaceImage(const TDataSkinObject* Object, int Frame, QSize Size, qreal Ratio,
                            bool OverFace = true);
    // A focus rectangle around R.
    static void DrawFocus(QPainter& Painter, const QRect& R);
    // Cell of a strip of Cells, stretched over Target, magenta transparent.
    void DrawCell(QPainter& Painter, const QRect& Target, const TMemoryBitmap& Map, int Cell,
                  int Cells);

private:
    QPointer<QWidget> FControl;
    std::vector<QPointer<QWidget>> FWatched;
    struct TKeptAttribute {
        QPointer<QWidget> Widget;
        Qt::WidgetAttribute Attribute;
        bool Was;
    };
    std::vector<TKeptAttribute> FAttributes;
    QPalette FSavePalette;
    bool FSavePaletteSet = false;
    QVariant FSaveColor; // a colour property, where the control has one
    bool FSaved = false;
    // The cached face.
    QImage FFace;
    const TDataSkinObject* FFaceObject = nullptr;
    int FFaceFrame = 0;
    QSize FFaceSize;
    qreal FFaceRatio = 0;
    bool FFaceOver = true;
    std::vector<std::pair<const TMemoryBitmap*, QImage>> FStrips; // strips as images

    void TakeColour();
    void SavePalette();
};

// ---- buttons

class TSkinButton : public TSkinControl {
    Q_OBJECT
public:
    void InitSkin(TVeneerForm* Form, TSkinData* Data, bool OwnColor, QWidget* Control) override;
    bool BeforeProc(QObject* Target, QEvent* Event) override;
    void AfterProc(QObject* Target, QEvent* Event) override;
    void Paint(QPainter& Painter, const QRect& R) override;
    bool CanPaint() const override;
    bool MultiLine = false;

protected:
    bool HasAfter(QObject* Target, QEvent::Type Type) const override;
    // The frame the button shows now.
    int CurrentFrame() const;
    // Caption and glyph over the face.
    virtual void PaintContents(QPainter& Painter, const QRect& R, int Frame);
    QColor TextColour(int Frame) const;
};

// A button with a glyph: the icon left of the caption, the two centred.
class TSkinBitButton : public TSkinButton {
    Q_OBJECT
public:
    bool PngGlyph = false; // the glyph comes from a property of its own

protected:
    void PaintContents(QPainter& Painter, const QRect& R, int Frame) override;
};

class TSkinMenuButton : public TSkinBitButton {
    Q_OBJECT

protected:
    void PaintContents(QPainter& Painter, const QRect& R, int Frame) override;
};

// A tool button: pressed while down or checked.
class TSkinSpeedButton : public TSkinBitButton {
    Q_OBJECT
};

class TSkinCheckBox : public TSkinControl {
    Q_OBJECT
public:
    void InitSkin(TVeneerForm* Form, TSkinData* Data, bool OwnColor, QWidget* Control) override;
    bool BeforeProc(QObject* Target, QEvent* Event) override;
    void AfterProc(QObject* Target, QEvent* Event) override;
    void Paint(QPainter& Painter, const QRect& R) override;
    bool CanPaint() const override;
    int Checked = 0;
    bool PaintText = false;

protected:
    bool HasAfter(QObject* Target, QEvent::Type Type) const override;
    virtual bool Radio() const { return false; }
};

class TSkinRadioButton : public TSkinCheckBox {
    Q_OBJECT

protected:
    bool Radio() const override { return true; }
};

// Check and radio controls of other vendors: no counterpart here, the class
// stands so that the decision can name it.
class TSkinObjImage : public TSkinControl {
    Q_OBJECT
};

// ---- frames and boxes

// Panels, tool bars and forms: only the face colour.
class TSkinBox : public TSkinControl {
    Q_OBJECT
};

class TSkinGroupBox : public TSkinControl {
    Q_OBJECT
public:
    bool BeforeProc(QObject* Target, QEvent* Event) override;
    void Paint(QPainter& Painter, const QRect& R) override;
};

// Edits keep their own paint; the skin draws the frame over theirs.
class TSkinEdit : public TSkinControl {
    Q_OBJECT
public:
    void InitSkin(TVeneerForm* Form, TSkinData* Data, bool OwnColor, QWidget* Control) override;
    void AfterProc(QObject* Target, QEvent* Event) override;

protected:
    bool HasAfter(QObject* Target, QEvent::Type Type) const override;
    void PaintFrame(QWidget* Target);
    void PaintArrows(QWidget* Target); // the up-down part of a spin box
    bool FSpin = false;
};

// A date picker with a drop-down: the edit's frame, nothing more.
class TSkinDateTime : public TSkinEdit {
    Q_OBJECT
public:
    void InitSkin(TVeneerForm* Form, TSkinData* Data, bool OwnColor, QWidget* Control) override;
};

class TSkinComBox : public TSkinControl {
    Q_OBJECT
public:
    void InitSkin(TVeneerForm* Form, TSkinData* Data, bool OwnColor, QWidget* Control) override;
    bool BeforeProc(QObject* Target, QEvent* Event) override;
    void AfterProc(QObject* Target, QEvent* Event) override;
    void Paint(QPainter& Painter, const QRect& R) override;
    bool CanPaint() const override;
    bool Dropped = false;

protected:
    bool HasAfter(QObject* Target, QEvent::Type Type) const override;

private:
    void PaintButton(QPainter& Painter, const QRect& R);
};

class TSkinStatusBar : public TSkinControl {
    Q_OBJECT
public:
    void InitSkin(TVeneerForm* Form, TSkinData* Data, bool OwnColor, QWidget* Control) override;
    void SkinChange() override;
    bool BeforeProc(QObject* Target, QEvent* Event) override;
    void Paint(QPainter& Painter, const QRect& R) override;
    bool CanPaint() const override;
};

class TSkinProgress : public TSkinControl {
    Q_OBJECT
public:
    bool BeforeProc(QObject* Target, QEvent* Event) override;
    void Paint(QPainter& Painter, const QRect& R) override;
    bool CanPaint() const override;
};

class TSkinTrackBar : public TSkinControl {
    Q_OBJECT
public:
    bool BeforeProc(QObject* Target, QEvent* Event) override;
    void AfterProc(QObject* Target, QEvent* Event) override;
    void Paint(QPainter& Painter, const QRect& R) override;

protected:
    bool HasAfter(QObject* Target, QEvent::Type Type) const override;
};

// A stand-alone up-down: both arrows from the skin.
class TSkinUpDown : public TSkinEdit {
    Q_OBJECT
};

// A media player's buttons: no counterpart here.
class TSkinMP : public TSkinControl {
    Q_OBJECT
};

// ---- tabs and headers

class TSkinTab : public TSkinControl {
    Q_OBJECT
public:
    void InitSkin(TVeneerForm* Form, TSkinData* Data, bool OwnColor, QWidget* Control) override;
    bool BeforeProc(QObject* Target, QEvent* Event) override;
    void AfterProc(QObject* Target, QEvent* Event) override;
    void Paint(QPainter& Painter, const QRect& R) override;
    bool CanPaint() const override;

protected:
    bool HasAfter(QObject* Target, QEvent::Type Type) const override;
    virtual void PaintTabs(QWidget* Bar);
    QWidget* FBar = nullptr; // the tab strip
    int FHot = -1;
};

// Tabs drawn as buttons.
class TSkinTabBtn : public TSkinTab {
    Q_OBJECT

protected:
    void PaintTabs(QWidget* Bar) override;
};

class TSkinTab31 : public TSkinTab {
    Q_OBJECT
};

// A page of a page control: the face under whatever it holds.
class TSkinTabSheet : public TSkinControl {
    Q_OBJECT
public:
    bool BeforeProc(QObject* Target, QEvent* Event) override;
};

// Our own page control takes the skin's tab images as its own.
class TSkinPlusPage : public TSkinControl {
    Q_OBJECT
};

class TSkinHeader : public TSkinControl {
    Q_OBJECT
public:
    void InitSkin(TVeneerForm* Form, TSkinData* Data, bool OwnColor, QWidget* Control) override;
    bool BeforeProc(QObject* Target, QEvent* Event) override;
    void AfterProc(QObject* Target, QEvent* Event) override;
    void Paint(QPainter& Painter, const QRect& R) override;
    bool CanPaint() const override;

protected:
    bool HasAfter(QObject* Target, QEvent::Type Type) const override;

private:
    int FPressed = -1;
};

// A size grip: the face colour.
class TSkinSizer : public TSkinControl {
    Q_OBJECT
public:
    bool BeforeProc(QObject* Target, QEvent* Event) override;
};
