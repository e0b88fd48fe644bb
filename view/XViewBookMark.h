#pragma once

#include "foundation/vector/XvcPoint.h"

class XBackBuffer;
class XVertBuffer;

/// The bookmark of a view: a cross that keeps its size of 15 pixels at any zoom.
///
/// It is not set until Set is called. Threads: user interface only.
class XAPI XViewBookMark
{
public:
    static constexpr int kSizePixels = 15;

    XViewBookMark();

    void Set(double x, double y, tagXColor color);
    void Clear();
    int IsSet() const { return m_point.IsSet(); }
    XvcPoint& GetPoint() { return m_point; }

    /// Records the mark, sized for the mapping of `target`; nothing when it is not set.
    void Record(XVertBuffer& buffer, const XBackBuffer& target);

private:
    XvcPoint m_point;
};
