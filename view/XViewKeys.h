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

/// The virtual key number of a Qt::Key: letters and digits are their upper-case ASCII code, the
/// rest are the numbers below; 0 for a key without one.
XAPI int XfnVirtualKey(int qtKey);

constexpr int kKeyBackspace = 8, kKeyTab = 9, kKeyReturn = 13, kKeyShift = 16, kKeyControl = 17,
              kKeyAlt = 18, kKeyEscape = 27, kKeySpace = 32, kKeyPageUp = 33, kKeyPageDown = 34,
              kKeyEnd = 35, kKeyHome = 36, kKeyLeft = 37, kKeyUp = 38, kKeyRight = 39,
              kKeyDown = 40, kKeyInsert = 45, kKeyDelete = 46, kKeyF1 = 112, kKeyPlus = 187,
              kKeyMinus = 189;

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
