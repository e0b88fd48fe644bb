#include "foundation/base/XWarp2D.h"

#include "foundation/base/XSentinels.h"

#include <Eigen/QR>

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace {

constexpr int kAffine = 3;
constexpr int kPseudoAffine = 4;
constexpr int kSecond = 6;
constexpr int kThird = 10;

// points of a map figure that lie on a line do so up to the rounding of coordinates around 1e7
constexpr double kRankThreshold = 1e-9;

/// Centre and half extent of some coordinates.
struct tagExtent
{
    double center = 0.0;
    double half = 0.0;
};

/// @return false when a coordinate is not a number to compute with.
bool FindExtent(const double* values, int n, tagExtent& extent)
{
    double low = values[0];
    double high = values[0];
    for (int i = 0; i < n; ++i) {
        if (!XfnIsSet(values[i])) return false;
        low = std::min(low, values[i]);
        high = std::max(high, values[i]);
    }
    extent.center = low / 2 + high / 2;
    extent.half = high / 2 - low / 2;
    return true;
}

/// The terms in the order of the coefficients; `terms` is a constant wherever speed counts.
inline void FillTerms(double u, double v, int terms, double* t)
{
    t[0] = 1.0;
    t[1] = u;
    t[2] = v;
    if (terms == kAffine) return;
    t[3] = u * v;
    if (terms == kPseudoAffine) return;
    t[4] = u * u;
    t[5] = v * v;
    if (terms == kSecond) return;
    t[6] = u * t[4];
    t[7] = v * t[4];
    t[8] = u * t[5];
    t[9] = v * t[5];
}

} // namespace

int XWarp2D::GetOrder() const
{
    return m_terms == 0 ? 0 : m_terms == kAffine ? 1 : m_terms == kThird ? 3 : 2;
}

void XWarp2D::SetAffine(double a0, double a1, double a2, double b0, double b1, double b2)
{
    *this = XWarp2D();
    const double coefficients[] = {a0, a1, a2, b0, b1, b2};
    for (const double value : coefficients) {
        if (!std::isfinite(value)) return;
    }
    m_terms = kAffine;
    std::copy_n(coefficients, 3, m_x);
    std::copy_n(coefficients + 3, 3, m_y);
}

int XWarp2D::Fit(const double* srcX, const double* srcY, const double* dstX, const double* dstY,
                 int n, int order)
{
    if (order < 1 || order > 3) return 0;
    return FitTerms(srcX, srcY, dstX, dstY, n,
                    order == 1   ? kAffine
                    : order == 2 ? kSecond
                                 : kThird);
}

int XWarp2D::FitPseudoAffine(const double* srcX, const double* srcY, const double* dstX,
                             const double* dstY, int n)
{
    return FitTerms(srcX, srcY, dstX, dstY, n, kPseudoAffine);
}

int XWarp2D::FitTerms(const double* srcX, const double* srcY, const double* dstX,
                      const double* dstY, int n, int terms)
{
    if (!srcX || !srcY || !dstX || !dstY || n < terms) return 0;
    tagExtent from[2];
    tagExtent to[2];
    if (!FindExtent(srcX, n, from[0]) || !FindExtent(srcY, n, from[1]) ||
        !FindExtent(dstX, n, to[0]) || !FindExtent(dstY, n, to[1])) {
        return 0;
    }
    XWarp2D fit;
    fit.m_terms = terms;
    fit.m_centerX = from[0].center;
    fit.m_centerY = from[1].center;
    fit.m_scaleX = 1.0 / from[0].half;
    fit.m_scaleY = 1.0 / from[1].half;
    // no extent at all: the points lie on a line
    if (!std::isfinite(fit.m_scaleX) || !std::isfinite(fit.m_scaleY)) return 0;

    Eigen::MatrixXd design(n, terms);
    Eigen::MatrixXd target(n, 2);
    for (int i = 0; i < n; ++i) {
        double t[kMaxTerms];
        FillTerms((srcX[i] - fit.m_centerX) * fit.m_scaleX,
                  (srcY[i] - fit.m_centerY) * fit.m_scaleY, terms, t);
        for (int j = 0; j < terms; ++j)
            design(i, j) = t[j];
        target(i, 0) = dstX[i] - to[0].center;
        target(i, 1) = dstY[i] - to[1].center;
    }
    Eigen::ColPivHouseholderQR<Eigen::MatrixXd> qr(n, terms);
    qr.setThreshold(kRankThreshold);
    qr.compute(design);
    if (qr.rank() < terms) return 0;
    const Eigen::MatrixXd solution = qr.solve(target);
    if (!solution.allFinite()) return 0;
    for (int j = 0; j < terms; ++j) {
        fit.m_x[j] = solution(j, 0);
        fit.m_y[j] = solution(j, 1);
    }
    fit.m_x[0] += to[0].center;
    fit.m_y[0] += to[1].center;
    *this = fit;
    return 1;
}

