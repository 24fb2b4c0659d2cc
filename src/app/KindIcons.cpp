#include "app/KindIcons.h"

#include "base/ui/QtCanvas.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>

QString ResourcesFolder() {
    const QString fromEnvironment = qEnvironmentVariable("LEXSMITH_RESOURCES");
    if (!fromEnvironment.isEmpty()) return fromEnvironment;
    // Built into the program.
    return QStringLiteral(":/resources");
}

QString KindIconPath(int Kind) {
    return QDir(ResourcesFolder())
        .filePath(QStringLiteral("images/kinds/kind%1.bmp").arg(Kind, 2, 10, QChar(u'0')));
}

bool LoadKindBitmap(int Kind, TMemoryBitmap& Bitmap) {
    Bitmap = TMemoryBitmap();
    if (Kind < 0 || Kind >= KindIconCount) return false;
    QImage image(KindIconPath(Kind));
    if (image.isNull()) return false;
    image = image.convertToFormat(QImage::Format_RGB32);
    Bitmap.SetSize(image.width(), image.height());
    if (Bitmap.Empty()) return false;
    for (int y = 0; y < image.height(); ++y) {
        const auto* src = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        TPixel* dest = Bitmap.ScanLine(y);
        for (int x = 0; x < image.width(); ++x)
            dest[x] = 0xFF000000u | src[x];
    }
    return true;
}

QPixmap KindPixmap(int Kind) {
    TMemoryBitmap bitmap;
    if (!LoadKindBitmap(Kind, bitmap)) return {};
    // Enlarged by a whole factor without smoothing for a dense screen, so the
    // icon's pixels stay sharp where the toolkit shows it (combo box rows).
    return QPixmap::fromImage(
        ToDenseQImage(bitmap, KindIconTransparentColor, qApp->devicePixelRatio()));
}

void DrawKindListItem(TCanvas& Canvas, const TRect& Rect, WideView Text, const TKVBitmap* Bitmap) {
    Canvas.FillRect(Rect);
    int x = Rect.Left;
    if (Bitmap) {
        Canvas.Draw(Rect.Left, Rect.Top, *Bitmap, KindIconTransparentColor);
        x += 20;
    }
    Canvas.TextOut(x, Rect.Top, Text);
}
