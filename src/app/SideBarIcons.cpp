#include "app/SideBarIcons.h"

#include "app/about.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>

namespace {

const QColor Ink(0x33, 0x44, 0x66);
const QColor Blue(0x2B, 0x5C, 0xAE);
const QColor Green(0x2E, 0x8B, 0x3E);
const QColor Orange(0xD8, 0x7A, 0x16);
const QColor Paper(0xFA, 0xFA, 0xF4);

void Page(QPainter& P) {
    P.setPen(Ink);
    P.setBrush(Paper);
    P.drawRect(2, 1, 11, 13);
}

void Box(QPainter& P) {
    P.setPen(Ink);
    P.setBrush(Paper);
    P.drawRect(1, 1, 13, 13);
}

void Letter(QPainter& P, const QString& Text, const QColor& Color) {
    QFont font(QStringLiteral("Tahoma"));
    font.setPixelSize(11);
    font.setBold(true);
    P.setFont(font);
    P.setPen(Color);
    P.drawText(QRect(0, 1, 16, 15), Qt::AlignCenter, Text);
}

void Lines(QPainter& P, int Left, int Top, int Count, const QColor& Color) {
    for (int i = 0; i < Count; ++i)
        P.fillRect(Left, Top + i * 3, 10 - Left / 2 - (i % 2) * 2, 1, Color);
}

} // namespace

QPixmap SideBarIcon(int Section) {
    // Drawn at the screen's density, so the lines stay sharp there.
    const qreal ratio = qApp->devicePixelRatio();
    QPixmap icon(QSize(16, 16) * ratio);
    icon.setDevicePixelRatio(ratio);
    icon.fill(Qt::transparent);
    QPainter p(&icon);
    switch (Section) {
    case 0: // options: three sliders
        for (int i = 0; i < 3; ++i) {
            p.fillRect(2, 3 + i * 5, 12, 1, Ink);
            p.fillRect(3 + (i * 4) % 9, 1 + i * 5, 3, 5, i == 1 ? Orange : Blue);
        }
        break;
    case 1: // keywords
        Page(p);
        Letter(p, QStringLiteral("K"), Blue);
        break;
    case 2: // tags
        Page(p);
        Letter(p, QStringLiteral("<>"), Green);
        break;
    case 3: // user menu: a menu with a highlighted row
        Box(p);
        p.fillRect(2, 6, 12, 3, Blue);
        Lines(p, 4, 3, 1, Ink);
        Lines(p, 4, 11, 1, Ink);
        break;
    case 4: // class completion
        Box(p);
        Letter(p, QStringLiteral("{ }"), Blue);
        break;
    case 5: // tag completion
        Box(p);
        Letter(p, QStringLiteral("</"), Green);
        break;
    case 6: { // hints: a speech bubble
        QPainterPath bubble;
        bubble.addRoundedRect(QRectF(1, 1, 14, 10), 3, 3);
        bubble.moveTo(4, 10);
        bubble.lineTo(4, 15);
        bubble.lineTo(8, 10);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(Orange.darker(130));
        p.setBrush(QColor(0xFF, 0xE8, 0x8A));
        p.drawPath(bubble.simplified());
        p.setRenderHint(QPainter::Antialiasing, false);
        Lines(p, 4, 4, 2, Ink);
        break;
    }
    case 7: // sample: a page of coloured lines
        Page(p);
        p.fillRect(4, 4, 6, 1, Blue);
        p.fillRect(4, 7, 7, 1, Green);
        p.fillRect(4, 10, 5, 1, Orange);
        break;
    default: { // author: a head and shoulders
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(Qt::NoPen);
        p.setBrush(Blue);
        p.drawEllipse(QRectF(5, 1, 6, 6));
        p.drawRoundedRect(QRectF(2, 8, 12, 8), 4, 4);
        break;
    }
    }
    return icon;
}

QIcon ApplicationIcon() {
    const QPixmap about = AboutPicture();
    const qreal ratio = about.devicePixelRatio();
    const QPixmap picture =
        about.copy(QRectF(6 * ratio, 6 * ratio, 93 * ratio, 77 * ratio).toRect());
    QIcon icon;
    for (int size : {16, 32, 48})
        icon.addPixmap(picture.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    return icon;
}
