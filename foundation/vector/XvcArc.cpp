#include "foundation/vector/XvcArc.h"

#include "foundation/vector/XVertexMath.h"

#include <cmath>
#include <numbers>

X_IMPLEMENT_CLASS(XvcArc, XvcArcObj)

void XvcArc::SetCreateMode(int mode)
{
    Touch();
    if (!SetLoadedMode(mode)) return;
    if (XfnIsUsable(m_ptStart) && XfnIsUsable(m_ptEnd)) DefineByPoints();
}

bool XvcArc::SetLoadedMode(int mode)
{
    if (mode < kBox || mode > kHalf) return false;
    m_createMode = mode;
    return true;
}

void XvcArc::DefineByPoints()
{
    XvcArcObj::DefineByPoints();
    if (m_createMode == kQuarter) {
        const double startDeg = m_ptStart.y < m_ptEnd.y ? 270.0 : 90.0;
        const double endDeg = m_ptEnd.x < m_ptStart.x ? 180.0 : 0.0;
        m_center = {m_ptStart.x, m_ptEnd.y, m_center.z};
        m_axisX *= 2.0;
        m_axisY *= 2.0;
        // of the two ways between these angles the one of a quarter
        const bool isForward = std::fmod(endDeg - startDeg + 360.0, 360.0) == 90.0;
        m_startDeg = isForward ? startDeg : endDeg;
        m_endDeg = isForward ? endDeg : startDeg;
    } else if (m_createMode == kHalf) {
        const double radius = std::hypot(m_axisX, m_axisY);
        m_axisX = radius;
        m_axisY = radius;
        m_startDeg = std::atan2(m_ptStart.y - m_center.y, m_ptStart.x - m_center.x) * 180.0 /
                     std::numbers::pi;
        m_endDeg = m_startDeg + 180.0;
    }
}
