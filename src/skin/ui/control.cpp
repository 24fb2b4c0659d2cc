#include "skin/ui/control.h"

#include "base/ui/Colors.h"
#include "base/ui/Messages.h"
#include "base/ui/QtCanvas.h"
#include "skin/control.h"
#include "skin/ui/data.h"
#include "skin/ui/scrollbar.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>

namespace {

// Messages of the engine to its control skins.
constexpr int MsgActivate = 13574; // wParam above 0: on, else off
constexpr int MsgProbe = 13603;    // every skinned window answers 1

} // namespace

TSkinControl::TSkinControl() = default;

TSkinControl::~TSkinControl() {
    if (State == scsRunning) Unsubclass();
}

void TSkinControl::InitSkin(TVeneerForm* AForm, TSkinData* Data, bool AOwnColor,
                            QWidget* AControl) {
    if (Inited || !AControl) return;
    Form = AForm;
    Skin = Data;
    OwnColor = AOwnColor;
    FControl = AControl;
    connect(AControl, &QObject::destroyed, this, [this] {
        // The window is gone: nothing to give back.
        Active = false;
        State = scsGone;
    });
    AControl->installEventFilter(this);
    if (OwnColor) TakeColour();
    Enabled = AControl->isEnabled();
    AControl->update();
    Inited = true;
    State = scsRunning;
}

void TSkinControl::SetPaletteColour(QPalette::ColorRole Role, const QColor& Colour) {
    if (!FControl) return;
    SavePalette();
    QPalette palette = FControl->palette();
    palette.setColor(Role, Colour);
    FControl->setPalette(palette);
}

void TSkinControl::TakeColour() {
    SavePalette();
    if (FSaveColor.isValid()) FControl->setProperty("Color", uint(FromQColor(Face())));
    QPalette palette = FControl->palette();
    palette.setColor(QPalette::Window, Face());
    palette.setColor(QPalette::Button, Face());
    FControl->setPalette(palette);
}

void TSkinControl::SavePalette() {
    if (!FSaved) {
        FSavePaletteSet = FControl->testAttribute(Qt::WA_SetPalette);
        FSavePalette = FControl->palette();
        // Our own panels paint from a colour property of their own.
        if (FControl->metaObject()->indexOfProperty("Color") >= 0)
            FSaveColor = FControl->property("Color");
        FSaved = true;
    }
}

void TSkinControl::Unsubclass() {
    if (State == scsGone || State == scsRestored) return;
    if (FControl) {
        FControl->removeEventFilter(this);
        if (FSaved) {
            FControl->setPalette(FSavePaletteSet ? FSavePalette : QPalette());
            FControl->setAttribute(Qt::WA_SetPalette, FSavePaletteSet);
            if (FSaveColor.isValid()) FControl->setProperty("Color", FSaveColor);
            FSaveColor = QVariant();
            FSaved = false;
        }
        FControl->update();
    }
    for (const QPointer<QWidget>& w : FWatched)
        if (w) {
            w->removeEventFilter(this);
            w->update();
        }
    FWatched.clear();
    // Backward, so that an attribute set twice ends as it first was.
    for (auto it = FAttributes.rbegin(); it != FAttributes.rend(); ++it)
        if (it->Widget) it->Widget->setAttribute(it->Attribute, it->Was);
    FAttributes.clear();
    State = scsRestored;
}

void TSkinControl::Watch(QWidget* Extra) {
    if (!Extra) return;
    for (const QPointer<QWidget>& w : FWatched)
        if (w == Extra) return;
    FWatched.emplace_back(Extra);
    Extra->installEventFilter(this);
    Extra->update();
}

void TSkinControl::KeepAttribute(QWidget* Widget, Qt::WidgetAttribute Attribute, bool On) {
    if (!Widget) return;
    FAttributes.push_back({Widget, Attribute, Widget->testAttribute(Attribute)});
    Widget->setAttribute(Attribute, On);
}

QColor TSkinControl::SkinColor(unsigned Colour) const {
    return ToQColor(Skin ? Skin->ResolveColor(Colour) : Colour);
}

QColor TSkinControl::Face() const {
    return SkinColor(Skin ? Skin->ButtonFace : clBtnFace);
}

bool TSkinControl::HasOption(int Option) const {
    return Skin && HasBit(Skin->Options, Option);
}

bool TSkinControl::eventFilter(QObject* Watched, QEvent* Event) {
    if (State != scsRunning) return false;
    Result = 0;
    const int message = PrivateMessageNumber(Event);
    if (message == MsgActivate) {
        auto* m = static_cast<TPrivateMessage*>(Event);
        Active = m->WParam() > 0;
        if (Active) Repaint();
        return true;
    }
    if (message == MsgProbe) {
        Result = 1;
        Event->accept();
        return true;
    }
    if (!Active) return false;
    if (!BeforeProc(Watched, Event)) return true;
    if (!HasAfter(Watched, Event->type())) return false;
    // The control's own handling first, then ours. The event keeps the
    // acceptance the control gave it, so an ignored key or click still goes
    // on to the parent.
    QPointer<QObject> guard(Watched);
    QPointer<TSkinControl> self(this);
    Watched->event(Event);
    if (guard && self && State == scsRunning) AfterProc(Watched, Event);
    return true;
}

bool TSkinControl::HasAfter(QObject*, QEvent::Type Type) const {
    switch (Type) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::EnabledChange:
        return true;
    default:
        return false;
    }
}

