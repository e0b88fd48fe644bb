#include "foundation/base/XMatrix.h"

#include <Eigen/LU>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

using Matrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
using View = Eigen::Map<const Matrix>;
using Target = Eigen::Map<Matrix>;

/// The exponent that brings the largest magnitude of `values` into [1, 2); 0 when all are 0.
template <class Values>
int GetScale(const Values& values)
{
    const double largest = values.cwiseAbs().maxCoeff();
    return largest > 0.0 ? -std::ilogb(largest) : 0;
}

} // namespace

int XfnMatrixMultiply(const double* a, const double* b, double* c, int columnsA, int rowsA,
                      int columnsB, int rowsB)
{
    if (!a || !b || !c || columnsA != rowsB) return 0;
    if (columnsA < 1 || rowsA < 1 || columnsB < 1) return 0;
    const Matrix product = View(a, rowsA, columnsA) * View(b, rowsB, columnsB);
    Target(c, rowsA, columnsB) = product;
    return 1;
}

int XfnMatrixAdd(const double* a, const double* b, double* c, int columns, int rows)
{
    if (!a || !b || !c || columns < 1 || rows < 1) return 0;
    Target(c, rows, columns) = View(a, rows, columns) + View(b, rows, columns);
    return 1;
}

int XfnMatrixSubtract(const double* a, const double* b, double* c, int columns, int rows)
{
    if (!a || !b || !c || columns < 1 || rows < 1) return 0;
    Target(c, rows, columns) = View(a, rows, columns) - View(b, rows, columns);
    return 1;
}

int XfnMatrixInverse(double* m, int n, double& determinant)
{
    if (!m || n < 1) return 0;
    Target matrix(m, n, n);
    if (!matrix.allFinite()) {
        determinant = std::numeric_limits<double>::quiet_NaN();
        return 0;
    }
    Matrix scaled = matrix;
    std::vector<int> rowScale(n);
    std::vector<int> columnScale(n);
    int shift = 0; // the determinant of the scaled matrix is 2^shift too large
    for (int i = 0; i < n; ++i) {
        rowScale[i] = GetScale(scaled.row(i));
        shift += rowScale[i];
        for (int j = 0; j < n; ++j)
            scaled(i, j) = std::ldexp(scaled(i, j), rowScale[i]);
    }
    for (int j = 0; j < n; ++j) {
        columnScale[j] = GetScale(scaled.col(j));
        shift += columnScale[j];
        for (int i = 0; i < n; ++i)
            scaled(i, j) = std::ldexp(scaled(i, j), columnScale[j]);
    }
    const Eigen::PartialPivLU<Matrix> lu(scaled);
    determinant = std::ldexp(lu.determinant(), -shift);
    // a zero row or column leaves a pivot of 0, which the condition estimate of order 1 overlooks
    const double smallest = n * std::numeric_limits<double>::epsilon();
    if (lu.matrixLU().diagonal().cwiseAbs().minCoeff() == 0.0 || !(lu.rcond() >= smallest)) {
        return 0;
    }
    Matrix inverse = lu.inverse();
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            inverse(i, j) = std::ldexp(inverse(i, j), columnScale[i] + rowScale[j]);
        }
    }
    if (!inverse.allFinite()) return 0;
    matrix = inverse;
    return 1;
}
