#include "foundation/raster/XDrawMapping.h"

#include "foundation/raster/XReferenceWarp.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// Rounded to a multiple of a power of two, where doubles hold such multiples exactly.
double Snap(double value, double unit)
{
    return std::fabs(value) < 536870912.0 ? std::nearbyint(value / unit) * unit : value;
}

int AreFinite(std::initializer_list<double> values)
{
    return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

int IsAffineSurface(const XBufferMapping& surface)
{
    const XWarp2D& there = surface.GetWarpCoeffWorldToPixel();
    const XWarp2D& back = surface.GetWarpCoeffPixelToWorld();
    return !(there.IsValid() && back.IsValid()) || (there.IsAffine() && back.IsAffine());
}

int IsPlainSurface(const XBufferMapping& surface)
{
    return surface.GetRotationAngle() == 0.0 && !(surface.GetWarpCoeffWorldToPixel().IsValid() &&
                                                  surface.GetWarpCoeffPixelToWorld().IsValid());
}

} // namespace

void XDrawMapping::Set(const XBufferMapping& surface, const XChannelWarp& worldToBand,
                       const XChannelWarp& bandToWorld, int bandWidth, int bandHeight,
                       int levelWidth, int levelHeight)
{
    m_kind = Kind::None;
    m_bandStep = 0.0;
    if (!worldToBand.IsValid() || bandWidth < 1 || bandHeight < 1) return;
    m_surface = surface;
    m_worldToBand = worldToBand;
    m_scaleX = static_cast<double>(levelWidth) / bandWidth;
    m_scaleY = static_cast<double>(levelHeight) / bandHeight;
    m_middleX = surface.GetWidth() * 0.5;
    m_middleY = surface.GetHeight() * 0.5;
    if (!IsAffineSurface(surface) || !worldToBand.IsAffine()) {
        if (!bandToWorld.IsValid()) return;
        if (worldToBand.GetPlaced())
            std::copy_n(worldToBand.GetPlaced()->GetBox().begin(), 4, m_worldBox);
        else if (!XfnCalcWarpedBox(bandToWorld, -1.0, -1.0, bandWidth, bandHeight, m_worldBox))
            return;
        m_kind = Kind::General;
        CalcBandStep(bandToWorld, bandWidth, bandHeight);
        return;
    }

    // the world's steps to the right and down the surface, a pixel each
    double rightX = 0.0, rightY = 0.0, downX = 0.0, downY = 0.0;
    double centreX = 0.0, centreY = 0.0;
    surface.GetWorldToCenter(centreX, centreY);
    if (IsPlainSurface(surface)) {
        surface.GetWorldPerPixel(rightX, downY);
        downY = -downY;
    } else {
        const double reach = 4096.0; // far points: the difference of near ones has few digits
        rightX = m_middleX + reach, rightY = m_middleY;
        downX = m_middleX, downY = m_middleY + reach;
        surface.ConvPixelToWorldCoord(rightX, rightY);
        surface.ConvPixelToWorldCoord(downX, downY);
        rightX = (rightX - centreX) / reach, rightY = (rightY - centreY) / reach;
        downX = (downX - centreX) / reach, downY = (downY - centreY) / reach;
    }
    double a[6];
    worldToBand.GetAffine(a);
    double x = centreX, y = centreY;
    worldToBand.Warp(x, y);
    m_originX = Snap((x + 0.5) * m_scaleX, 0x1p-24);
    m_originY = Snap((y + 0.5) * m_scaleY, 0x1p-24);
    m_stepXX = Snap((a[1] * rightX + a[2] * rightY) * m_scaleX, 0x1p-44);
    m_stepXY = Snap((a[1] * downX + a[2] * downY) * m_scaleX, 0x1p-44);
    m_stepYX = Snap((a[4] * rightX + a[5] * rightY) * m_scaleY, 0x1p-44);
    m_stepYY = Snap((a[4] * downX + a[5] * downY) * m_scaleY, 0x1p-44);
    if (!AreFinite({m_originX, m_originY, m_stepXX, m_stepXY, m_stepYX, m_stepYY})) return;

    constexpr double kFlat = 1e-6; // pixels across the whole surface
    const int isFlat = std::fabs(m_stepXY) * surface.GetHeight() < kFlat &&
                       std::fabs(m_stepYX) * surface.GetWidth() < kFlat;
    m_kind = isFlat ? Kind::Separable : Kind::Affine;
    m_bandStep = std::min(std::hypot(m_stepXX / m_scaleX, m_stepYX / m_scaleY),
                          std::hypot(m_stepXY / m_scaleX, m_stepYY / m_scaleY));
}

