#include "foundation/raster/XBandGeometry.h"

#include "foundation/base/XSentinels.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

constexpr int kBorderSteps = 32;
constexpr int kGridSteps = 20;
constexpr double kReturn = 0.01; // pixels; far below what drawing and reading tell apart

bool AreFinite(const double* values, int n)
{
    return std::all_of(values, values + n, [](double v) { return XfnIsSet(v) != 0; });
}

} // namespace

XBandGeometry::XBandGeometry()
{
    SetNorthUp(0.0, 0.0, 1.0, 1.0);
    m_isGeoreferenced = 0;
}

int XBandGeometry::SetNorthUp(double ulX, double ulY, double xPixelSize, double yPixelSize)
{
    const double numbers[] = {ulX, ulY, xPixelSize, yPixelSize, 1.0 / xPixelSize, 1.0 / yPixelSize};
    if (!AreFinite(numbers, 6) || !(xPixelSize > 0.0) || !(yPixelSize > 0.0)) return 0;
    m_pixelToWorld.SetAffine(ulX, xPixelSize, 0.0, ulY, 0.0, -yPixelSize);
    m_worldToPixel.SetAffine(-ulX / xPixelSize, 1.0 / xPixelSize, 0.0, ulY / yPixelSize, 0.0,
                             -1.0 / yPixelSize);
    m_ulX = ulX;
    m_ulY = ulY;
    m_xPixelSize = xPixelSize;
    m_yPixelSize = yPixelSize;
    m_isGeoreferenced = 1;
    m_isNorthUp = 1;
    return 1;
}

int XBandGeometry::SetTransform(const double (&t)[6], int width, int height, XString& message)
{
    *this = XBandGeometry();
    if (!AreFinite(t, 6)) {
        message = "Its georeference holds numbers that are not finite and is not used.";
        return 0;
    }
    const double determinant = t[1] * t[5] - t[2] * t[4];
    const double scale = std::fabs(t[1] * t[5]) + std::fabs(t[2] * t[4]);
    if (!(std::fabs(determinant) > 1e-12 * scale)) {
        message = "Its georeference has a pixel size of zero and is not used.";
        return 0;
    }
    if (t[2] == 0.0 && t[4] == 0.0 && t[1] > 0.0 && t[5] < 0.0) {
        if (SetNorthUp(t[0] + t[1] / 2, t[3] + t[5] / 2, t[1], -t[5])) return 1;
        message = "Its georeference has a pixel size beyond all bounds and is not used.";
        return 0;
    }
    XBandGeometry made;
    const double x0 = t[0] + t[1] / 2 + t[2] / 2;
    const double y0 = t[3] + t[4] / 2 + t[5] / 2;
    made.m_pixelToWorld.SetAffine(x0, t[1], t[2], y0, t[4], t[5]);
    made.m_worldToPixel = made.m_pixelToWorld.InverseAffine();
    if (!made.m_pixelToWorld.IsValid() || !made.m_worldToPixel.IsValid()) {
        message = "Its georeference has no inverse and is not used.";
        return 0;
    }
    made.m_isGeoreferenced = 1;
    made.m_isNorthUp = 0;
    made.SetSummary();
    if (t[2] == 0.0 && t[4] == 0.0) {
        double left, right, bottom, top;
        made.GetBox(0.0, 0.0, width - 1.0, height - 1.0, left, right, bottom, top);
        made.m_ulX = left;
        made.m_ulY = top;
    }
    *this = made;
    return 1;
}

int XBandGeometry::SetControlPoints(const std::vector<tagXGCP>& all, int width, int height,
                                    XString& message)
{
    *this = XBandGeometry();
    std::vector<tagXGCP> points;
    std::copy_if(all.begin(), all.end(), std::back_inserter(points),
                 [](const tagXGCP& p) { return p.use != 0; });
    const std::size_t count = points.size();
    for (int order = count >= 16 ? 3 : count >= 9 ? 2 : 1; order >= 1; --order)
        if (FitOrder(points, width, height, order)) return 1;
    message = "Its ground control points do not determine where the image lies and are not used.";
    return 0;
}

