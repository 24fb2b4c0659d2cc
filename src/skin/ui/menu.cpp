#include "skin/ui/menu.h"

#include "base/ui/QtCanvas.h"
#include "base/ui/Tag.h"
#include "controls/WgPopupMenuLayout.h"
#include "controls/WgToolBarPaint.h"
#include "controls/ui/WgPopupMenu.h"
#include "skin/bitmap.h"
#include "skin/ui/data.h"
#include "skin/ui/form.h"
#include "skin/ui/manager.h"

#include <QAction>
#include <QEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPaintEvent>
#include <QPainter>

// Menus of other processes, the operating system's own menu loop and the
// erase of a menu's background have no counterpart here: every menu window
// is one of our widgets and paints in one pass.

namespace {

// The menu font of the system, as our popups use it.
TFont SystemMenuFont() {
    TFont font;
    font.Name = u"Tahoma";
    font.Height = -11;
    return font;
}

// An icon's picture on magenta, the key colour.
TMemoryBitmap IconBitmap(const QIcon& Icon, int Size, bool Enabled) {
    if (Icon.isNull()) return {};
    const QImage image = Icon.pixmap(Size, Size, Enabled ? QIcon::Normal : QIcon::Disabled)
                             .toImage()
                             .convertToFormat(QImage::Format_ARGB32)
                             .scaled(Size, Size);
    TMemoryBitmap bitmap(Size, Size, MagentaPixel);
    for (int y = 0; y < Size; ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < Size; ++x)
            if (qAlpha(line[x]) >= 128) bitmap.SetPixel(x, y, 0xFF000000u | line[x]);
    }
    return bitmap;
}

// The glyph of a popup's item in its state: the hot or disabled list's
// image where that list has one, else the plain one, greyed when disabled.
TMemoryBitmap PopupGlyph(const TWgPopupMetrics& Metrics, const TWgMenuItem& Item, bool Selected,
                         TColor& Key) {
    if (!Metrics.Images) return {};
    const int index = Item.ImageIndex();
    const TWgImageList* state = !Item.Enabled() ? Metrics.DisabledImages
                                : Selected      ? Metrics.HotImages
                                                : nullptr;
    if (const TMemoryBitmap* own = state ? state->Get(index) : nullptr; own && !own->Empty()) {
        Key = state->TransparentColor;
        return *own;
    }
    const TMemoryBitmap* image = Metrics.Images->Get(index);
    if (!image || image->Empty()) return {};
    Key = Metrics.Images->TransparentColor;
    return Item.Enabled() ? *image : GrayedBitmap(*image, Key);
}

bool SkinHasMenuLook(const TSkinDataModel& Skin) {
    if (Skin.Empty) return false;
    const bool back = Skin.MenuBackground && !Skin.MenuBackground->Map.Empty();
    const bool item = Skin.MenuItem && !Skin.MenuItem->Map.Empty();
    return back || item;
}

// The background of a W x H menu window: the skin's picture, or the Menu
// colour in a one-pixel shadow frame when the skin has only item images.
TMemoryBitmap WindowBackground(const TSkinDataModel& Skin, int W, int H) {
    TMemoryBitmap back = MenuBackgroundImage(Skin, W, H);
    if (!back.Empty() || W <= 0 || H <= 0) return back;
    back = TMemoryBitmap(W, H, ColorToPixel(Skin.ResolveColor(Skin.Menu)));
    const TPixel shade = ColorToPixel(Skin.ResolveColor(Skin.ButtonShadow));
    FillBitmapRect(back, Rect(0, 0, W, 1), shade);
    FillBitmapRect(back, Rect(0, H - 1, W, H), shade);
    FillBitmapRect(back, Rect(0, 0, 1, H), shade);
    FillBitmapRect(back, Rect(W - 1, 0, W, H), shade);
    return back;
}

// The items of a popup of ours, laid out by its own layout.
void PaintPopupLayout(TCanvas& Canvas, const TSkinDataModel& Skin, const TMemoryBitmap& Back,
                      const TWgPopupLayout& Layout, const TWgPopupMetrics& Metrics, int Selected) {
    const int imageW = Metrics.Images ? Metrics.Images->Width() : 0;
    const int imageH = Metrics.Images ? Metrics.Images->Height() : 0;
    for (const TWgPopupItemBox& box : Layout.Boxes) {
        const TWgMenuItem& source = *box.Item;
        TSkinMenuItem item;
        item.Caption = source.Caption();
        if (source.ShortCutKey()) item.ShortCut = ShortCutToText(source.ShortCutKey());
        item.Enabled = source.Enabled();
        item.Checked = source.Checked();
        item.SubMenu = source.Count() > 0;
        item.Selected = box.Index == Selected;
        const TMemoryBitmap glyph =
            PopupGlyph(Metrics, source, item.Selected, item.GlyphTransparent);
        if (!glyph.Empty()) item.Glyph = &glyph;
        PaintSkinMenuItem(Canvas, Skin, &Back, box.Bounds, item, Metrics.Font, imageW, imageH);
    }
}

