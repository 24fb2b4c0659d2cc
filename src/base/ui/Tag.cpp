#include "base/ui/Tag.h"

#include <QObject>
#include <QVariant>

int TagOf(const QObject* Object) {
    if (!Object) return 0;
    const QVariant v = Object->property("Tag");
    return v.isValid() ? v.toInt() : 0;
}

void SetTag(QObject* Object, int Value) {
    if (Object) Object->setProperty("Tag", Value);
}
