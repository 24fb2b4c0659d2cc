// Opens a definition in the main window and writes a picture of each
// section, of the block and folding sheet and of the open File menu, into
// a folder:
//
//   window_shots FILE.syx OUTDIR
//
// Runs without a screen with QT_QPA_PLATFORM=offscreen or under xvfb-run.

#include "app/SynEditor.h"
#include "skin/ui/form.h"
#include "base/ui/Application.h"
#include "controls/ui/PlusPageControl.h"
#include "controls/ui/UniControls.h"
#include "controls/ui/WgMenuBar.h"
#include "controls/ui/WgPgCtl.h"
#include "controls/ui/WgPopupMenu.h"

#include <QCursor>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QPainter>

#include <cstdio>

int main(int argc, char** argv) {
    TApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 3) {
        std::fprintf(stderr, "usage: window_shots FILE.syx OUTDIR\n");
        return 2;
    }
    const QDir out(args[2]);
    if (!QDir().mkpath(out.path())) {
        std::fprintf(stderr, "window_shots: cannot make %s\n", qPrintable(out.path()));
        return 1;
    }
    TSynForm form;
    form.Params = {args[1]};
    QCursor::setPos(3000, 3000); // away from the menu bar, so nothing is hot
    form.show();
    app.processEvents();
    auto shoot = [&](const QString& Name) {
        app.processEvents();
        const QString path = out.filePath(Name + QStringLiteral(".png"));
        if (!WindowPicture(&form).save(path, "PNG")) {
            std::fprintf(stderr, "window_shots: cannot write %s\n", qPrintable(path));
            return false;
        }
        std::printf("%s\n", qPrintable(path));
        return true;
    };
    bool ok = true;
    for (int section = 0; section < TSynForm::SectionCount; ++section) {
        form.SelectSection(section);
        // Show the items of the first menu, as a click on it would.
        if (form.WgPageControl1->ActivePage() == 1 && form.Pages.lbMenu->count() > 0) {
            form.Pages.lbMenu->SetItemIndex(0);
            form.Pages.lbMenuClick();
        }
        ok = shoot(QStringLiteral("section%1").arg(section)) && ok;
    }
    form.SelectSection(0);
    form.PlusPageControl1->SetActivePageIndex(1);
    ok = shoot(QStringLiteral("blocks")) && ok;

    // The File menu, opened with Alt+F as the user would, its first item hot.
    form.PlusPageControl1->SetActivePageIndex(0);
    form.activateWindow();
    QApplication::setActiveWindow(&form);
    form.WgMenuBar1->setFocus();
    QKeyEvent altDown(QEvent::KeyPress, Qt::Key_Alt, Qt::AltModifier);
    QApplication::sendEvent(&form, &altDown);
    QKeyEvent fDown(QEvent::KeyPress, Qt::Key_F, Qt::AltModifier, QStringLiteral("f"));
    QApplication::sendEvent(&form, &fDown);
    app.processEvents();
    if (TWgPopupMenu* popup = form.WgMenuBar1->OpenPopup()) {
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
        QApplication::sendEvent(popup, &down);
        app.processEvents();
        QImage image = WindowPicture(&form);
        QPainter painter(&image);
        painter.drawPixmap(form.mapFromGlobal(popup->geometry().topLeft()), popup->grab());
        painter.end();
        const QString path = out.filePath(QStringLiteral("menu.png"));
        ok = image.save(path, "PNG") && ok;
        std::printf("%s\n", qPrintable(path));
        popup->close();
    } else {
        std::fprintf(stderr, "window_shots: the File menu did not open\n");
        ok = false;
    }
    form.Modified = false;
    return ok ? 0 : 1;
}
