#include "base/ui/Messages.h"

#include <QCoreApplication>

#include <map>

namespace {

// Both directions of the registration; the program's one thread owns them.
std::map<int, QEvent::Type>& TypesByNumber() {
    static std::map<int, QEvent::Type> types;
    return types;
}

std::map<int, int>& NumbersByType() {
    static std::map<int, int> numbers;
    return numbers;
}

} // namespace

QEvent::Type PrivateMessageType(int Number) {
    auto& types = TypesByNumber();
    auto it = types.find(Number);
    if (it != types.end()) return it->second;
    const auto type = QEvent::Type(QEvent::registerEventType());
    types.emplace(Number, type);
    NumbersByType().emplace(int(type), Number);
    return type;
}

int PrivateMessageNumber(const QEvent* Event) {
    if (!Event) return 0;
    auto it = NumbersByType().find(int(Event->type()));
    return it == NumbersByType().end() ? 0 : it->second;
}

void PostPrivateMessage(QObject* Receiver, int Number, std::intptr_t WParam, std::intptr_t LParam) {
    QCoreApplication::postEvent(Receiver, new TPrivateMessage(Number, WParam, LParam));
}

bool SendPrivateMessage(QObject* Receiver, int Number, std::intptr_t WParam, std::intptr_t LParam) {
    TPrivateMessage message(Number, WParam, LParam);
    return QCoreApplication::sendEvent(Receiver, &message);
}
