#pragma once

#include "foundation/base/XApi.h"

#include <array>
#include <memory>

/// The numbers of an XWarp2D, for storing it exactly.
///
/// With u = (x - centerX) * scaleX and v = (y - centerY) * scaleY, x' is the sum of xCoeff[i] times
/// term i over the first `terms` of 1, u, v, uv, uu, vv, uuu, uuv, uvv, vvv, and y' likewise with
/// yCoeff. Terms 3 is affine, 4 pseudo affine, 6 and 10 are orders 2 and 3; 0 is not valid.
struct tagXWarpPolynomial
{
    static constexpr int kMaxTerms = 10;

    int terms = 0;
    double centerX = 0.0;
    double centerY = 0.0;
    double scaleX = 1.0;
    double scaleY = 1.0;
    std::array<double, kMaxTerms> xCoeff{}; ///< 0 from `terms` on
    std::array<double, kMaxTerms> yCoeff{};

    bool operator==(const tagXWarpPolynomial&) const = default;
};

/// A polynomial map of the plane, (x, y) to (x', y'), in whatever units its points have.
///
/// x' and y' are polynomials of order 1 (affine, 3 terms), 2 (6 terms) or 3 (10 terms), or the
/// pseudo affine form with the terms 1, x, y, xy.
/// Method of Fit: least squares by Householder QR with column pivoting (Golub and Van Loan, Matrix
/// Computations, 4th ed., 5.4.2) on coordinates moved and scaled to [-1, 1], so that map
/// coordinates of 1e7 keep their digits; the polynomial is also evaluated in scaled coordinates.
/// Accuracy: about 1e-15 of the target's extent times the condition of the point figure. Outside
/// the points of the fit a polynomial of order 2 or 3 grows without bound.
///
/// A plain value: copies are independent. Threads: reading from any thread.
class XAPI XWarp2D
{
public:
    /// Not valid; leaves points as they are.
    XWarp2D() = default;

    int IsValid() const { return m_polynomial.terms > 0; }
    /// 1, 2 or 3; 2 for the pseudo affine form, 0 when not valid.
    int GetOrder() const;
    int GetNumOfTerms() const { return m_polynomial.terms; }

    /// x' = a0 + a1 x + a2 y, y' = b0 + b1 x + b2 y, exactly so. A coefficient that is not finite
    /// makes the warp not valid.
    void SetAffine(double a0, double a1, double a2, double b0, double b1, double b2);

    /// The numbers of the warp; SetPolynomial makes the same warp of them, to the last bit.
    const tagXWarpPolynomial& GetPolynomial() const { return m_polynomial; }
    /// Coefficients beyond the terms are not looked at.
    /// @return 0 when the number of terms is none of 0, 3, 4, 6, 10 or a number is not finite; the
    ///         warp is then as it was
    int SetPolynomial(const tagXWarpPolynomial& polynomial);

    /// The best map of `n` points in the sense of least squares.
    /// @return 0 when the order is not 1..3, there are fewer points than terms, a coordinate is not
    ///         a number to compute with (NaN, infinity, kXNotSet), or the points do not determine
    ///         the terms (on a line, on a conic); the warp is then as it was.
    int Fit(const double* srcX, const double* srcY, const double* dstX, const double* dstY, int n,
            int order);
    /// The same for the pseudo affine form.
    int FitPseudoAffine(const double* srcX, const double* srcY, const double* dstX,
                        const double* dstY, int n);

    /// Makes this warp, which comes near the inverse of `forward` already, the inverse itself: points
    /// are moved on by Newton's method until `forward` leads back, to some 1e-7 of the extent that
    /// `forward` was fitted over or better. Where that does not come to rest within an eighth of that
    /// extent, as far outside of it, the point of before stands. For a `forward` of order 2 or 3; an
    /// affine one has InverseAffine. GetPolynomial goes on giving the numbers of before.
    /// Whatever gives this warp new numbers ends it. Cost: two or three evaluations more a point.
    void RefineAsInverseOf(const XWarp2D& forward);

    /// Maps a point in place.
    void Warp(double& x, double& y) const;
    void WarpPoint(double& x, double& y) const { Warp(x, y); }
    /// Maps `n` points in place, with the same results as Warp.
    void WarpPoints(double* x, double* y, int n) const;

    int IsIdentity() const; ///< 1 when every point stays exactly; so also when not valid
    int IsAffine() const { return m_polynomial.terms == 3; }
    /// a0, a1, a2, b0, b1, b2 of an affine warp as in SetAffine; the identity when it is not valid
    /// or not affine.
    void GetAffine(double (&a)[6]) const;

    /// The inverse of an affine warp; not valid when this one is not affine or is singular.
    XWarp2D InverseAffine() const;

private:
    int FitTerms(const double* srcX, const double* srcY, const double* dstX, const double* dstY,
                 int n, int terms);

    tagXWarpPolynomial m_polynomial;
    std::shared_ptr<const tagXWarpPolynomial> m_forward; ///< what this is refined as the inverse of
};
