#pragma once
// Scroll bar skins. A scroll bar here is a real child widget, so the skin
// paints each bar itself through a filter on it: the track, the arrows and
// the thumb from the skin's strip, with the part under the mouse lit. The
// press goes on to the bar's own logic, which scrolls and repeats as it
// always does; the skin only watches where it was pressed.

#include "skin/control.h"
#include "skin/ui/control.h"

#include <QPointer>
#include <QScrollBar>

#include <memory>

// The skin of one bar. Mode 0 is the horizontal bar of a scrollable
// control, 1 its vertical bar, 2 a scroll bar that stands alone.
class TWScrollbar : public QObject {
    Q_OBJECT
public:
    TWScrollbar(TSkinControl& Owner, QScrollBar* Bar, int Mode);
    ~TWScrollbar() override;

    QScrollBar* Bar() const { return FBar; }
    // Where the bar's parts lie now, as the bar's own logic sees them.
    TScrollBarGeometry Geometry() const;
    bool Disabled() const;
    void Paint(QPainter& Painter);
    // The skin changed: the kept picture is stale.
    void SkinChanged();

    int Mode;
    int Zone = szNone;
    bool Pressed = false;

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    TSkinControl& FOwner;
    QPointer<QScrollBar> FBar;
    // The bar as an object, to recognise its events also while it is being
    // destroyed (it is no scroll bar any more then).
    const QObject* FBarObject;
    bool FHadHover = false;
    QImage FWork; // the last picture, kept while nothing changed
    quint64 FWorkKey = 0;

    void SetZone(int Value);
};

// The two bars of a scrollable control, and the frame around it.
class TSkinScrollbar : public TSkinControl {
    Q_OBJECT
public:
    void InitSkin(TVeneerForm* Form, TSkinData* Data, bool OwnColor, QWidget* Control) override;
    virtual void InitScrollbar(QWidget* Control, TSkinData* Data, TVeneerForm* Form);
    void Unsubclass() override;
    void AfterProc(QObject* Target, QEvent* Event) override;
    void SkinChange() override;

    bool Single = false;    // one bar, and no frame
    bool PaintFrame = true; // a frame of the skin around the control
    TWScrollbar* HorzBar() const { return FHorz.get(); }
    TWScrollbar* VertBar() const { return FVert.get(); }

protected:
    bool HasAfter(QObject* Target, QEvent::Type Type) const override;

private:
    std::unique_ptr<TWScrollbar> FHorz, FVert;
};

// A list in columns: its bars, and its header.
class TSkinListView : public TSkinScrollbar {
    Q_OBJECT
public:
    void InitScrollbar(QWidget* Control, TSkinData* Data, TVeneerForm* Form) override;
    void Unsubclass() override;

private:
    std::unique_ptr<TSkinHeader> FHeader;
};

// A scroll bar that stands alone.
class TSkinScControl : public TSkinControl {
    Q_OBJECT
public:
    void InitSkin(TVeneerForm* Form, TSkinData* Data, bool OwnColor, QWidget* Control) override;
    void Unsubclass() override;
    void SkinChange() override;
    TWScrollbar* Bar() const { return FBar.get(); }

private:
    std::unique_ptr<TWScrollbar> FBar;
};
