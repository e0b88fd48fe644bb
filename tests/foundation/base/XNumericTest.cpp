#include "foundation/base/XMatrix.h"
#include "foundation/base/XMemory.h"
#include "foundation/base/XSentinels.h"
#include "foundation/base/XThreadSafeArr3.h"
#include "foundation/base/XWarp2D.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <numeric>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(XMatrix, ColumnsComeBeforeRows)
{
    const double a[] = {1, 2, 3, 4, 5, 6};                   // 2 rows of 3
    const double b[] = {1, 0, 2, 1, 0, 1, 1, 1, 2, 0, 0, 3}; // 3 rows of 4
    double c[8];
    ASSERT_TRUE(XfnMatrixMultiply(a, b, c, 3, 2, 4, 3));
    const double expected[] = {7, 2, 4, 12, 16, 5, 13, 27};
    EXPECT_TRUE(std::equal(c, c + 8, expected));
    EXPECT_FALSE(XfnMatrixMultiply(a, b, c, 2, 3, 4, 3));
    EXPECT_FALSE(XfnMatrixMultiply(a, b, c, 0, 2, 4, 0));
    double square[] = {1, 2, 3, 4};
    ASSERT_TRUE(XfnMatrixMultiply(square, square, square, 2, 2, 2, 2)); // onto itself
    EXPECT_TRUE(square[0] == 7 && square[1] == 10 && square[2] == 15 && square[3] == 22);
    double sum[6];
    ASSERT_TRUE(XfnMatrixAdd(a, a, sum, 3, 2) && XfnMatrixSubtract(sum, a, sum, 3, 2));
    EXPECT_TRUE(std::equal(sum, sum + 6, a));
}

TEST(XMatrix, InverseAndDeterminant)
{
    double m[] = {4, 7, 2, 6};
    double determinant = 0;
    ASSERT_TRUE(XfnMatrixInverse(m, 2, determinant));
    EXPECT_NEAR(determinant, 10, 1e-14);
    const double expected[] = {0.6, -0.7, -0.2, 0.4};
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(m[i], expected[i], 1e-15);

    double swap[] = {0, 1, 1, 0}; // needs pivoting
    ASSERT_TRUE(XfnMatrixInverse(swap, 2, determinant));
    EXPECT_EQ(determinant, -1);
    double one[] = {-4};
    ASSERT_TRUE(XfnMatrixInverse(one, 1, determinant));
    EXPECT_EQ(one[0], -0.25);
    // bands of very different scale, as in a covariance of reflectance and radiance
    double uneven[] = {1e-24, 0.5e-2, 0.5e-2, 1e20};
    ASSERT_TRUE(XfnMatrixInverse(uneven, 2, determinant));
    EXPECT_NEAR(determinant, 1e-4 - 0.25e-4, 1e-18);
    EXPECT_NEAR(uneven[0] / (1e20 / 0.75e-4), 1, 1e-13);
}

TEST(XMatrix, WhatHasNoInverseStays)
{
    const double kCases[][9] = {
        {1, 2, 3, 4, 5, 6, 7, 8, 9}, // rank 2, hidden by rounding
        {0, 0, 0, 1, 2, 3, 4, 5, 7}, // a row of zeros
        {1, 0, 2, 3, 0, 4, 5, 0, 6}, // a column of zeros
        {0, 0, 0, 0, 0, 0, 0, 0, 0},        {1, 0, 0, 0, kNan, 0, 0, 0, 1},
        {1, 0, 0, 0, HUGE_VAL, 0, 0, 0, 1},
    };
    int row = 0;
    for (const auto& matrix : kCases) {
        double m[9];
        std::copy_n(matrix, 9, m);
        double determinant = -1;
        EXPECT_FALSE(XfnMatrixInverse(m, 3, determinant)) << row;
        EXPECT_EQ(std::memcmp(m, matrix, sizeof m), 0) << row;
        EXPECT_TRUE(row < 4 ? std::fabs(determinant) < 1e-14 : std::isnan(determinant)) << row;
        ++row;
    }
    double zero = 0;
    double determinant = -1;
    EXPECT_FALSE(XfnMatrixInverse(&zero, 1, determinant));
    EXPECT_EQ(determinant, 0);
    EXPECT_FALSE(XfnMatrixInverse(nullptr, 3, determinant));
}

