// One picture of every control the skin paints, in every state, for people
// who make skins: what a skin lacks shows as a plain control.
//
//   skin_gallery SKINFILE OUT.png
//
// Runs without a screen with QT_QPA_PLATFORM=offscreen or under xvfb-run.

#include "base/ui/Application.h"
#include "skin/ui/data.h"
#include "skin/ui/form.h"
#include "skin/ui/manager.h"
#include "skin/ui/menu.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QHoverEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSaveFile>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <QStyle>
#include <QTabWidget>
#include <QTableWidget>
#include <QToolButton>

#include <cstdio>
#include <functional>

namespace {

// The states of the columns.
enum TGalleryState { gsNormal, gsHover, gsPressed, gsFocused, gsDisabled, gsChecked, gsCount };
const char* const StateNames[gsCount] = {"normal",  "hover",    "pressed",
                                         "focused", "disabled", "checked"};

// The picture of an open menu of the skin, to the right of the window.
// An open menu as the skin draws it: normal, hot, disabled and checked
// items, a separator and a sub-menu arrow.
QImage MenuPicture(TSkinData& Data, qreal Ratio) {
    return RenderSkinnedMenuSample(Data, Ratio);
}

void SendEnter(QWidget* W) {
    QEnterEvent enter(QPointF(2, 2), QPointF(2, 2), W->mapToGlobal(QPointF(2, 2)));
    QCoreApplication::sendEvent(W, &enter);
}

void SendHover(QWidget* W, QPoint P) {
    SendEnter(W);
    QHoverEvent move(QEvent::HoverMove, P, W->mapToGlobal(QPointF(P)), QPoint(-1, -1));
    QCoreApplication::sendEvent(W, &move);
}

void SendPress(QWidget* W, QPoint P) {
    QMouseEvent press(QEvent::MouseButtonPress, P, W->mapToGlobal(QPointF(P)), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(W, &press);
}

QIcon Glyph(QWidget* W) {
    return W->style()->standardIcon(QStyle::SP_DialogOpenButton);
}

// One row: a kind of control, made once for each state.
struct TRow {
    const char* Name;
    std::function<QWidget*(QWidget* Parent)> Make;
    std::function<void(QWidget*, TGalleryState)> Set; // after the skin is on
};

void SetButton(QWidget* W, TGalleryState S) {
    auto* b = static_cast<QAbstractButton*>(W);
    switch (S) {
    case gsHover:
        SendEnter(b);
        break;
    case gsPressed:
        b->setDown(true);
        break;
    case gsDisabled:
        b->setEnabled(false);
        break;
    case gsChecked:
        if (b->isCheckable()) b->setChecked(true);
        break;
    default:
        break;
    }
}

void SetPlain(QWidget* W, TGalleryState S) {
    if (S == gsHover) SendEnter(W);
    if (S == gsPressed) SendPress(W, W->rect().center());
    if (S == gsDisabled) W->setEnabled(false);
}

QScrollBar* MakeBar(QWidget* Parent) {
    auto* bar = new QScrollBar(Qt::Horizontal, Parent);
    bar->setRange(0, 100);
    bar->setPageStep(30);
    bar->setValue(30);
    bar->setMinimumWidth(110);
    return bar;
}

std::vector<TRow> Rows() {
    return {
        {"Button", [](QWidget* P) { return new QPushButton("Button", P); }, SetButton},
        {"Bit button",
         [](QWidget* P) {
             auto* b = new QPushButton("Open", P);
             b->setIcon(Glyph(b));
             b->setCheckable(true);
             return b;
         },
         SetButton},
        {"Speed button",
         [](QWidget* P) {
             auto* b = new QToolButton(P);
             b->setIcon(Glyph(b));
             b->setCheckable(true);
             return b;
         },
         SetButton},
        {"Check box", [](QWidget* P) { return new QCheckBox("Check", P); }, SetButton},
        {"Radio button", [](QWidget* P) { return new QRadioButton("Radio", P); }, SetButton},
        {"Edit",
         [](QWidget* P) {
             auto* e = new QLineEdit("Text", P);
             e->setMaximumWidth(110);
             return e;
         },
         SetPlain},
        {"Combo box",
         [](QWidget* P) {
             auto* c = new QComboBox(P);
             c->addItems({"Choice", "Other"});
             return c;
         },
         [](QWidget* W, TGalleryState S) {
             if (S == gsPressed) {
                 // The press as the skin sees it, without opening the list.
                 SendEnter(W);
                 SendPress(W, QPoint(2, 2));
                 if (auto* c = qobject_cast<QComboBox*>(W)) c->hidePopup();
                 return;
             }
             SetPlain(W, S);
         }},
        {"Spin box",
         [](QWidget* P) {
             auto* s = new QSpinBox(P);
             s->setValue(42);
             return s;
         },
         [](QWidget* W, TGalleryState S) {
             if (S == gsHover) SendHover(W, QPoint(W->width() - 6, 4));
             if (S == gsDisabled) W->setEnabled(false);
         }},
        {"Group box",
         [](QWidget* P) {
             auto* g = new QGroupBox("Group", P);
             g->setMinimumSize(100, 44);
             return g;
         },
         [](QWidget* W, TGalleryState S) {
             if (S == gsDisabled) W->setEnabled(false);
         }},
        {"Tabs",
         [](QWidget* P) {
             auto* t = new QTabWidget(P);
             t->addTab(new QWidget, "One");
             t->addTab(new QWidget, "Two");
             t->setMinimumSize(110, 60);
             return t;
         },
         [](QWidget* W, TGalleryState S) {
             auto* t = static_cast<QTabWidget*>(W);
             if (S == gsHover) SendHover(t->tabBar(), t->tabBar()->tabRect(1).center());
             if (S == gsChecked) t->setCurrentIndex(1);
             if (S == gsDisabled) t->setEnabled(false);
         }},
        {"Header",
         [](QWidget* P) {
             auto* t = new QTableWidget(1, 2, P);
             t->setHorizontalHeaderLabels({"Name", "Kind"});
             t->verticalHeader()->hide();
             t->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
             t->setMinimumSize(110, 50);
             t->setMaximumHeight(50);
             return t;
         },
         [](QWidget* W, TGalleryState S) {
             auto* t = static_cast<QTableWidget*>(W);
             if (S == gsHover) SendHover(t->horizontalHeader()->viewport(), QPoint(5, 5));
             if (S == gsPressed) SendPress(t->horizontalHeader()->viewport(), QPoint(5, 5));
             if (S == gsDisabled) t->setEnabled(false);
         }},
        {"Status bar",
         [](QWidget* P) {
             auto* s = new QStatusBar(P);
             s->addWidget(new QLabel("Ready"), 1);
             s->setSizeGripEnabled(false);
             return s;
         },
         [](QWidget* W, TGalleryState S) {
             if (S == gsDisabled) W->setEnabled(false);
         }},
        {"Progress",
         [](QWidget* P) {
             auto* p = new QProgressBar(P);
             p->setValue(60);
             p->setTextVisible(false);
             p->setMaximumWidth(110);
             return p;
         },
         [](QWidget* W, TGalleryState S) {
             if (S == gsDisabled) W->setEnabled(false);
         }},
        {"Track bar",
         [](QWidget* P) {
             auto* s = new QSlider(Qt::Horizontal, P);
             s->setValue(40);
             s->setMaximumWidth(110);
             return s;
         },
         [](QWidget* W, TGalleryState S) {
             auto* s = static_cast<QSlider*>(W);
             if (S == gsPressed) s->setSliderDown(true);
             if (S == gsDisabled) s->setEnabled(false);
         }},
        {"Scroll bar", [](QWidget* P) { return MakeBar(P); },
         [](QWidget* W, TGalleryState S) {
             auto* bar = static_cast<QScrollBar*>(W);
             if (S == gsHover) SendHover(bar, QPoint(4, bar->height() / 2));
             if (S == gsPressed) {
                 // The thumb, held.
                 SendHover(bar, QPoint(bar->width() / 2, bar->height() / 2));
                 bar->setSliderDown(true);
             }
             if (S == gsDisabled) bar->setEnabled(false);
         }},
        {"List",
         [](QWidget* P) {
             auto* l = new QListWidget(P);
             for (int i = 0; i < 30; ++i)
                 l->addItem(QStringLiteral("A long row of the list, number %1").arg(i + 1));
             l->setFixedSize(110, 70);
             return l;
         },
         [](QWidget* W, TGalleryState S) {
             if (S == gsDisabled) W->setEnabled(false);
         }},
    };
}

} // namespace

int main(int argc, char** argv) {
    TApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 3) {
        std::fprintf(stderr, "usage: skin_gallery SKINFILE OUT.png\n");
        return 2;
    }
    if (!QFileInfo(args[1]).isFile()) {
        std::fprintf(stderr, "skin_gallery: no skin file %s\n", qPrintable(args[1]));
        return 1;
    }
    TSkinData data;
    data.Loaded();
    data.SetSkinFile(args[1].toStdString());
    if (data.Empty) {
        std::fprintf(stderr, "skin_gallery: %s is no skin this program reads\n",
                     qPrintable(args[1]));
        return 1;
    }