double XDrawMapping::GetColumnAt(int x) const
{
    return m_originX + m_stepXX * (x + 0.5 - m_middleX);
}

double XDrawMapping::GetRowAt(int y) const
{
    return m_originY + m_stepYY * (y + 0.5 - m_middleY);
}

void XDrawMapping::GetExact(double x, double y, double& levelX, double& levelY) const
{
    m_surface.ConvPixelToWorldCoord(x, y);
    if (!(x >= m_worldBox[0] && x <= m_worldBox[1] && y >= m_worldBox[2] && y <= m_worldBox[3])) {
        levelX = levelY = kNaN;
        return;
    }
    m_worldToBand.Warp(x, y);
    levelX = (x + 0.5) * m_scaleX;
    levelY = (y + 0.5) * m_scaleY;
}

void XDrawMapping::GetPositions(int x, int y, int n, double* levelX, double* levelY) const
{
    if (m_kind == Kind::General) {
        GetGeneral(x, y, n, levelX, levelY);
        return;
    }
    const double down = y + 0.5 - m_middleY;
    const double atX = m_originX + m_stepXY * down;
    const double atY = m_originY + m_stepYY * down;
    for (int i = 0; i < n; ++i) {
        const double right = x + i + 0.5 - m_middleX;
        levelX[i] = atX + m_stepXX * right;
        levelY[i] = atY + m_stepYX * right;
    }
}

/// Exact at every sixteenth pixel, straight between where the middle of the gap agrees.
void XDrawMapping::GetGeneral(int x, int y, int n, double* levelX, double* levelY) const
{
    constexpr int kGap = 16;
    constexpr double kAgree = 1.0 / 64.0;
    const double atY = y + 0.5;
    double fromX = 0.0, fromY = 0.0;
    GetExact(x + 0.5, atY, fromX, fromY);
    for (int begin = 0; begin < n; begin += kGap) {
        double toX = 0.0, toY = 0.0, halfX = 0.0, halfY = 0.0;
        GetExact(x + begin + kGap + 0.5, atY, toX, toY);
        GetExact(x + begin + kGap / 2 + 0.5, atY, halfX, halfY);
        const int end = std::min(begin + kGap, n);
        const int isStraight = std::fabs((fromX + toX) * 0.5 - halfX) < kAgree &&
                               std::fabs((fromY + toY) * 0.5 - halfY) < kAgree;
        for (int i = begin; i < end; ++i) {
            if (!isStraight) {
                GetExact(x + i + 0.5, atY, levelX[i], levelY[i]);
                continue;
            }
            const double part = (i - begin) * (1.0 / kGap);
            levelX[i] = fromX + (toX - fromX) * part;
            levelY[i] = fromY + (toY - fromY) * part;
        }
        fromX = toX;
        fromY = toY;
    }
}

