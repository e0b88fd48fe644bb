#include "foundation/base/XWarp2D.h"

#include "foundation/base/XSentinels.h"

#include <Eigen/QR>

#include <algorithm>
#include <cmath>
#include <iterator>
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

/// Moves (x, y) to the point that a polynomial sends to (toX, toY); leaves it when that is not found.
void FindSource(const tagXWarpPolynomial& p, double toX, double toY, double& x, double& y)
{
    constexpr int kSteps = 6;
    constexpr double kReach = 0.25; // the points of the fit are 2 wide
    constexpr double kRest = 1e-12;
    constexpr double kNear = 1e-7;
    double u = (x - p.centerX) * p.scaleX;
    double v = (y - p.centerY) * p.scaleY;
    const double u0 = u, v0 = v;
    double moved = kReach;
    for (int step = 0; step < kSteps && moved > kRest; ++step) {
        double t[tagXWarpPolynomial::kMaxTerms];
        FillTerms(u, v, kThird, t);
        const double alongU[] = {0, 1, 0, v, 2 * u, 0, 3 * t[4], 2 * t[3], t[5], 0};
        const double alongV[] = {0, 0, 1, u, 0, 2 * v, 0, t[4], 2 * t[3], 3 * t[5]};
        double missX = toX, missY = toY, xu = 0.0, xv = 0.0, yu = 0.0, yv = 0.0;
        for (int j = 0; j < p.terms; ++j) {
            missX -= p.xCoeff[j] * t[j];
            missY -= p.yCoeff[j] * t[j];
            xu += p.xCoeff[j] * alongU[j];
            xv += p.xCoeff[j] * alongV[j];
            yu += p.yCoeff[j] * alongU[j];
            yv += p.yCoeff[j] * alongV[j];
        }
        const double determinant = xu * yv - xv * yu;
        const double du = (missX * yv - missY * xv) / determinant;
        const double dv = (missY * xu - missX * yu) / determinant;
        u += du;
        v += dv;
        moved = std::fabs(du) + std::fabs(dv);
        if (!(std::fabs(u - u0) + std::fabs(v - v0) <= kReach)) return; // NaN too
    }
    if (!(moved <= kNear)) return;
    x = u / p.scaleX + p.centerX;
    y = v / p.scaleY + p.centerY;
}

} // namespace

int XWarp2D::GetOrder() const
{
    const int terms = m_polynomial.terms;
    return terms == 0 ? 0 : terms == kAffine ? 1 : terms == kThird ? 3 : 2;
}

void XWarp2D::SetAffine(double a0, double a1, double a2, double b0, double b1, double b2)
{
    *this = XWarp2D();
    const double coefficients[] = {a0, a1, a2, b0, b1, b2};
    for (const double value : coefficients) {
        if (!std::isfinite(value)) return;
    }
    m_polynomial.terms = kAffine;
    std::copy_n(coefficients, 3, m_polynomial.xCoeff.begin());
    std::copy_n(coefficients + 3, 3, m_polynomial.yCoeff.begin());
}

int XWarp2D::SetPolynomial(const tagXWarpPolynomial& polynomial)
{
    const int terms = polynomial.terms;
    if (terms != 0 && terms != kAffine && terms != kPseudoAffine && terms != kSecond &&
        terms != kThird) {
        return 0;
    }
    tagXWarpPolynomial taken;
    if (terms > 0) {
        taken = polynomial;
        std::fill(taken.xCoeff.begin() + terms, taken.xCoeff.end(), 0.0);
        std::fill(taken.yCoeff.begin() + terms, taken.yCoeff.end(), 0.0);
    }
    const auto isFinite = [](double value) { return std::isfinite(value); };
    const double frame[] = {taken.centerX, taken.centerY, taken.scaleX, taken.scaleY};
    if (!std::all_of(std::begin(frame), std::end(frame), isFinite) ||
        !std::all_of(taken.xCoeff.begin(), taken.xCoeff.end(), isFinite) ||
        !std::all_of(taken.yCoeff.begin(), taken.yCoeff.end(), isFinite)) {
        return 0;
    }
    m_polynomial = taken;
    m_forward.reset();
    return 1;
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
    tagXWarpPolynomial fit;
    fit.terms = terms;
    fit.centerX = from[0].center;
    fit.centerY = from[1].center;
    fit.scaleX = 1.0 / from[0].half;
    fit.scaleY = 1.0 / from[1].half;
    // no extent at all: the points lie on a line
    if (!std::isfinite(fit.scaleX) || !std::isfinite(fit.scaleY)) return 0;

    Eigen::MatrixXd design(n, terms);
    Eigen::MatrixXd target(n, 2);
    for (int i = 0; i < n; ++i) {
        double t[tagXWarpPolynomial::kMaxTerms];
        FillTerms((srcX[i] - fit.centerX) * fit.scaleX, (srcY[i] - fit.centerY) * fit.scaleY, terms,
                  t);
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
        fit.xCoeff[j] = solution(j, 0);
        fit.yCoeff[j] = solution(j, 1);
    }
    fit.xCoeff[0] += to[0].center;
    fit.yCoeff[0] += to[1].center;
    m_polynomial = fit;
    m_forward.reset();
    return 1;
}

