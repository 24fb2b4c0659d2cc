#include "app/about.h"

#include "controls/ui/UniControls.h"

#include <QFrame>
#include <QGuiApplication>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>

QPixmap AboutPicture() {
    const qreal ratio = qApp->devicePixelRatio();
    QPixmap picture(QSize(105, 89) * ratio);
    picture.setDevicePixelRatio(ratio);
    QPainter painter(&picture);
    QLinearGradient gradient(0, 0, 0, 89);
    gradient.setColorAt(0, QColor(0x2B, 0x4C, 0x7E));
    gradient.setColorAt(1, QColor(0x56, 0x7E, 0xBB));
    painter.fillRect(QRect(0, 0, 105, 89), gradient);
    // A page with a few coloured lines of "code" and the program's initials.
    painter.fillRect(QRect(10, 10, 44, 66), QColor(0xF4, 0xF4, 0xF0));
    const QColor lines[] = {QColor(0xC0, 0x30, 0x30), QColor(0x20, 0x70, 0x20),
                            QColor(0x20, 0x40, 0xB0), QColor(0x90, 0x60, 0x10)};
    for (int i = 0; i < 7; ++i)
        painter.fillRect(QRect(15 + (i % 3) * 4, 16 + i * 8, 18 + (i * 7) % 13, 3), lines[i % 4]);
    QFont font(QStringLiteral("Tahoma"));
    font.setPixelSize(30);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRect(54, 40, 51, 40), Qt::AlignCenter, QStringLiteral("Lx"));
    painter.end();
    return picture;
}

TSyntaxAbout::TSyntaxAbout(QWidget* Parent) : QDialog(Parent) {
    setWindowTitle(QStringLiteral("About"));
    // System menu only, fixed single border.
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowCloseButtonHint | Qt::MSWindowsFixedSizeDialogHint);
    setFixedSize(401, 187);
    setProperty("SingleBorder", true); // the skin draws a single border, not a dialog frame

    Image1 = new QLabel(this);
    Image1->setGeometry(8, 8, 105, 89);
    Image1->setPixmap(AboutPicture());

    Panel1 = new QFrame(this);
    Panel1->setFrameStyle(QFrame::Panel | QFrame::Sunken); // lowered
    Panel1->setGeometry(122, 8, 271, 137);

    QFont titleFont(QStringLiteral("Tahoma"));
    titleFont.setPixelSize(16);
    titleFont.setBold(true);
    Label1 = new QLabel(QStringLiteral("KV Lexsmith"), Panel1);
    Label1->setFont(titleFont);
    Label1->setGeometry(12, 10, 247, 22);
    Label2 = new QLabel(QStringLiteral("Version 1.72"), Panel1);
    Label2->setGeometry(12, 36, 247, 16);
    Label3 = new QLabel(QStringLiteral("Syntax definitions for Scribex."), Panel1);
    Label3->setGeometry(12, 76, 247, 16);
    Label4 = new QLabel(QStringLiteral("Written by the Lexsmith team."), Panel1);
    Label4->setGeometry(12, 96, 247, 16);

    BitBtn1 = new TUniBitBtn(u"", this);
    BitBtn1->SetKind(bkOK);
    BitBtn1->setGeometry(163, 154, 75, 25);
}

int TSyntaxAbout::ShowModal() {
    return ModalHook ? ModalHook(*this) : exec();
}

void TSyntaxAbout::reject() {
    done(2);
}