bool TSkinControl::BeforeProc(QObject*, QEvent*) {
    return true;
}

void TSkinControl::AfterProc(QObject* Target, QEvent* Event) {
    switch (Event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::EnabledChange:
        if (auto* w = qobject_cast<QWidget*>(Target)) {
            Enabled = w->isEnabled();
            Focused = w->hasFocus();
        }
        Repaint();
        break;
    default:
        break;
    }
}

void TSkinControl::PaintClient(QWidget* Target) {
    Rect = Target->rect();
    QPainter painter(Target);
    Paint(painter, Rect);
}

void TSkinControl::Paint(QPainter&, const QRect&) {}

void TSkinControl::SkinChange() {
    FFace = QImage();
    FFaceObject = nullptr;
    FStrips.clear();
    if (OwnColor && FControl) TakeColour();
    Repaint();
}

void TSkinControl::Repaint() {
    if (FControl) FControl->update();
    for (const QPointer<QWidget>& w : FWatched)
        if (w) w->update();
}

const QImage& TSkinControl::FaceImage(const TDataSkinObject* Object, int Frame, QSize Size,
                                      qreal Ratio, bool OverFace) {
    if (Object == FFaceObject && Frame == FFaceFrame && Size == FFaceSize && Ratio == FFaceRatio &&
        OverFace == FFaceOver && !FFace.isNull())
        return FFace;
    FFaceObject = Object;
    FFaceFrame = Frame;
    FFaceSize = Size;
    FFaceRatio = Ratio;
    FFaceOver = OverFace;
    const TPixel ground = OverFace ? ColorToPixel(FromQColor(Face())) : 0xFFFF00FFu;
    TMemoryBitmap work(Size.width(), Size.height(), ground);
    PaintFace(work, Object, Frame);
    FFace = ToDenseQImage(work, OverFace ? clNone : 0xFF00FF, Ratio);
    return FFace;
}

void TSkinControl::DrawCell(QPainter& Painter, const QRect& Target, const TMemoryBitmap& Map,
                            int Cell, int Cells) {
    if (Map.Empty() || Cells < 1 || Target.isEmpty()) return;
    const qreal ratio = Painter.device() ? Painter.device()->devicePixelRatio() : 1.0;
    const QImage* image = nullptr;
    for (auto& [map, picture] : FStrips)
        if (map == &Map && picture.devicePixelRatio() == std::max<qreal>(1, std::lround(ratio)))
            image = &picture;
    if (!image) {
        FStrips.emplace_back(&Map, ToDenseQImage(Map, 0xFF00FF, ratio));
        image = &FStrips.back().second;
    }
    const int f = int(image->devicePixelRatio());
    const int cw = Map.Width() / Cells;
    const QRect source((Cell - 1) * cw * f, 0, cw * f, Map.Height() * f);
    Painter.drawImage(Target, *image, source);
}

void TSkinControl::DrawFocus(QPainter& Painter, const QRect& R) {
    Painter.save();
    QPen pen(Painter.pen().color());
    pen.setStyle(Qt::DotLine);
    pen.setWidth(1);
    Painter.setPen(pen);
    Painter.setBrush(Qt::NoBrush);
    Painter.drawRect(R.adjusted(0, 0, -1, -1));
    Painter.restore();
}

std::unique_ptr<TSkinControl> TSkinControl::Create(TSkinClass Class) {
    switch (Class) {
    case skTab:
        return std::make_unique<TSkinTab>();
    case skTabBtn:
        return std::make_unique<TSkinTabBtn>();
    case skTab31:
        return std::make_unique<TSkinTab31>();
    case skTabSheet:
        return std::make_unique<TSkinTabSheet>();
    case skHeader:
        return std::make_unique<TSkinHeader>();
    case skCheckBox:
        return std::make_unique<TSkinCheckBox>();
    case skTrackBar:
        return std::make_unique<TSkinTrackBar>();
    case skUpDown:
        return std::make_unique<TSkinUpDown>();
    case skMP:
        return std::make_unique<TSkinMP>();
    case skRadioButton:
        return std::make_unique<TSkinRadioButton>();
    case skGroupBox:
        return std::make_unique<TSkinGroupBox>();
    case skBox:
        return std::make_unique<TSkinBox>();
    case skObjImage:
        return std::make_unique<TSkinObjImage>();
    case skStatusBar:
        return std::make_unique<TSkinStatusBar>();
    case skProgress:
        return std::make_unique<TSkinProgress>();
    case skScControl:
        return std::make_unique<TSkinScControl>();
    case skComBox:
        return std::make_unique<TSkinComBox>();
    case skEdit:
        return std::make_unique<TSkinEdit>();
    case skDateTime:
        return std::make_unique<TSkinDateTime>();
    case skScrollbar:
        return std::make_unique<TSkinScrollbar>();
    case skBitButton:
        return std::make_unique<TSkinBitButton>();
    case skSpeedButton:
        return std::make_unique<TSkinSpeedButton>();
    case skButton:
        return std::make_unique<TSkinButton>();
    case skListView:
        return std::make_unique<TSkinListView>();
    case skMenuButton:
        return std::make_unique<TSkinMenuButton>();
    case skPlusPage:
        return std::make_unique<TSkinPlusPage>();
    }
    return nullptr;
}
