// The program's entry: the four forms are created in order (the main form
// first), then the event loop runs. Every argument is the name of a file to
// open; there are no switches.
//
// LEXSMITH_SCREENSHOT=FILE.png makes the program write a picture of the
// main window as soon as it has been painted with the files opened, and
// quit:
// the demo run uses it on machines without a display.

#include "app/AddKeywordsDialog.h"
#include "app/SideBarIcons.h"
#include "app/SynEditor.h"
#include "skin/ui/form.h"
#include "app/UserMenuDialog.h"
#include "app/about.h"
#include "app/hh.h"
#include "base/ui/Application.h"
#include "base/ui/QtDialogs.h"

#include <QTimer>

#include <cstdio>
#include <exception>
#include <functional>

namespace {

// Calls Action once, from the event loop, after the first paint of the
// widget it watches.
class TFirstPaintWatch : public QObject {
public:
    TFirstPaintWatch(QObject* Parent, std::function<void()> Action)
        : QObject(Parent), FAction(std::move(Action)) {}

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override {
        if (Event->type() == QEvent::Paint && FAction) {
            QTimer::singleShot(0, this, std::move(FAction));
            FAction = nullptr;
        }
        return QObject::eventFilter(Watched, Event);
    }

private:
    std::function<void()> FAction;
};

} // namespace

int main(int argc, char** argv) {
    TApplication app(argc, argv);
    app.setApplicationName(QStringLiteral("Lexsmith"));
    app.setWindowIcon(ApplicationIcon());
    TQtDialogs dialogs;
    SetDialogs(&dialogs);
    LoadHtmlHelp();

    std::unique_ptr<TSynForm> synForm;
    try {
        synForm = std::make_unique<TSynForm>();
    } catch (const std::exception& e) {
        std::fprintf(stderr, "lexsmith: %s\n", e.what());
        // Without a screen nobody could answer a box: the message above is all.
        if (!Headless()) app.ShowException(e.what());
        return 1;
    }
    dialogs.Parent = synForm.get();
    auto* syntaxAbout = new TSyntaxAbout(synForm.get());
    auto* userMenuForm = new TUserMenuForm(synForm.get());
    auto* addForm = new TAddForm(synForm.get());
    synForm->SetForms(syntaxAbout, userMenuForm, addForm);

    const QString screenshot = qEnvironmentVariable("LEXSMITH_SCREENSHOT");
    if (!screenshot.isEmpty()) {
        // The picture is taken as soon as the window has been painted once.
        auto* watch = new TFirstPaintWatch(synForm.get(), [&] {
            const bool saved = WindowPicture(synForm.get()).save(screenshot, "PNG");
            if (saved)
                std::printf("lexsmith: picture of the main window written to %s\n",
                            qPrintable(screenshot));
            else
                std::fprintf(stderr, "lexsmith: cannot write %s\n", qPrintable(screenshot));
            synForm->Modified = false; // nothing to ask on the way out
            app.exit(saved ? 0 : 1);
        });
        synForm->installEventFilter(watch);
    }
    synForm->show();
    const int result = app.exec();
    UnloadHtmlHelp();
    SetDialogs(nullptr);
    return result;
}
