#include "foundation/vector/XvcArcObj.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"

#include <cmath>

X_IMPLEMENT_CLASS(XvcArcObj, XvcEllipseObj)

void XvcArcObj::GetAngle(double& startDeg, double& endDeg) const
{
    startDeg = m_startDeg;
    endDeg = m_endDeg;
}

void XvcArcObj::SetAngle(double startDeg, double endDeg)
{
    Touch();
    if (!std::isfinite(startDeg) || !std::isfinite(endDeg)) return;
    m_startDeg = startDeg;
    m_endDeg = endDeg;
}

void XvcArcObj::GetSweep(double& startDeg, double& sweepDeg) const
{
    startDeg = std::fmod(m_startDeg, 360.0);
    sweepDeg = std::fmod(std::fmod(m_endDeg, 360.0) - startDeg, 360.0);
    if (sweepDeg <= 0.0) sweepDeg += 360.0;
}

void XvcArcObj::StoreOwn(XArchive& archive) const
{
    archive << m_startDeg << m_endDeg << GetMode();
}

void XvcArcObj::LoadOwn(XArchive& archive)
{
    double startDeg = 0.0, endDeg = 0.0;
    int mode = 0;
    archive >> startDeg >> endDeg >> mode;
    if (!std::isfinite(startDeg) || !std::isfinite(endDeg) || !SetLoadedMode(mode)) {
        throw XFileException(XFileException::kInvalidFile);
    }
    SetAngle(startDeg, endDeg);
}