/// The finest step at places spread over the surface and at places spread over the band that the
/// surface shows: of a small picture on a large surface only the latter are sure to be met.
void XDrawMapping::CalcBandStep(const XChannelWarp& bandToWorld, int bandWidth, int bandHeight)
{
    double finest = 0.0;
    const auto look = [&](double x, double y) {
        double p[6];
        GetExact(x, y, p[0], p[1]);
        GetExact(x + 1.0, y, p[2], p[3]);
        GetExact(x, y + 1.0, p[4], p[5]);
        const double step =
            std::min(std::hypot((p[2] - p[0]) / m_scaleX, (p[3] - p[1]) / m_scaleY),
                     std::hypot((p[4] - p[0]) / m_scaleX, (p[5] - p[1]) / m_scaleY));
        if (step > 0.0 && (finest == 0.0 || step < finest)) finest = step;
    };
    for (const double partX : {0.1, 0.5, 0.9}) {
        for (const double partY : {0.1, 0.5, 0.9}) {
            look(2.0 * m_middleX * partX, 2.0 * m_middleY * partY);
            double x = (bandWidth - 1) * partX;
            double y = (bandHeight - 1) * partY;
            bandToWorld.Warp(x, y);
            m_surface.ConvWorldToPixelCoord(x, y);
            if (x >= 0.0 && y >= 0.0 && x <= 2.0 * m_middleX && y <= 2.0 * m_middleY) look(x, y);
        }
    }
    m_bandStep = finest;
}

namespace {

/// Widens a box by what a warp makes of a point. 0 when that is not finite.
int AddWarped(const XChannelWarp& warp, double x, double y, double (&box)[4])
{
    warp.Warp(x, y);
    if (!std::isfinite(x) || !std::isfinite(y)) return 0;
    box[0] = std::min(box[0], x);
    box[1] = std::max(box[1], x);
    box[2] = std::min(box[2], y);
    box[3] = std::max(box[3], y);
    return 1;
}

} // namespace

int XfnCalcWarpedBox(const XChannelWarp& warp, double x0, double y0, double x1, double y1,
                     double (&box)[4])
{
    constexpr int kSteps = 32;
    constexpr double kFar = std::numeric_limits<double>::infinity();
    double found[4] = {kFar, -kFar, kFar, -kFar};
    // the far ends are taken as they are, not computed
    const auto atX = [&](int i) { return i == kSteps ? x1 : x0 + (x1 - x0) * i / kSteps; };
    const auto atY = [&](int i) { return i == kSteps ? y1 : y0 + (y1 - y0) * i / kSteps; };
    for (int i = 0; i <= kSteps; ++i) {
        if (warp.GetPlaced()) {
            for (int j = 0; j <= kSteps; ++j)
                AddWarped(warp, atX(i), atY(j), found);
            continue;
        }
        const double border[4][2] = {{atX(i), y0}, {atX(i), y1}, {x0, atY(i)}, {x1, atY(i)}};
        for (const auto& point : border)
            if (!AddWarped(warp, point[0], point[1], found)) return 0;
    }
    if (!(found[0] <= found[1])) return 0;
    std::copy(std::begin(found), std::end(found), std::begin(box));
    return 1;
}

namespace {

/// The inverse of a warp's slopes at (x, y), measured over steps of reachX and reachY. Not valid where
/// the warp folds.
XWarp2D InvertSlopes(const XWarp2D& warp, double x, double y, double reachX, double reachY)
{
    double fx = x, fy = y, ax = x + reachX, ay = y, bx = x, by = y + reachY;
    warp.Warp(fx, fy);
    warp.Warp(ax, ay);
    warp.Warp(bx, by);
    XWarp2D slopes;
    slopes.SetAffine(0.0, (ax - fx) / reachX, (bx - fx) / reachY, 0.0, (ay - fy) / reachX,
                     (by - fy) / reachY);
    return slopes.InverseAffine();
}

/// Where to begin looking for the source of a point, and the world lengths of about a pixel.
struct tagStart
{
    double x = 0.0, y = 0.0;
    double reachX = 0.0, reachY = 0.0;