TEST(XMatrix, InverseTimesMatrixIsOne)
{
    const int n = 40;
    std::mt19937 random(5);
    std::uniform_real_distribution<double> uniform(-1, 1);
    std::vector<double> m(n * n);
    for (double& value : m)
        value = uniform(random);
    std::vector<double> inverse(m);
    std::vector<double> product(n * n);
    double determinant;
    ASSERT_TRUE(XfnMatrixInverse(inverse.data(), n, determinant));
    ASSERT_TRUE(XfnMatrixMultiply(m.data(), inverse.data(), product.data(), n, n, n, n));
    for (int i = 0; i < n * n; ++i)
        ASSERT_NEAR(product[i], i % (n + 1) == 0, 1e-11);
}

/// A grid of points in map coordinates, wide different from high.
struct tagPoints
{
    std::vector<double> x, y, toX, toY;

    explicit tagPoints(int columns = 6, int rows = 5)
    {
        for (int i = 0; i < columns * rows; ++i) {
            x.push_back(4.0e6 + 150.0 * (i % columns));
            y.push_back(-3.0e5 + 900.0 * (i / columns));
        }
    }
    template <class Map>
    void Fill(Map map)
    {
        toX.assign(x.begin(), x.end());
        toY.assign(y.begin(), y.end());
        for (std::size_t i = 0; i < x.size(); ++i)
            map(toX[i], toY[i]);
    }
    int Fit(XWarp2D& warp, int order) const
    {
        return warp.Fit(x.data(), y.data(), toX.data(), toY.data(), static_cast<int>(x.size()),
                        order);
    }
    double GetWorst(const XWarp2D& warp) const
    {
        double worst = 0;
        for (std::size_t i = 0; i < x.size(); ++i) {
            double px = x[i], py = y[i];
            warp.Warp(px, py);
            worst = std::max({worst, std::fabs(px - toX[i]), std::fabs(py - toY[i])});
        }
        return worst;
    }
};

TEST(XWarp2D, RecoversPolynomialsInMapCoordinates)
{
    for (int order = 1; order <= 3; ++order) {
        tagPoints points;
        points.Fill([&](double& x, double& y) {
            const double u = (x - 4.0e6) / 750;
            const double v = (y + 3.0e5) / 3600;
            x = 10 + 500 * u - 30 * v;
            y = 20 + 7 * u + 400 * v;
            if (order > 1) {
                x += 5 * u * v - 3 * u * u;
                y += 2 * v * v;
            }
            if (order > 2) {
                x += 1.5 * u * u * v + v * v * v;
                y += 0.5 * u * u * u - u * v * v;
            }
        });
        XWarp2D warp;
        ASSERT_TRUE(points.Fit(warp, order));
        EXPECT_EQ(warp.GetOrder(), order);
        EXPECT_LT(points.GetWorst(warp), 1e-8) << order; // pixels; coordinates carry 5e-10 m
        if (order > 1) {
            XWarp2D lower;
            ASSERT_TRUE(points.Fit(lower, order - 1));
            EXPECT_GT(points.GetWorst(lower), 0.1) << order; // the terms are really needed
        }
    }
}