void XWarp2D::RefineAsInverseOf(const XWarp2D& forward)
{
    m_forward = std::make_shared<const tagXWarpPolynomial>(forward.m_polynomial);
}

void XWarp2D::Warp(double& x, double& y) const
{
    WarpPoints(&x, &y, 1);
}

void XWarp2D::WarpPoints(double* x, double* y, int n) const
{
    const tagXWarpPolynomial& p = m_polynomial;
    const tagXWarpPolynomial* const forward = m_forward.get();
    const auto run = [&](auto terms) {
        for (int i = 0; i < n; ++i) {
            const double toX = x[i], toY = y[i];
            double t[tagXWarpPolynomial::kMaxTerms];
            FillTerms((x[i] - p.centerX) * p.scaleX, (y[i] - p.centerY) * p.scaleY, terms(), t);
            double newX = p.xCoeff[0];
            double newY = p.yCoeff[0];
            for (int j = 1; j < terms(); ++j) {
                newX += p.xCoeff[j] * t[j];
                newY += p.yCoeff[j] * t[j];
            }
            x[i] = newX;
            y[i] = newY;
            if (forward) FindSource(*forward, toX, toY, x[i], y[i]);
        }
    };
    switch (p.terms) {
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
    if (m_polynomial.terms == 0) return 1;
    XWarp2D identity;
    identity.SetAffine(0, 1, 0, 0, 0, 1);
    return m_polynomial == identity.m_polynomial;
}

void XWarp2D::GetAffine(double (&a)[6]) const
{
    const double identity[6] = {0, 1, 0, 0, 0, 1};
    std::copy_n(identity, 6, a);
    const tagXWarpPolynomial& p = m_polynomial;
    if (p.terms != kAffine) return;
    a[1] = p.xCoeff[1] * p.scaleX;
    a[2] = p.xCoeff[2] * p.scaleY;
    a[0] = p.xCoeff[0] - a[1] * p.centerX - a[2] * p.centerY;
    a[4] = p.yCoeff[1] * p.scaleX;
    a[5] = p.yCoeff[2] * p.scaleY;
    a[3] = p.yCoeff[0] - a[4] * p.centerX - a[5] * p.centerY;
}

XWarp2D XWarp2D::InverseAffine() const
{
    XWarp2D inverse;
    const tagXWarpPolynomial& p = m_polynomial;
    if (p.terms != kAffine) return inverse;
    const double a1 = p.xCoeff[1] * p.scaleX;
    const double a2 = p.xCoeff[2] * p.scaleY;
    const double b1 = p.yCoeff[1] * p.scaleX;
    const double b2 = p.yCoeff[2] * p.scaleY;
    const double determinant = a1 * b2 - a2 * b1;
    // below this nothing but the rounding of the two products is left
    const double noise = 1e-14 * (std::fabs(a1 * b2) + std::fabs(a2 * b1));
    if (!(std::fabs(determinant) > noise) || !std::isfinite(determinant)) return inverse;
    tagXWarpPolynomial& to = inverse.m_polynomial;
    to.terms = kAffine;
    // around the image of the centre, so that large offsets do not cancel
    to.centerX = p.xCoeff[0];
    to.centerY = p.yCoeff[0];
    to.xCoeff[0] = p.centerX;
    to.xCoeff[1] = b2 / determinant;
    to.xCoeff[2] = -a2 / determinant;
    to.yCoeff[0] = p.centerY;
    to.yCoeff[1] = -b1 / determinant;
    to.yCoeff[2] = a1 / determinant;
    return inverse;
}
