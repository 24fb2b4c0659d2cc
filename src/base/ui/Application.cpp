#include "base/ui/Application.h"

#include "base/Dialogs.h"
#include "base/Exceptions.h"
#include "base/ui/Fonts.h"

TApplication::TApplication(int& Argc, char** Argv) : QApplication(Argc, Argv) {
    LoadBundledFonts();
}

void TApplication::ShowException(const std::string& Message) {
    if (OnException) {
        OnException(Message);
        return;
    }
    if (TDialogs* dialogs = Dialogs()) {
        const QString text = QString::fromUtf8(Message.data(), qsizetype(Message.size()));
        dialogs->MessageBox(text.toStdU16String(), applicationName().toStdU16String(),
                            MB_OK | MB_ICONERROR);
    }
}

bool TApplication::notify(QObject* Receiver, QEvent* Event) {
    try {
        return QApplication::notify(Receiver, Event);
    } catch (const Exception& e) {
        ShowException(e.what());
    } catch (const std::exception& e) {
        ShowException(e.what());
    }
    return false;
}