TEST(XWarp2D, PseudoAffineIsBilinear)
{
    const double x[] = {0, 100, 0, 100};
    const double y[] = {0, 0, 50, 50};
    const double toX[] = {1, 9, 2, 12};
    const double toY[] = {5, 6, 25, 29};
    XWarp2D warp;
    ASSERT_TRUE(warp.FitPseudoAffine(x, y, toX, toY, 4));
    EXPECT_FALSE(warp.IsAffine());
    EXPECT_EQ(warp.GetNumOfTerms(), 4);
    double px = 50, py = 25;
    warp.WarpPoint(px, py);
    EXPECT_NEAR(px, 6, 1e-14);
    EXPECT_NEAR(py, 16.25, 1e-14);
    EXPECT_FALSE(warp.InverseAffine().IsValid());
    EXPECT_FALSE(warp.FitPseudoAffine(x, y, toX, toY, 3));
    EXPECT_EQ(warp.GetNumOfTerms(), 4); // a fit that fails leaves it
}

TEST(XWarp2D, AffineForthAndBack)
{
    XWarp2D warp;
    warp.SetAffine(4.0e6, 0.5, 0.1, -3.0e5, 0.2, -0.25);
    double a[6];
    warp.GetAffine(a);
    const double expected[] = {4.0e6, 0.5, 0.1, -3.0e5, 0.2, -0.25};
    EXPECT_TRUE(std::equal(a, a + 6, expected)); // kept exactly
    const XWarp2D inverse = warp.InverseAffine();
    ASSERT_TRUE(inverse.IsValid() && inverse.IsAffine());
    for (const auto& [x, y] : {std::pair{0.0, 0.0}, {-0.5, 1023.5}, {2e4, -3e4}}) {
        double px = x, py = y;
        warp.Warp(px, py);
        inverse.Warp(px, py);
        EXPECT_NEAR(px, x, 1e-8); // 4e6 holds 5e-10, divided by 0.145
        EXPECT_NEAR(py, y, 1e-8);
    }
    tagPoints points;
    points.Fill([](double& x, double& y) { x = 3 * x + y, y = 2 * y + 1; });
    XWarp2D fit;
    ASSERT_TRUE(points.Fit(fit, 1));
    fit.GetAffine(a);
    EXPECT_NEAR(a[1], 3, 1e-11);
    EXPECT_NEAR(a[2], 1, 1e-11);
    EXPECT_NEAR(a[4], 0, 1e-11);
    EXPECT_NEAR(a[3], 1, 1e-5); // extrapolated by 4e6 from an extent of 750
    double px = 4.0e6, py = -3.0e5;
    fit.Warp(px, py);
    fit.InverseAffine().Warp(px, py);
    EXPECT_NEAR(px, 4.0e6, 1e-8);
    EXPECT_NEAR(py, -3.0e5, 1e-8);
}

TEST(XWarp2D, RefusesWhatDoesNotDetermineIt)
{
    tagPoints points;
    points.Fill([](double&, double&) {});
    XWarp2D warp;
    EXPECT_FALSE(points.Fit(warp, 0));
    EXPECT_FALSE(points.Fit(warp, 4));
    for (const double bad : {kNan, HUGE_VAL, kXNotSet, kXNoData}) {
        tagPoints broken(points);
        broken.toY[7] = bad;
        EXPECT_FALSE(broken.Fit(warp, 1)) << bad;
    }
    EXPECT_FALSE(
        warp.Fit(points.x.data(), points.y.data(), points.toX.data(), points.toY.data(), 2, 1));
    tagPoints level(6, 1);
    level.Fill([](double&, double&) {});
    EXPECT_FALSE(level.Fit(warp, 1));
    tagPoints slanted;
    for (std::size_t i = 0; i < slanted.x.size(); ++i)
        slanted.y[i] = 0.3 * slanted.x[i];
    slanted.Fill([](double&, double&) {});
    EXPECT_FALSE(slanted.Fit(warp, 1));
    tagPoints circle; // a conic leaves one term of order 2 open
    for (std::size_t i = 0; i < circle.x.size(); ++i) {
        circle.x[i] = std::cos(0.2 * i);
        circle.y[i] = std::sin(0.2 * i);
    }
    circle.Fill([](double&, double&) {});
    EXPECT_TRUE(circle.Fit(warp, 1));
    EXPECT_FALSE(circle.Fit(warp, 2));
    EXPECT_EQ(warp.GetOrder(), 1);
}

