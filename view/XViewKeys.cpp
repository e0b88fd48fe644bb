#include "view/XViewKeys.h"

#include <Qt>

#include <algorithm>
#include <iterator>

namespace {

struct tagKeyNumber
{
    int qtKey;
    int number;
};

constexpr tagKeyNumber kKeypadKeys[] = {
    {Qt::Key_Asterisk, kKeyPadTimes},  {Qt::Key_Plus, kKeyPadPlus},
    {Qt::Key_Comma, kKeyPadSeparator}, {Qt::Key_Minus, kKeyPadMinus},
    {Qt::Key_Period, kKeyPadPoint},    {Qt::Key_Slash, kKeyPadDivide},
};

constexpr tagKeyNumber kKeys[] = {
    {Qt::Key_Backspace, kKeyBackspace},
    {Qt::Key_Tab, kKeyTab},
    {Qt::Key_Backtab, kKeyTab},
    {Qt::Key_Clear, kKeyClear},
    {Qt::Key_Return, kKeyReturn},
    {Qt::Key_Enter, kKeyReturn},
    {Qt::Key_Shift, kKeyShift},
    {Qt::Key_Control, kKeyControl},
    {Qt::Key_Alt, kKeyAlt},
    {Qt::Key_AltGr, kKeyAlt},
    {Qt::Key_Pause, kKeyPause},
    {Qt::Key_CapsLock, kKeyCapsLock},
    {Qt::Key_Hangul, kKeyHangul},
    {Qt::Key_Hangul_Hanja, kKeyHanja},
    {Qt::Key_Escape, kKeyEscape},
    {Qt::Key_Space, kKeySpace},
    {Qt::Key_PageUp, kKeyPageUp},
    {Qt::Key_PageDown, kKeyPageDown},
    {Qt::Key_End, kKeyEnd},
    {Qt::Key_Home, kKeyHome},
    {Qt::Key_Left, kKeyLeft},
    {Qt::Key_Up, kKeyUp},
    {Qt::Key_Right, kKeyRight},
    {Qt::Key_Down, kKeyDown},
    {Qt::Key_Print, kKeyPrint},
    {Qt::Key_Insert, kKeyInsert},
    {Qt::Key_Delete, kKeyDelete},
    {Qt::Key_Menu, kKeyMenu},
    {Qt::Key_NumLock, kKeyNumLock},
    {Qt::Key_ScrollLock, kKeyScrollLock},
    {Qt::Key_ParenRight, '0'},
    {Qt::Key_Exclam, '1'},
    {Qt::Key_At, '2'},
    {Qt::Key_NumberSign, '3'},
    {Qt::Key_Dollar, '4'},
    {Qt::Key_Percent, '5'},
    {Qt::Key_AsciiCircum, '6'},
    {Qt::Key_Ampersand, '7'},
    {Qt::Key_Asterisk, '8'},
    {Qt::Key_ParenLeft, '9'},
    {Qt::Key_Semicolon, kKeySemicolon},
    {Qt::Key_Colon, kKeySemicolon},
    {Qt::Key_Equal, kKeyPlus},
    {Qt::Key_Plus, kKeyPlus},
    {Qt::Key_Comma, kKeyComma},
    {Qt::Key_Less, kKeyComma},
    {Qt::Key_Minus, kKeyMinus},
    {Qt::Key_Underscore, kKeyMinus},
    {Qt::Key_Period, kKeyPeriod},
    {Qt::Key_Greater, kKeyPeriod},
    {Qt::Key_Slash, kKeySlash},
    {Qt::Key_Question, kKeySlash},
    {Qt::Key_QuoteLeft, kKeyBackquote},
    {Qt::Key_AsciiTilde, kKeyBackquote},
    {Qt::Key_BracketLeft, kKeyBracketLeft},
    {Qt::Key_BraceLeft, kKeyBracketLeft},
    {Qt::Key_Backslash, kKeyBackslash},
    {Qt::Key_Bar, kKeyBackslash},
    {Qt::Key_BracketRight, kKeyBracketRight},
    {Qt::Key_BraceRight, kKeyBracketRight},
    {Qt::Key_Apostrophe, kKeyQuote},
    {Qt::Key_QuoteDbl, kKeyQuote},
};

template <std::size_t count>
int Find(const tagKeyNumber (&table)[count], int qtKey)
{
    const auto* found = std::find_if(std::begin(table), std::end(table),
                                     [=](const tagKeyNumber& row) { return row.qtKey == qtKey; });
    return found == std::end(table) ? 0 : found->number;
}

} // namespace

int XfnVirtualKey(int qtKey, int isKeypad)
{
    const bool isDigit = qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9;
    if (isKeypad) {
        if (isDigit) return kKeyPad0 + (qtKey - Qt::Key_0);
        if (const int number = Find(kKeypadKeys, qtKey)) return number;
    }
    if (isDigit || (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z)) return qtKey; // upper-case ASCII
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24) return kKeyF1 + (qtKey - Qt::Key_F1);
    return Find(kKeys, qtKey);
}
