#include "base/ui/Fonts.h"

#include <QDir>
#include <QFontDatabase>

bool LoadBundledFonts() {
    static const bool loaded = [] {
        if (QFontDatabase::families().contains(QStringLiteral("Tahoma"))) return true;
        const QDir dir(QStringLiteral("/usr/share/wine/fonts"));
        for (const char* file : {"tahoma.ttf", "tahomabd.ttf", "ms_sans_serif.ttf"})
            if (dir.exists(QLatin1String(file)))
                QFontDatabase::addApplicationFont(dir.filePath(QLatin1String(file)));
        return QFontDatabase::families().contains(QStringLiteral("Tahoma"));
    }();
    return loaded;
}
