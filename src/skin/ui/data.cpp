#include "skin/ui/data.h"

#include "base/Dialogs.h"
#include "base/ui/Colors.h"
#include "skin/bitmap.h"
#include "skin/ui/form.h"
#include "skin/ui/manager.h"

#include <QApplication>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QScreen>
#include <QWidget>

namespace {

// The small caption font of the classic frame: the dialog face, bold.
TFont SystemCaptionFont() {
    TFont font;
    font.Name = u"Tahoma";
    font.Height = -11;
    font.Style = fsBold;
    return font;
}

QPixmap GlyphCell(const TMemoryBitmap& Strip, int Index) {
    QImage cell(16, 16, QImage::Format_ARGB32);
    cell.fill(Qt::transparent);
    for (int y = 0; y < 16 && y < Strip.Height(); ++y)
        for (int x = 0; x < 16; ++x) {
            int sx = Index * 16 + x;
            if (sx >= Strip.Width()) break;
            TPixel p = Strip.Pixel(sx, y);
            // White is the mask of the glyph strip.
            if ((p & 0xFFFFFF) != 0xFFFFFF) cell.setPixel(x, y, p | 0xFF000000u);
        }
    return QPixmap::fromImage(cell);
}

} // namespace

TSkinData::TSkinData(QWidget* Owner) : QObject(Owner), FOwner(Owner) {
    CaptionFont = SystemCaptionFont();
    const TMemoryBitmap strip = VeneerMenuResource();
    for (int i = 0; i < 4; ++i)
        MenuImages.push_back(GlyphCell(strip, i));
    if (QScreen* screen = QGuiApplication::primaryScreen()) {
        MaxWidth = screen->availableGeometry().width();
        MaxHeight = screen->availableGeometry().height();
    }
    // The reader's one message to the user: a skin file of an older format.
    OnMessage = [](const AnsiString& Text) {
        if (TDialogs* dialogs = Dialogs())
            dialogs->MessageBox(WideString(Text.begin(), Text.end()), u"", 0);
    };
}

TSkinData::~TSkinData() {
    if (TSkinManage::Exists()) TSkinManage::Instance().RemoveData(this);
}

void TSkinData::SetActive(bool Value) {
    if (Value == FActive) return;
    if (!FLoaded) {
        // Before Loaded the value is only stored; Loaded acts on it.
        FActive = Value;
        return;
    }
    TSkinManage& manager = TSkinManage::Instance();
    switch (SkinFormtype) {
    case sfMainform:
    case sfOnlyThisForm:
        if (!Value) {
            FActive = false;
            manager.CurrentData = this;
            manager.Post(saRemove, 250);
        } else if (!Empty) {
            FActive = true;
            manager.CurrentData = this;
            manager.Post(saApply, 250);
            if (SkinFormtype == sfMainform) manager.State = 1;
        }
        break;
    default:
        FActive = Value;
        break;
    }
}

void TSkinData::Loaded() {
    if (FLoaded) return;
    FLoaded = true;
    TSkinManage& manager = TSkinManage::Instance();
    manager.AddData(this);
    CaptionFont = SystemCaptionFont();
    if (SkinFormtype == sfMainform) {
        manager.SetHook();
        if (FActive) {
            if (!Empty) {
                manager.CurrentData = this;
                manager.Post(saApply, 250);
            } else {
                FActive = false;
            }
        }
        if (HasBit(SkinControls, xcMainMenu))
            SkinControls &= ~(1u << xcMenuItem);
        else
            SkinControls &= ~(1u << xcSystemMenu);
        MakeAppIcon();
    } else {
        manager.Active = true;
        if (FActive && FOwner && FOwner->isWindow()) manager.AddForm(FOwner);
    }
}

void TSkinData::UpdateSkin() {
    if (!FLoaded) {
        // Loading a skin before the component is set up waits for Loaded.
        return;
    }
    TSkinManage& manager = TSkinManage::Instance();
    manager.CurrentData = this;
    for (auto& form : manager.FormList)
        if (!form->Dead() && &form->Skin() == this) form->RebuildButtons();
    if (manager.State == 1) manager.Post(saRefresh, 250);
}

TColor TSkinData::ResolveColor(TColor C) const {
    return ::ResolveColor(C);
}

void TSkinData::DoSkinChanged() {
    if (OnSkinChanged) OnSkinChanged(this);
}

QBrush TSkinData::FaceBrush() const {
    return QBrush(ToQColor(ButtonFace));
}

void TSkinData::MakeAppIcon() {
    AppIcon = SmallIconBitmap(QApplication::windowIcon());
}

TMemoryBitmap SmallIconBitmap(const QIcon& Icon) {
    if (Icon.isNull()) return {};
    QImage image = Icon.pixmap(16, 16).toImage().convertToFormat(QImage::Format_ARGB32);
    if (image.size() != QSize(16, 16)) image = image.scaled(16, 16);
    TMemoryBitmap bitmap(16, 16, MagentaPixel);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x) {
            const QRgb p = image.pixel(x, y);
            if (qAlpha(p) >= 128) bitmap.SetPixel(x, y, 0xFF000000u | (p & 0xFFFFFF));
        }
    return bitmap;
}
