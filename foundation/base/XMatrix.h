#pragma once

#include "foundation/base/XApi.h"

/// Arithmetic on dense matrices in flat arrays of doubles, row-major. Any thread.
/// Every operation returns 0 and changes nothing for a size below 1 or a null pointer.

/// c = a b. Note the order of the sizes: columns before rows. c is rowsA x columnsB and may be
/// a or b.
/// @return 0 when columnsA differs from rowsB.
XAPI int XfnMatrixMultiply(const double* a, const double* b, double* c, int columnsA, int rowsA,
                           int columnsB, int rowsB);

/// c = a + b and c = a - b, element by element; c may be a or b.
XAPI int XfnMatrixAdd(const double* a, const double* b, double* c, int columns, int rows);
XAPI int XfnMatrixSubtract(const double* a, const double* b, double* c, int columns, int rows);

/// Replaces the n x n matrix by its inverse and gives the determinant it had.
///
/// Method: rows and columns are scaled by powers of two (exact), then LU with partial pivoting
/// (Golub and Van Loan, Matrix Computations, 4th ed., 3.4 and 3.5.2), so a matrix whose bands
/// differ by many orders of magnitude loses no digits for that reason.
/// Accuracy: relative error about n 2^-53 times the condition of the scaled matrix.
/// Singular cases: a NaN or infinity in the matrix gives NaN as determinant; a matrix whose scaled
/// form has a reciprocal condition below n 2^-52 counts as singular, its determinant is what the
/// elimination gives. The determinant overflows and underflows as the product of doubles does.
/// @return 0 for both; the matrix is then as it was.
XAPI int XfnMatrixInverse(double* m, int n, double& determinant);