TWgPopupMetrics MetricsOf(const TWgPopupMenu& Popup) {
    TWgPopupMetrics m;
    m.Images = Popup.Images();
    m.HotImages = Popup.HotImages();
    m.DisabledImages = Popup.DisabledImages();
    m.DrawStyle = Popup.DrawStyle();
    m.ItemSpace = Popup.ItemSpace();
    m.ImageMargin = Popup.ImageMargin();
    m.Font = Popup.Font();
    m.IsHTML = Popup.IsHTML();
    return m;
}

} // namespace

bool IsMenuWindow(const QWidget* Window) {
    return Window && Window->isWindow() &&
           (qobject_cast<const TWgPopupMenu*>(Window) || qobject_cast<const QMenu*>(Window));
}

// ---------------------------------------------------------------- pop-up menus

TVeneerPopMenu::TVeneerPopMenu(QWidget* Window, TSkinData& Data, int Kind)
    : FHandle(Window), FData(&Data), FKind(Kind) {
    Window->installEventFilter(this);
    Window->update();
}

TVeneerPopMenu::~TVeneerPopMenu() {
    if (!FHandle) return;
    FHandle->removeEventFilter(this);
    FHandle->update();
}

bool TVeneerPopMenu::PaintWindow(QPainter& Painter) {
    QWidget* window = FHandle;
    if (!window || !SkinHasMenuLook(*FData)) return false;
    FBackground = WindowBackground(*FData, window->width(), window->height());
    TQtCanvas canvas(Painter, &window->palette());
    canvas.Draw(0, 0, FBackground, clNone);
    if (auto* popup = qobject_cast<TWgPopupMenu*>(window))
        PaintPopupItems(canvas, *popup);
    else if (auto* menu = qobject_cast<QMenu*>(window))
        PaintQMenuItems(canvas, *menu);
    return true;
}

void TVeneerPopMenu::PaintPopupItems(TCanvas& Canvas, const TWgPopupMenu& Popup) {
    PaintPopupLayout(Canvas, *FData, FBackground, Popup.Layout(), MetricsOf(Popup),
                     Popup.Selected());
}

void TVeneerPopMenu::PaintQMenuItems(TCanvas& Canvas, QMenu& Menu) {
    const TFont font = SystemMenuFont();
    constexpr int imageSize = 16;
    for (QAction* action : Menu.actions()) {
        if (!action->isVisible()) continue;
        const QRect g = Menu.actionGeometry(action);
        if (g.isEmpty()) continue;
        TSkinMenuItem item;
        if (action->isSeparator()) {
            item.Caption = u"-";
        } else {
            item.Caption = action->text().toStdU16String();
            item.ShortCut = action->shortcut().toString(QKeySequence::NativeText).toStdU16String();
        }
        item.Enabled = action->isEnabled();
        item.Checked = action->isCheckable() && action->isChecked();
        item.SubMenu = action->menu() != nullptr;
        item.Selected = Menu.activeAction() == action;
        const TMemoryBitmap glyph = IconBitmap(action->icon(), imageSize, item.Enabled);
        if (!glyph.Empty()) {
            item.Glyph = &glyph;
            item.GlyphTransparent = clMagenta;
        }
        const TRect r = Rect(g.left(), g.top(), g.right() + 1, g.bottom() + 1);
        PaintSkinMenuItem(Canvas, *FData, &FBackground, r, item, font, imageSize, imageSize);
    }
}

bool TVeneerPopMenu::eventFilter(QObject* Watched, QEvent* Event) {
    if (Watched != FHandle.data()) return false;
    switch (Event->type()) {
    case QEvent::Paint: {
        // Only while the skin is on; a menu that outlives the switch paints itself.
        if (!TSkinManage::Instance().Active) return false;
        QPainter painter(FHandle);
        return PaintWindow(painter);
    }
    case QEvent::Show:
        if (Update) FHandle->update();
        Update = false;
        return false;
    default:
        return false;
    }
}

