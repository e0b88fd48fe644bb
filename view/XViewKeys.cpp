#include "view/XViewKeys.h"

#include <Qt>

int XfnVirtualKey(int qtKey)
{
    if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9))
        return qtKey; // both are upper-case ASCII
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24) return kKeyF1 + (qtKey - Qt::Key_F1);
    switch (qtKey) {
    case Qt::Key_Backspace:
        return kKeyBackspace;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return kKeyTab;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return kKeyReturn;
    case Qt::Key_Shift:
        return kKeyShift;
    case Qt::Key_Control:
        return kKeyControl;
    case Qt::Key_Alt:
        return kKeyAlt;
    case Qt::Key_Escape:
        return kKeyEscape;
    case Qt::Key_Space:
        return kKeySpace;
    case Qt::Key_PageUp:
        return kKeyPageUp;
    case Qt::Key_PageDown:
        return kKeyPageDown;
    case Qt::Key_End:
        return kKeyEnd;
    case Qt::Key_Home:
        return kKeyHome;
    case Qt::Key_Left:
        return kKeyLeft;
    case Qt::Key_Up:
        return kKeyUp;
    case Qt::Key_Right:
        return kKeyRight;
    case Qt::Key_Down:
        return kKeyDown;
    case Qt::Key_Insert:
        return kKeyInsert;
    case Qt::Key_Delete:
        return kKeyDelete;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return kKeyPlus; // one key on most keyboards
    case Qt::Key_Minus:
    case Qt::Key_Underscore:
        return kKeyMinus;
    default:
        return 0;
    }
}
