#include "foundation/raster/XExactWay.h"

#include "foundation/raster/XDMBand.h"
#include "foundation/reference/XInterProjWarp.h"

#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// What the coordinate library could not carry over to NaN, longitudes towards a middle.
void Arrange(const std::vector<int>& ok, double middle, double turn, double* x, double* y)
{
    for (std::size_t i = 0; i < ok.size(); ++i) {
        x[i] = ok[i] ? XfnTurnTowards(x[i], middle, turn) : kNaN;
        y[i] = ok[i] ? y[i] : kNaN;
    }
}

} // namespace

XExactWay::XExactWay(const XDMBand& band, const XSpatialReference& target)
    : m_width(band.GetXSize()),
      m_height(band.GetYSize()),
      m_worldToPixel(band.GetWorldToPixel()),
      m_pixelToWorld(band.GetPixelToWorld()),
      m_own(*band.GetSR()),
      m_target(target),
      m_ownTurn(XfnGetWholeTurn(m_own)),
      m_targetTurn(XfnGetWholeTurn(target)),
      m_toTarget(m_own, target),
      m_toOwn(target, m_own)
{
    m_ownMiddle = (m_width - 1) * 0.5;
    double y = (m_height - 1) * 0.5;
    m_pixelToWorld.Warp(m_ownMiddle, y);
    if (IsValid() && m_targetTurn > 0.0) FindTargetMiddle();
}

/// The longitude of the middle pixel, or of the first place beside it that has one.
void XExactWay::FindTargetMiddle()
{
    for (const double part : {0.5, 0.375, 0.625, 0.25, 0.75, 0.125, 0.875, 0.0, 1.0}) {
        double x = (m_width - 1) * 0.5;
        double y = (m_height - 1) * part;
        m_pixelToWorld.Warp(x, y);
        if (!m_toTarget.TransformPt(x, y)) continue;
        m_targetMiddle = x;
        return;
    }
}

int XExactWay::IsFor(const XDMBand& band, const XSpatialReference& target) const
{
    return band.GetXSize() == m_width && band.GetYSize() == m_height &&
           band.GetWorldToPixel().GetPolynomial() == m_worldToPixel.GetPolynomial() &&
           band.GetPixelToWorld().GetPolynomial() == m_pixelToWorld.GetPolynomial() &&
           m_own.IsSame(band.GetSR()) && m_target.IsSame(&target);
}

void XExactWay::ToPixelsLocked(double* x, double* y, int n) const
{
    std::vector<int> ok(static_cast<std::size_t>(n));
    m_toOwn.Transform(n, x, y, nullptr, ok.data());
    Arrange(ok, m_ownMiddle, m_ownTurn, x, y);
    m_worldToPixel.WarpPoints(x, y, n);
}

void XExactWay::ToPixels(double* x, double* y, int n) const
{
    const std::lock_guard lock(m_mutex);
    ToPixelsLocked(x, y, n);
}

void XExactWay::ToWorld(double* x, double* y, int n) const
{
    constexpr double kBack = 0.5; // pixels
    const std::lock_guard lock(m_mutex);
    std::vector<double> backX(x, x + n), backY(y, y + n);
    const std::vector<double> pixelX(backX), pixelY(backY);
    m_pixelToWorld.WarpPoints(x, y, n);
    std::vector<int> ok(static_cast<std::size_t>(n));
    m_toTarget.Transform(n, x, y, nullptr, ok.data());
    Arrange(ok, m_targetMiddle, m_targetTurn, x, y);
    std::copy_n(x, n, backX.begin());
    std::copy_n(y, n, backY.begin());
    ToPixelsLocked(backX.data(), backY.data(), n);
    for (int i = 0; i < n; ++i) {
        if (std::hypot(backX[i] - pixelX[i], backY[i] - pixelY[i]) <= kBack) continue;
        x[i] = y[i] = kNaN;
    }
}