QImage RenderSkinnedMenuSample(TSkinData& Data, qreal Ratio) {
    TWgMenuItem root;
    root.Add(u"&Open...", -1, ShortCut('O', scCtrl));
    root.Add(u"&Save", -1, ShortCut('S', scCtrl));
    root.Add(u"&Print")->SetEnabled(false);
    root.Add(u"&Word wrap")->SetChecked(true);
    root.Add(u"-");
    root.Add(u"&Recent files")->Add(u"example.syx");
    root.Add(u"E&xit");
    const int hot = 1;

    TWgPopupMetrics metrics;
    metrics.Font = SystemMenuFont();
    TWgPopupLayout layout;
    {
        QImage scratch(1, 1, QImage::Format_RGB32);
        QPainter painter(&scratch);
        TQtCanvas canvas(painter);
        layout = LayoutPopupMenu(canvas, root, metrics);
    }
    const qreal ratio = std::max<qreal>(1.0, Ratio);
    QImage image(int(layout.Width * ratio), int(layout.Height * ratio), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    TQtCanvas canvas(painter);
    if (!SkinHasMenuLook(Data)) {
        // What the skin lacks shows as the plain look.
        PaintPopupMenu(canvas, layout, metrics, hot);
        return image;
    }
    const TMemoryBitmap back = WindowBackground(Data, layout.Width, layout.Height);
    canvas.Draw(0, 0, back, clNone);
    PaintPopupLayout(canvas, Data, back, layout, metrics, hot);
    return image;
}

// ---------------------------------------------------------------- menu strip

TVeneerMenu::TVeneerMenu(TVeneerForm& Form, QMenuBar& Bar)
    : FForm(Form), FBar(&Bar), FBarWasVisible(!Bar.isHidden()) {}

TVeneerMenu::~TVeneerMenu() {
    if (TrackIndex >= 0 && TrackIndex < int(Buttons.size()))
        if (QMenu* menu = Buttons[std::size_t(TrackIndex)]->SubMenu) menu->close();
    for (auto& btn : Buttons)
        if (btn->SubMenu) btn->SubMenu->removeEventFilter(this);
    if (FBar) FBar->setVisible(FBarWasVisible);
}

void TVeneerMenu::Build() {
    for (auto& btn : Buttons)
        if (btn->SubMenu) btn->SubMenu->removeEventFilter(this);
    Buttons.clear();
    if (!FBar) return;
    const QList<QAction*> actions = FBar->actions();
    for (int i = 0; i < actions.size(); ++i) {
        QAction* action = actions[i];
        auto btn = std::make_unique<TMenuBtn>();
        btn->Index = i;
        btn->Item = action;
        btn->SubMenu = action->menu();
        btn->Look.Caption = action->isSeparator() ? WideString() : action->text().toStdU16String();
        btn->Look.Enabled = action->isEnabled();
        btn->Look.Visible = action->isVisible() && !action->isSeparator();
        if (btn->SubMenu) btn->SubMenu->installEventFilter(this);
        Buttons.push_back(std::move(btn));
    }
    // The bar leaves the window: the strip in the frame stands for it.
    FBar->hide();
}

void TVeneerMenu::Refresh() {
    Build();
    Repaint();
}

int TVeneerMenu::Height() const {
    return 19; // the classic menu height (SM_CYMENU)
}

std::vector<TMenuStripButton> TVeneerMenu::Looks() const {
    std::vector<TMenuStripButton> looks;
    looks.reserve(Buttons.size());
    for (const auto& btn : Buttons)
        looks.push_back(btn->Look);
    return looks;
}

void TVeneerMenu::Paint(TCanvas& Canvas, const TRect& Strip, bool Active) {
    Canvas.SetFont(SystemMenuFont());
    std::vector<TMenuStripButton> looks = Looks();
    LayoutMenuStrip(Canvas, FForm.Skin(), Strip, FForm.Frame.RightToLeft, looks);
    for (std::size_t i = 0; i < looks.size(); ++i)
        Buttons[i]->Look.Rect = looks[i].Rect;
    FBack = MenuStripBack(FForm.Skin(), Strip.Width(), Strip.Height(), Active);
    PaintMenuStrip(Canvas, FForm.Skin(), Strip, FBack, looks);
}

TMenuBtn* TVeneerMenu::BtnAt(QPoint WindowPos) {
    const int i = MenuStripButtonAt(Looks(), {WindowPos.x(), WindowPos.y()});
    return i >= 0 ? Buttons[std::size_t(i)].get() : nullptr;
}

int TVeneerMenu::IndexOf(const TMenuBtn* Btn) const {
    for (std::size_t i = 0; i < Buttons.size(); ++i)
        if (Buttons[i].get() == Btn) return int(i);
    return -1;
}

void TVeneerMenu::Repaint() {
    FForm.RepaintFrame();
}

void TVeneerMenu::SetState(int Index, int State) {
    bool changed = false;
    for (std::size_t i = 0; i < Buttons.size(); ++i) {
        const int want = int(i) == Index ? State : 0;
        if (Buttons[i]->Look.State != want) {
            Buttons[i]->Look.State = want;
            changed = true;
        }
    }
    if (changed) Repaint();
}

void TVeneerMenu::OpenMenu(TMenuBtn* Btn, bool FromKeyboard) {
    if (!Btn || !FForm.Form()) return;
    QAction* action = Btn->Item;
    QMenu* menu = Btn->SubMenu;
    if (!menu) {
        // A top-level item with no menu is a command of its own.
        if (action && action->isEnabled()) action->trigger();
        return;
    }
    if (!Btn->Enabled()) return;
    TrackIndex = IndexOf(Btn);
    SetState(TrackIndex, 3);
    TSkinManage& manager = TSkinManage::Instance();
    manager.MenuKind = 1;
    manager.MenuTracking = true;
    const TRect& r = Btn->Look.Rect;
    const QPoint at = FForm.Form()->mapToGlobal(QPoint(r.Left, r.Bottom + 1));
    menu->popup(at);
    // From the keyboard the first item comes up selected.
    if (FromKeyboard)
        for (QAction* a : menu->actions())
            if (a->isVisible() && a->isEnabled() && !a->isSeparator()) {
                menu->setActiveAction(a);
                break;
            }
}

void TVeneerMenu::SwitchTo(int Index, bool FromKeyboard) {
    if (Index < 0 || Index >= int(Buttons.size()) || Index == TrackIndex) return;
    FSwitchTo = Index;
    FSwitchKeys = FromKeyboard;
    if (TrackIndex >= 0)
        if (QMenu* open = Buttons[std::size_t(TrackIndex)]->SubMenu) {
            open->close(); // the close opens the next one
            return;
        }
    OpenMenu(Buttons[std::size_t(Index)].get(), FromKeyboard);
}

void TVeneerMenu::MouseMove(QPoint WindowPos) {
    TMenuBtn* btn = BtnAt(WindowPos);
    const int index = IndexOf(btn);
    if (TrackIndex >= 0) {
        if (index >= 0 && index != TrackIndex) SwitchTo(index, false);
        return;
    }
    SetState(index, 2);
}

void TVeneerMenu::MousePress(QPoint WindowPos) {
    TMenuBtn* btn = BtnAt(WindowPos);
    if (btn) OpenMenu(btn, false);
}

void TVeneerMenu::MouseLeave() {
    if (TrackIndex >= 0) return;
    SetState(-1, 0);
}

bool TVeneerMenu::eventFilter(QObject* Watched, QEvent* Event) {
    auto* menu = qobject_cast<QMenu*>(Watched);
    if (!menu || TrackIndex < 0 || TrackIndex >= int(Buttons.size()) ||
        Buttons[std::size_t(TrackIndex)]->SubMenu != menu)
        return false;
    switch (Event->type()) {
    case QEvent::KeyPress: {
        // Right past an item with no sub-menu and Left in the top menu walk
        // across the strip, wrapping round.
        const int key = static_cast<QKeyEvent*>(Event)->key();
        const QAction* active = menu->activeAction();
        int step = 0;
        // In a right-to-left strip the two keys trade places.
        const bool mirrored = FForm.Frame.RightToLeft;
        const int forward = mirrored ? Qt::Key_Left : Qt::Key_Right;
        const int back = mirrored ? Qt::Key_Right : Qt::Key_Left;
        if (key == forward && !(active && active->menu())) step = 1;
        if (key == back) step = -1;
        if (step == 0) return false;
        // Buttons that are commands of their own are passed over: a key
        // that only walks must not run one.
        const std::vector<TMenuStripButton> looks = Looks();
        int next = TrackIndex;
        for (std::size_t n = 0; n < Buttons.size(); ++n) {
            next = NextMenuStripButton(looks, next, step);
            if (next < 0 || next == TrackIndex || Buttons[std::size_t(next)]->SubMenu) break;
        }
        if (next >= 0 && next != TrackIndex) SwitchTo(next, true);
        return true;
    }
    case QEvent::MouseMove: {
        // The pointer over another button of the strip opens that one.
        QWidget* form = FForm.Form();
        if (!form) return false;
        const QPoint p =
            form->mapFromGlobal(static_cast<QMouseEvent*>(Event)->globalPosition().toPoint());
        if (TMenuBtn* btn = BtnAt(p); btn && IndexOf(btn) != TrackIndex)
            SwitchTo(IndexOf(btn), false);
        return false;
    }
    case QEvent::Hide: {
        TrackIndex = -1;
        TSkinManage& manager = TSkinManage::Instance();
        manager.MenuTracking = false;
        const int next = std::exchange(FSwitchTo, -1);
        if (next >= 0) {
            // Opened after the close has run its course.
            QMetaObject::invokeMethod(
                this,
                [this, next, keys = FSwitchKeys] {
                    OpenMenu(Buttons[std::size_t(next)].get(), keys);
                },
                Qt::QueuedConnection);
        } else {
            SetState(-1, 0);
        }
        return false;
    }
    default:
        return false;
    }
}