void XWarp2D::Warp(double& x, double& y) const
{
    WarpPoints(&x, &y, 1);
}

void XWarp2D::WarpPoints(double* x, double* y, int n) const
{
    const auto run = [&](auto terms) {
        for (int i = 0; i < n; ++i) {
            double t[kMaxTerms];
            FillTerms((x[i] - m_centerX) * m_scaleX, (y[i] - m_centerY) * m_scaleY, terms(), t);
            double newX = m_x[0];
            double newY = m_y[0];
            for (int j = 1; j < terms(); ++j) {
                newX += m_x[j] * t[j];
                newY += m_y[j] * t[j];
            }
            x[i] = newX;
            y[i] = newY;
        }
    };
    switch (m_terms) {
    case kAffine:
        run(std::integral_constant<int, kAffine>());
        break;
    case kPseudoAffine:
        run(std::integral_constant<int, kPseudoAffine>());
        break;
    case kSecond:
        run(std::integral_constant<int, kSecond>());
        break;
    case kThird:
        run(std::integral_constant<int, kThird>());
        break;
    default:
        break;
    }
}

int XWarp2D::IsIdentity() const
{
    if (m_terms == 0) return 1;
    XWarp2D identity;
    identity.SetAffine(0, 1, 0, 0, 0, 1);
    return m_terms == kAffine && m_centerX == 0.0 && m_centerY == 0.0 && m_scaleX == 1.0 &&
           m_scaleY == 1.0 && std::equal(m_x, m_x + kAffine, identity.m_x) &&
           std::equal(m_y, m_y + kAffine, identity.m_y);
}

void XWarp2D::GetAffine(double (&a)[6]) const
{
    const double identity[6] = {0, 1, 0, 0, 0, 1};
    std::copy_n(identity, 6, a);
    if (m_terms != kAffine) return;
    a[1] = m_x[1] * m_scaleX;
    a[2] = m_x[2] * m_scaleY;
    a[0] = m_x[0] - a[1] * m_centerX - a[2] * m_centerY;
    a[4] = m_y[1] * m_scaleX;
    a[5] = m_y[2] * m_scaleY;
    a[3] = m_y[0] - a[4] * m_centerX - a[5] * m_centerY;
}

XWarp2D XWarp2D::InverseAffine() const
{
    XWarp2D inverse;
    if (m_terms != kAffine) return inverse;
    const double a1 = m_x[1] * m_scaleX;
    const double a2 = m_x[2] * m_scaleY;
    const double b1 = m_y[1] * m_scaleX;
    const double b2 = m_y[2] * m_scaleY;
    const double determinant = a1 * b2 - a2 * b1;
    // below this nothing but the rounding of the two products is left
    const double noise = 1e-14 * (std::fabs(a1 * b2) + std::fabs(a2 * b1));
    if (!(std::fabs(determinant) > noise) || !std::isfinite(determinant)) return inverse;
    inverse.m_terms = kAffine;
    // around the image of the centre, so that large offsets do not cancel
    inverse.m_centerX = m_x[0];
    inverse.m_centerY = m_y[0];
    inverse.m_x[0] = m_centerX;
    inverse.m_x[1] = b2 / determinant;
    inverse.m_x[2] = -a2 / determinant;
    inverse.m_y[0] = m_centerY;
    inverse.m_y[1] = -b1 / determinant;
    inverse.m_y[2] = a1 / determinant;
    return inverse;
}