int XBandGeometry::SetWarps(const XWarp2D& worldToPixel, const XWarp2D& pixelToWorld, double ulX,
                            double ulY, double xPixelSize, double yPixelSize)
{
    const double numbers[] = {ulX, ulY, xPixelSize, yPixelSize};
    if (!AreFinite(numbers, 4) || !(xPixelSize > 0.0) || !(yPixelSize > 0.0)) return 0;
    const XWarp2D forward = pixelToWorld.IsValid() ? pixelToWorld : worldToPixel.InverseAffine();
    XWarp2D inverse = worldToPixel.IsValid() ? worldToPixel : pixelToWorld.InverseAffine();
    if (!forward.IsValid() || !inverse.IsValid()) return 0;
    if (!forward.IsAffine() && !inverse.IsAffine()) inverse.RefineAsInverseOf(forward);
    m_pixelToWorld = forward;
    m_worldToPixel = inverse;
    m_ulX = ulX;
    m_ulY = ulY;
    m_xPixelSize = xPixelSize;
    m_yPixelSize = yPixelSize;
    m_isGeoreferenced = 1;
    m_isNorthUp = 0;
    return 1;
}

int XBandGeometry::FitOrder(const std::vector<tagXGCP>& points, int width, int height, int order)
{
    std::vector<double> px, py, wx, wy;
    for (const tagXGCP& p : points) {
        px.push_back(p.pixelX);
        py.push_back(p.pixelY);
        wx.push_back(p.worldX);
        wy.push_back(p.worldY);
    }
    XWarp2D forward;
    XWarp2D inverse;
    if (!forward.Fit(px.data(), py.data(), wx.data(), wy.data(), static_cast<int>(px.size()),
                     order))
        return 0;
    if (order == 1) {
        inverse = forward.InverseAffine();
    } else {
        std::vector<double> gx, gy, hx, hy;
        for (int j = 0; j <= kGridSteps; ++j) {
            for (int i = 0; i <= kGridSteps; ++i) {
                double x = -0.5 + static_cast<double>(width) * i / kGridSteps;
                double y = -0.5 + static_cast<double>(height) * j / kGridSteps;
                gx.push_back(x);
                gy.push_back(y);
                forward.Warp(x, y);
                hx.push_back(x);
                hy.push_back(y);
            }
        }
        if (!inverse.Fit(hx.data(), hy.data(), gx.data(), gy.data(), static_cast<int>(gx.size()),
                         3))
            return 0;
        inverse.RefineAsInverseOf(forward);
        for (std::size_t i = 0; i < gx.size(); ++i) {
            inverse.Warp(hx[i], hy[i]);
            if (!(std::fabs(hx[i] - gx[i]) <= kReturn) || !(std::fabs(hy[i] - gy[i]) <= kReturn))
                return 0;
        }
    }
    if (!inverse.IsValid()) return 0;
    m_pixelToWorld = forward;
    m_worldToPixel = inverse;
    m_isGeoreferenced = 1;
    m_isNorthUp = 0;
    SetSummary();
    return XfnIsSet(m_xPixelSize) && XfnIsSet(m_yPixelSize) && m_xPixelSize > 0 && m_yPixelSize > 0;
}

void XBandGeometry::SetSummary()
{
    double x = 0.0, y = 0.0;
    m_pixelToWorld.Warp(x, y);
    m_ulX = x;
    m_ulY = y;
    double rightX = 1.0, rightY = 0.0, downX = 0.0, downY = 1.0;
    m_pixelToWorld.Warp(rightX, rightY);
    m_pixelToWorld.Warp(downX, downY);
    m_xPixelSize = std::hypot(rightX - x, rightY - y);
    m_yPixelSize = std::hypot(downX - x, downY - y);
}

void XBandGeometry::GetBox(double x0, double y0, double x1, double y1, double& left, double& right,
                           double& bottom, double& top) const
{
    left = bottom = kXNotSet;
    right = top = kXNoData;
    const auto take = [&](double x, double y) {
        m_pixelToWorld.Warp(x, y);
        left = std::min(left, x);
        right = std::max(right, x);
        bottom = std::min(bottom, y);
        top = std::max(top, y);
    };
    const int steps = m_pixelToWorld.IsAffine() ? 1 : kBorderSteps;
    for (int i = 0; i <= steps; ++i) {
        const double x = x0 + (x1 - x0) * i / steps;
        const double y = y0 + (y1 - y0) * i / steps;
        take(x, y0);
        take(x, y1);
        take(x0, y);
        take(x1, y);
    }
}

void XBandGeometry::GetOuterBox(int width, int height, double& left, double& right, double& bottom,
                                double& top) const
{
    GetBox(-0.5, -0.5, width - 0.5, height - 0.5, left, right, bottom, top);
}

void XBandGeometry::GetBoundRect(int width, int height, double& left, double& right, double& bottom,
                                 double& top) const
{
    const double halfX = width > 1 ? 0.0 : 0.5;
    const double halfY = height > 1 ? 0.0 : 0.5;
    GetBox(-halfX, -halfY, width - 1 + halfX, height - 1 + halfY, left, right, bottom, top);
}
