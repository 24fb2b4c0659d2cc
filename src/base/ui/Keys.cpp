#include "base/ui/Keys.h"

#include "base/VirtualKeys.h"

#include <Qt>

int VirtualKeyOf(int QtKey, bool Keypad) {
    // Letters and digits share their ASCII numbers.
    if ((QtKey >= Qt::Key_A && QtKey <= Qt::Key_Z) || (QtKey >= Qt::Key_0 && QtKey <= Qt::Key_9))
        return QtKey;
    if (QtKey >= Qt::Key_F1 && QtKey <= Qt::Key_F24) return VK_F1 + (QtKey - Qt::Key_F1);
    switch (QtKey) {
    case Qt::Key_Backspace:
        return VK_BACK;
    case Qt::Key_Tab:
        return VK_TAB;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return VK_RETURN;
    case Qt::Key_Shift:
        return VK_SHIFT;
    case Qt::Key_Control:
        return VK_CONTROL;
    case Qt::Key_Alt:
        return VK_MENU;
    case Qt::Key_Escape:
        return VK_ESCAPE;
    case Qt::Key_Space:
        return VK_SPACE;
    case Qt::Key_PageUp:
        return VK_PRIOR;
    case Qt::Key_PageDown:
        return VK_NEXT;
    case Qt::Key_End:
        return VK_END;
    case Qt::Key_Home:
        return VK_HOME;
    case Qt::Key_Left:
        return VK_LEFT;
    case Qt::Key_Up:
        return VK_UP;
    case Qt::Key_Right:
        return VK_RIGHT;
    case Qt::Key_Down:
        return VK_DOWN;
    case Qt::Key_Insert:
        return VK_INSERT;
    case Qt::Key_Delete:
        return VK_DELETE;
    case Qt::Key_Asterisk:
        return Keypad ? VK_MULTIPLY : 0;
    case Qt::Key_Plus:
        return Keypad ? VK_ADD : 0;
    case Qt::Key_Minus:
        return Keypad ? VK_SUBTRACT : 0;
    case Qt::Key_Slash:
        return Keypad ? VK_DIVIDE : 0;
    default:
        return 0;
    }
}
