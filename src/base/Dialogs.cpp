#include "base/Dialogs.h"

namespace {
TDialogs* gDialogs = nullptr;
}

TDialogs* Dialogs() {
    return gDialogs;
}

TDialogs* SetDialogs(TDialogs* Value) {
    TDialogs* old = gDialogs;
    gDialogs = Value;
    return old;
}