    QWidget form;
    form.setWindowTitle(QStringLiteral("%1 - skin gallery")
                            .arg(QString::fromStdString(
                                data.SkinName.empty() ? QFileInfo(args[1]).baseName().toStdString()
                                                      : data.SkinName)));
    auto* grid = new QGridLayout(&form);
    grid->setHorizontalSpacing(10);
    for (int s = 0; s < gsCount; ++s)
        grid->addWidget(new QLabel(StateNames[s], &form), 0, s + 1, Qt::AlignCenter);
    const std::vector<TRow> rows = Rows();
    std::vector<std::vector<QWidget*>> cells;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        grid->addWidget(new QLabel(rows[r].Name, &form), int(r) + 1, 0);
        cells.emplace_back();
        for (int s = 0; s < gsCount; ++s) {
            QWidget* w = rows[r].Make(&form);
            grid->addWidget(w, int(r) + 1, s + 1, Qt::AlignCenter);
            cells.back().push_back(w);
        }
    }
    form.show();
    form.winId();
    TSkinManage& manager = TSkinManage::Instance();
    manager.Active = true;
    if (!manager.AddForm(&form)) {
        std::fprintf(stderr, "skin_gallery: the skin does not take the window (test %d)\n",
                     manager.LastRefusal());
        return 1;
    }
    QCoreApplication::sendPostedEvents();
    app.processEvents();

    // Focus can stand on one control at a time: each focused cell is taken
    // on its own and shown as a picture in its place.
    QApplication::setActiveWindow(&form);
    for (std::size_t r = 0; r < rows.size(); ++r) {
        QWidget* w = cells[r][gsFocused];
        w->setFocus(Qt::TabFocusReason);
        app.processEvents();
        const QPixmap shot = w->grab();
        auto* picture = new QLabel(&form);
        picture->setPixmap(shot);
        grid->replaceWidget(w, picture);
        w->hide();
    }
    form.setFocus();
    for (std::size_t r = 0; r < rows.size(); ++r)
        for (int s = 0; s < gsCount; ++s)
            if (s != gsFocused) rows[r].Set(cells[r][s], TGalleryState(s));
    app.processEvents();

    QImage window = WindowPicture(&form);
    const QImage menu = MenuPicture(data, window.devicePixelRatio());
    QImage out = window;
    if (!menu.isNull()) {
        // Both pictures are at the screen's density; the sheet is laid out
        // in its device pixels.
        const qreal ratio = window.devicePixelRatio();
        const int gap = qRound(16 * ratio), top = qRound(40 * ratio);
        out = QImage(window.width() + gap + menu.width(), std::max(window.height(), top + menu.height()),
                     QImage::Format_ARGB32);
        out.fill(Qt::transparent);
        QImage plainWindow = window, plainMenu = menu;
        plainWindow.setDevicePixelRatio(1);
        plainMenu.setDevicePixelRatio(1);
        QPainter painter(&out);
        painter.drawImage(0, 0, plainWindow);
        painter.drawImage(window.width() + gap, top, plainMenu);
        painter.end();
        out.setDevicePixelRatio(ratio);
    }
    QSaveFile file(args[2]);
    if (!file.open(QIODevice::WriteOnly) || !out.save(&file, "PNG") || !file.commit()) {
        std::fprintf(stderr, "skin_gallery: cannot write %s: %s\n", qPrintable(args[2]),
                     qPrintable(file.errorString()));
        return 1;
    }
    std::printf("%s\n", qPrintable(args[2]));
    return 0;
}
