#pragma once
// TApplication: the program's QApplication. An exception that escapes an
// event handler is shown in a message box and ends that event only; the
// program keeps running. Nothing else in the program catches.

#include <QApplication>

#include <functional>
#include <string>

class TApplication : public QApplication {
    Q_OBJECT
public:
    TApplication(int& Argc, char** Argv);

    bool notify(QObject* Receiver, QEvent* Event) override;

    // Shows the message of an escaped exception: through the installed
    // dialogs (a message box with the application's title) by default.
    std::function<void(const std::string& Message)> OnException;
    void ShowException(const std::string& Message);
};
