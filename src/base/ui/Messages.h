#pragma once
// Private messages between our controls as Qt events: one registered event
// type for each message number, posted or sent like the messages they
// stand for.

#include <QEvent>

#include <cstdint>

class QObject;

// The event type that stands for private message Number (13570, 3859, ...).
QEvent::Type PrivateMessageType(int Number);

class TPrivateMessage : public QEvent {
public:
    TPrivateMessage(int Number, std::intptr_t WParam = 0, std::intptr_t LParam = 0)
        : QEvent(PrivateMessageType(Number)), FNumber(Number), FWParam(WParam), FLParam(LParam) {}
    int Number() const { return FNumber; }
    std::intptr_t WParam() const { return FWParam; }
    std::intptr_t LParam() const { return FLParam; }

private:
    int FNumber;
    std::intptr_t FWParam, FLParam;
};

// The message number of Event, or 0 when it is no private message.
int PrivateMessageNumber(const QEvent* Event);
void PostPrivateMessage(QObject* Receiver, int Number, std::intptr_t WParam = 0,
                        std::intptr_t LParam = 0);
bool SendPrivateMessage(QObject* Receiver, int Number, std::intptr_t WParam = 0,
                        std::intptr_t LParam = 0);
