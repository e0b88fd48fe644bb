#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"
#include "foundation/base/XLineStyle.h"

#include <QPoint>
#include <QRegion>

class QPainter;

/// The rectangle that a tool pulls open with the pointer. It lies over the finished picture and
/// belongs to no buffer, so moving it draws nothing else anew.
///
/// One pixel wide, by exclusive or with a mask that changes every channel by 65 at least: it is
/// seen on any picture, also where that has its colour. Device pixels of the view.
/// Threads: user interface only.
class XAPI XGVRubberBand
{
public:
    static constexpr tagXColor kGreen = 65280;

    void Show(const QPoint& from, const QPoint& to, tagXColor color = kGreen);
    void Hide() { m_isShown = false; }
    int IsShown() const { return m_isShown; }
    const QPoint& GetFrom() const { return m_from; }
    const QPoint& GetTo() const { return m_to; }

    /// The pixels that the band covers: its four sides. Empty while nothing is shown.
    QRegion GetRegion() const;
    /// Draws the band over what the painter's device holds, which must have 32-bit pixels; a band
    /// that is not shown draws nothing.
    /// @param painter  its unit must be one device pixel; its composition mode is another after
    void Paint(QPainter& painter) const;

private:
    QRect GetRect() const;

    QPoint m_from;
    QPoint m_to;
    tagXColor m_color = kGreen;
    tagXLineStyle m_style{tagXLineStyle::kRubberBand};
    bool m_isShown = false;
};
