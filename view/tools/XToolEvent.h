#pragma once

#include "view/XViewKeys.h"

#include <QPoint>

/// One message of the pointer as a tool sees it, converted once.
struct tagXToolEvent
{
    unsigned message = 0; ///< XInputMessage
    unsigned flags = 0;   ///< XInputFlag, as the event had them
    QPoint pixel;         ///< device pixels of the view; of the wheel, of the screen
    double worldX = 0;    ///< of `pixel`, at the mapping of the moment
    double worldY = 0;

    /// The left button and nothing else.
    int IsLeftDrag() const { return flags == kFlagLeft; }
    int IsCtrl() const { return (flags & kFlagCtrl) != 0; }
    int IsShift() const { return (flags & kFlagShift) != 0; }
};
