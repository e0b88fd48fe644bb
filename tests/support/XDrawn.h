#pragma once

#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XVertBuffer.h"

/// A black surface of one world unit a pixel, whose lower left corner is (0, 0); y points up.
inline XBackBuffer MakeSurface(int width, int height)
{
    XBackBuffer buffer;
    buffer.Create(nullptr, 2);
    buffer.Resize(nullptr, width, height);
    buffer.SetWorldPerPixel(1.0, 1.0);
    buffer.SetWorldToCenter(width / 2.0, height / 2.0);
    return buffer;
}

/// What `add(buffer)` records.
template <class Add>
XVertBuffer Recorded(Add add, int isSmooth = 0)
{
    XVertBuffer buffer;
    buffer.SetSmooth(isSmooth);
    buffer.Start();
    add(buffer);
    buffer.End();
    return buffer;
}

/// The surface with that drawn on it.
template <class Add>
XBackBuffer Drawn(XBackBuffer surface, Add add, int isSmooth = 0)
{
    Recorded(add, isSmooth).Draw(&surface);
    return surface;
}