TEST(XWarp2D, IdentityAndInvalid)
{
    XWarp2D warp;
    EXPECT_TRUE(!warp.IsValid() && warp.IsIdentity() && warp.GetOrder() == 0);
    double x = 3, y = 4;
    warp.Warp(x, y);
    EXPECT_TRUE(x == 3 && y == 4);
    warp.SetAffine(0, 1, 0, 0, 0, 1);
    EXPECT_TRUE(warp.IsValid() && warp.IsIdentity() && warp.InverseAffine().IsIdentity());
    warp.SetAffine(0, 1, 0, 1e-9, 0, 1);
    EXPECT_FALSE(warp.IsIdentity());
    warp.SetAffine(0, 1, 2, 0, 2, 4);
    EXPECT_FALSE(warp.InverseAffine().IsValid());
    warp.SetAffine(0, 1, kNan, 0, 2, 4);
    EXPECT_FALSE(warp.IsValid());
}

TEST(XWarp2D, ItsNumbersMakeTheSameWarp)
{
    tagPoints points;
    points.Fill([](double& x, double& y) {
        const double u = (x - 4.0e6) / 700.0;
        const double v = (y + 3.0e5) / 3000.0;
        x = 3.1 + 7.3 * u - 0.2 * v + 0.31 * u * v + 0.17 * u * u * v;
        y = -1.7 - 0.4 * u + 5.9 * v - 0.23 * v * v + 0.11 * v * v * v;
    });
    for (int terms : {0, 3, 4, 6, 10}) {
        SCOPED_TRACE(terms);
        XWarp2D warp;
        const int count = static_cast<int>(points.x.size());
        if (terms == 4) {
            ASSERT_TRUE(warp.FitPseudoAffine(points.x.data(), points.y.data(), points.toX.data(),
                                             points.toY.data(), count));
        } else if (terms > 0) {
            ASSERT_TRUE(points.Fit(warp, terms == 3 ? 1 : terms == 6 ? 2 : 3));
        }
        const tagXWarpPolynomial numbers = warp.GetPolynomial();
        ASSERT_EQ(numbers.terms, terms);
        XWarp2D again;
        again.SetAffine(1, 2, 3, 4, 5, 6);
        ASSERT_TRUE(again.SetPolynomial(numbers));
        EXPECT_EQ(again.GetOrder(), warp.GetOrder());
        EXPECT_EQ(again.GetPolynomial(), numbers);
        // the formula of the header, and the same bits both ways
        for (std::size_t i = 0; i < points.x.size(); i += 7) {
            double p[2] = {points.x[i], points.y[i]}, q[2] = {p[0], p[1]};
            const double u = (p[0] - numbers.centerX) * numbers.scaleX;
            const double v = (p[1] - numbers.centerY) * numbers.scaleY;
            const double t[] = {1,     u,         v,         u * v,     u * u,
                                v * v, u * u * u, u * u * v, u * v * v, v * v * v};
            const double byHand = std::inner_product(t, t + terms, numbers.xCoeff.begin(), 0.0);
            warp.Warp(p[0], p[1]);
            again.Warp(q[0], q[1]);
            EXPECT_TRUE(p[0] == q[0] && p[1] == q[1]);
            EXPECT_NEAR(p[0], terms > 0 ? byHand : points.x[i], 1e-12) << "values of about 10";
        }
    }
}

