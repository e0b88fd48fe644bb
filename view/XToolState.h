#pragma once

#include "foundation/base/XVector3.h"
#include "foundation/vector/XHitFlag.h"

#include <QPoint>

/// What a tool in progress remembers between two events of a view.
struct tagXToolState
{
    /// World points.
    tagXVector3 anchor{0, 0, 0};
    tagXVector3 pointer{0, 0, 0};
    tagXVector3 press{0, 0, 0};
    tagXVector3 release{0, 0, 0};
    /// Device pixels.
    QPoint start;
    QPoint previous;
    QPoint current;
    QPoint panReference;
    tagXHitFlag hit;      ///< the last hit; index -1 is none
    int isButtonDrag = 0; ///< the left button is down on what was hit

    tagXToolState() { hit.index = -1; }

    /// As at a change of mode: pixels and the x and y of anchor and pointer, but not their z.
    void Restart()
    {
        start = previous = current = QPoint();
        anchor.x = anchor.y = pointer.x = pointer.y = 0.0;
    }
};
