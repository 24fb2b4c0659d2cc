#include "base/ui/Colors.h"

#include "base/Canvas.h"

#include <QApplication>
#include <QPalette>

namespace {

// System colour indices that have a palette role.
bool PaletteRole(unsigned Index, QPalette::ColorRole& Role) {
    switch (Index) {
    case 5: // window
        Role = QPalette::Base;
        return true;
    case 8: // window text
        Role = QPalette::Text;
        return true;
    case 13: // highlight
        Role = QPalette::Highlight;
        return true;
    case 14: // highlight text
        Role = QPalette::HighlightedText;
        return true;
    case 18: // button text
        Role = QPalette::ButtonText;
        return true;
    default:
        return false;
    }
}

} // namespace

TColor FromQColor(const QColor& Color) {
    return TColor(Color.red()) | (TColor(Color.green()) << 8) | (TColor(Color.blue()) << 16);
}

TColor ResolveColor(TColor Color, const QPalette* Palette) {
    if (Color == clNone) return 0;
    if ((Color & 0xFF000000u) == clSystemColor) {
        QPalette::ColorRole role;
        const unsigned index = Color & 0xFF;
        if (PaletteRole(index, role)) {
            if (Palette) return FromQColor(Palette->color(role));
            if (qobject_cast<QApplication*>(QCoreApplication::instance()))
                return FromQColor(QApplication::palette().color(role));
        }
        return ClassicColorToRGB(Color);
    }
    return Color & 0xFFFFFF;
}

QColor ToQColor(TColor Color, const QPalette* Palette) {
    const TColor rgb = ResolveColor(Color, Palette);
    return QColor(int(rgb & 0xFF), int((rgb >> 8) & 0xFF), int((rgb >> 16) & 0xFF));
}
