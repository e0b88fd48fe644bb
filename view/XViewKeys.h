#pragma once

#include "foundation/base/XApi.h"

/// Numbers of the mouse and key messages that tools see, and how their parameters are packed.
enum XInputMessage : unsigned {
    kMsgSetCursor = 32,
    kMsgKeyDown = 256,
    kMsgKeyUp = 257,
    kMsgMouseMove = 512,
    kMsgLButtonDown = 513,
    kMsgLButtonUp = 514,
    kMsgLButtonDblClk = 515,
    kMsgRButtonDown = 516,
    kMsgRButtonUp = 517,
    kMsgRButtonDblClk = 518,
    kMsgMouseWheel = 522
};

/// Button and key state bits of a mouse message.
enum XInputFlag : unsigned {
    kFlagLeft = 1,
    kFlagRight = 2,
    kFlagShift = 4,
    kFlagCtrl = 8,
    kFlagMiddle = 16
};

/// The virtual key number of a Qt::Key; 0 for a key without one.
///
/// A number names the key, not the sign on it: letters and digits are their upper-case ASCII code,
/// punctuation has the numbers 186 to 192 and 219 to 222, and what Shift makes of a digit or of
/// punctuation (on a keyboard of the American or Korean layout) is mapped back to its key. The rest
/// are the numbers below.
/// @param isKeypad  non-zero for a key of the number block, whose digits are 96 to 105 and whose
///                  operators 106 to 111
XAPI int XfnVirtualKey(int qtKey, int isKeypad = 0);

constexpr int kKeyBackspace = 8, kKeyTab = 9, kKeyClear = 12, kKeyReturn = 13, kKeyShift = 16,
              kKeyControl = 17, kKeyAlt = 18, kKeyPause = 19, kKeyCapsLock = 20, kKeyHangul = 21,
              kKeyHanja = 25, kKeyEscape = 27, kKeySpace = 32, kKeyPageUp = 33, kKeyPageDown = 34,
              kKeyEnd = 35, kKeyHome = 36, kKeyLeft = 37, kKeyUp = 38, kKeyRight = 39,
              kKeyDown = 40, kKeyPrint = 44, kKeyInsert = 45, kKeyDelete = 46, kKeyMenu = 93,
              kKeyPad0 = 96, kKeyPadTimes = 106, kKeyPadPlus = 107, kKeyPadSeparator = 108,
              kKeyPadMinus = 109, kKeyPadPoint = 110, kKeyPadDivide = 111, kKeyF1 = 112,
              kKeyNumLock = 144, kKeyScrollLock = 145, kKeySemicolon = 186, kKeyPlus = 187,
              kKeyComma = 188, kKeyMinus = 189, kKeyPeriod = 190, kKeySlash = 191,
              kKeyBackquote = 192, kKeyBracketLeft = 219, kKeyBackslash = 220,
              kKeyBracketRight = 221, kKeyQuote = 222;

/// A point as a message's second parameter carries it: signed 16-bit x low, y high.
constexpr long long XfnPackPoint(int x, int y)
{
    return static_cast<long long>((static_cast<unsigned>(y) & 0xFFFFu) << 16 |
                                  (static_cast<unsigned>(x) & 0xFFFFu));
}

constexpr int XfnPackedX(long long packed)
{
    return static_cast<short>(static_cast<unsigned long long>(packed) & 0xFFFFu);
}

constexpr int XfnPackedY(long long packed)
{
    return static_cast<short>(static_cast<unsigned long long>(packed) >> 16 & 0xFFFFu);
}