    bool SetReach(const XWarp2D& bandToWorld)
    {
        double a[6];
        bandToWorld.GetAffine(a);
        reachX = std::hypot(a[1], a[2]);
        reachY = std::hypot(a[4], a[5]);
        return bandToWorld.IsValid() && reachX > 0.0 && reachY > 0.0 && AreFinite({reachX, reachY});
    }
};

/// Moves the start to the point that a warp sends to (px, py), by Newton's method. 0 when it is not
/// found.
int FindSource(const XWarp2D& warp, double px, double py, tagStart& at)
{
    for (int step = 0; step < 40; ++step) {
        double fx = at.x, fy = at.y;
        warp.Warp(fx, fy);
        if (!AreFinite({fx, fy})) return 0;
        if (std::hypot(px - fx, py - fy) < 1e-7) return 1;
        double a[6];
        const XWarp2D slopes = InvertSlopes(warp, at.x, at.y, at.reachX, at.reachY);
        if (!slopes.IsValid()) return 0;
        slopes.GetAffine(a);
        at.x += a[1] * (px - fx) + a[2] * (py - fy);
        at.y += a[4] * (px - fx) + a[5] * (py - fy);
    }
    return 0;
}

/// The source of (px, py), from what the warp is like at the middle of the points it was fitted to.
int FindMiddle(const XWarp2D& warp, double px, double py, tagStart& at)
{
    const tagXWarpPolynomial& p = warp.GetPolynomial();
    at.x = p.centerX;
    at.y = p.centerY;
    XWarp2D slopes;
    slopes.SetAffine(0.0, p.xCoeff[1] * p.scaleX, p.xCoeff[2] * p.scaleY, 0.0,
                     p.yCoeff[1] * p.scaleX, p.yCoeff[2] * p.scaleY);
    return at.SetReach(slopes.InverseAffine()) && FindSource(warp, px, py, at);
}

/// The same from a rough inverse, for warps whose numbers tell nothing of where they are used.
int FindMiddleFrom(const XWarp2D& guess, const XWarp2D& warp, double px, double py, tagStart& at)
{
    double toX = px + 1.0, toY = py + 1.0;
    at.x = px;
    at.y = py;
    guess.Warp(at.x, at.y);
    guess.Warp(toX, toY);
    at.reachX = std::fabs(toX - at.x);
    at.reachY = std::fabs(toY - at.y);
    return guess.IsValid() && at.reachX > 0.0 && at.reachY > 0.0 &&
           AreFinite({at.reachX, at.reachY}) && FindSource(warp, px, py, at);
}

} // namespace

XWarp2D XfnInvertWarp(const XWarp2D& worldToBand, const XWarp2D& guess, int width, int height)
{
    if (!worldToBand.IsValid() || worldToBand.IsAffine()) return worldToBand.InverseAffine();
    XWarp2D inverse;
    const double middleX = (width - 1) * 0.5, middleY = (height - 1) * 0.5;
    tagStart middle;
    if (!FindMiddle(worldToBand, middleX, middleY, middle) &&
        !FindMiddleFrom(guess, worldToBand, middleX, middleY, middle))
        return inverse;
    const XWarp2D slopes =
        InvertSlopes(worldToBand, middle.x, middle.y, middle.reachX, middle.reachY);
    if (!middle.SetReach(slopes)) return inverse;
    double a[6];
    slopes.GetAffine(a);
    constexpr int kGrid = 9;
    double px[kGrid * kGrid], py[kGrid * kGrid], wx[kGrid * kGrid], wy[kGrid * kGrid];
    for (int k = 0; k < kGrid * kGrid; ++k) {
        px[k] = (width - 1.0) * (k % kGrid) / (kGrid - 1);
        py[k] = (height - 1.0) * (k / kGrid) / (kGrid - 1);
        tagStart at = middle;
        at.x += a[1] * (px[k] - middleX) + a[2] * (py[k] - middleY);
        at.y += a[4] * (px[k] - middleX) + a[5] * (py[k] - middleY);
        if (!FindSource(worldToBand, px[k], py[k], at)) return inverse;
        wx[k] = at.x;
        wy[k] = at.y;
    }
    if (!inverse.Fit(px, py, wx, wy, kGrid * kGrid, 3))
        inverse.Fit(px, py, wx, wy, kGrid * kGrid, 1);
    return inverse;
}