TEST(XWarp2D, LyingNumbersLeaveItAsItWas)
{
    const double kInf = std::numeric_limits<double>::infinity();
    const struct
    {
        const char* what;
        void (*spoil)(tagXWarpPolynomial& p, double inf);
        int isTaken;
    } kCases[] = {
        {"good", [](tagXWarpPolynomial&, double) {}, 1},
        {"terms of no form", [](tagXWarpPolynomial& p, double) { p.terms = 5; }, 0},
        {"terms beyond the arrays", [](tagXWarpPolynomial& p, double) { p.terms = 1000; }, 0},
        {"terms below 0", [](tagXWarpPolynomial& p, double) { p.terms = -3; }, 0},
        {"a scale that is no number", [](tagXWarpPolynomial& p, double) { p.scaleY = kNan; }, 0},
        {"an endless centre", [](tagXWarpPolynomial& p, double inf) { p.centerX = inf; }, 0},
        {"a coefficient of y", [](tagXWarpPolynomial& p, double inf) { p.yCoeff[2] = -inf; }, 0},
        {"one beyond the terms", [](tagXWarpPolynomial& p, double) { p.xCoeff[3] = kNan; }, 1},
        {"no warp", [](tagXWarpPolynomial& p, double inf) { p = {0, inf, inf, 0, 0, {}, {}}; }, 1},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.what);
        XWarp2D warp;
        warp.SetAffine(7, 2, 0, 8, 0, 3);
        tagXWarpPolynomial numbers = warp.GetPolynomial();
        numbers.centerX = 1.0;
        row.spoil(numbers, kInf);
        EXPECT_EQ(warp.SetPolynomial(numbers), row.isTaken);
        double x = 1, y = 1;
        warp.Warp(x, y);
        const double expected = !row.isTaken ? 9.0 : numbers.terms ? 7.0 : 1.0;
        EXPECT_EQ(x, expected);
        EXPECT_FALSE(std::isnan(y));
    }
}

TEST(XThreadSafeArr3, SizesAndPlaces)
{
    XThreadSafeArr3 block;
    EXPECT_EQ(block.GetBuffer(), nullptr);
    ASSERT_TRUE(block.Create(2, 5, 3, 2));
    EXPECT_EQ(block.GetByteSize(), 60u);
    char* begin = static_cast<char*>(block.GetBuffer());
    EXPECT_EQ(static_cast<char*>(block.GetAt(4, 2, 1)) - begin, 58);
    EXPECT_EQ(static_cast<char*>(block.GetAt(1, 1, 0)) - begin, 12);
    EXPECT_EQ(block.GetAt(5, 0, 0), nullptr);
    EXPECT_EQ(block.GetAt(0, 0, -1), nullptr);
    EXPECT_FALSE(block.Create(16, INT_MAX, INT_MAX, INT_MAX));
    EXPECT_FALSE(block.Create(2, 0, 3, 2));
    EXPECT_EQ(block.GetXSize(), 5); // as it was

    std::vector<std::jthread> threads; // for the thread sanitizer
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([&block] {
            for (int i = 0; i < 200; ++i) {
                {
                    const auto lock = block.LockForWrite();
                    if (char* sample = static_cast<char*>(block.GetAt(0, 0, 0))) ++*sample;
                }
                if (i == 100) block.Create(1, 2, 2, 2);
            }
        });
    }
    threads.clear(); // joins
    block.Free();
    EXPECT_EQ(block.GetByteSize(), 0u);
}

TEST(XMemory, BlocksAreAlignedAndZeroed)
{
    for (const std::size_t bytes :
         {std::size_t{0}, std::size_t{1}, std::size_t{63}, std::size_t{1000}}) {
        unsigned char* block = static_cast<unsigned char*>(XMemory::Alloc(bytes, 1));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % XMemory::kAlignment, 0u);
        for (std::size_t i = 0; i < bytes; ++i)
            ASSERT_EQ(block[i], 0);
        XMemory::Free(block);
    }
    EXPECT_THROW(XMemory::Alloc(SIZE_MAX, 0), std::bad_alloc);
    EXPECT_THROW(XMemory::Alloc(SIZE_MAX / 2, 0), std::bad_alloc);
    XMemory::Free(nullptr);
}

} // namespace
