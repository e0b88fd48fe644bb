#pragma once

#include "foundation/base/XApi.h"

/// Statistics of blocks that were read one after another, in plain running sums.
///
/// A block is width x height samples without gaps. NaN, infinities and samples equal to `ignore` are
/// not counted (of a complex type the magnitude counts). The four integers are the columns
/// x0..x1 and rows y0..y1 of the block that count, both ends included; what lies outside the block
/// is cut, so the lowest and highest int set no limit.

/// Adds a block to running sums; start with min kXNotSet, max kXNoData and the rest 0.
/// @return 0 for a null block, an empty one or a data type that is none; the sums are then as before
XAPI int XfnGetSubsetStatElem1(const void* data, int width, int height, int dataType, double& sum,
                               double& sumOfSquares, double& min, double& max, long long& count,
                               int x0, int x1, int y0, int y1, double ignore);

/// Adds a block to a histogram of 256 bins over [min, max]. Counts gathered over another range
/// [previousMin, previousMax] are first moved to the bin that their value has in the new one; a
/// previous range that is not real (a sentinel, or empty) leaves them where they are.
/// @return 0 as above, or when min or max is not set
XAPI int XfnGetSubsetStatElem3(const void* data, int width, int height, int dataType,
                               double previousMin, double previousMax, double min, double max,
                               long long* histogram, int x0, int x1, int y0, int y1, double ignore);

/// Moves the counts of 256 bins over [previousMin, previousMax] to the bins that the values they
/// stand for have over [min, max]; both ranges are in order and in finite numbers.
XAPI void XfnMoveHistogram(double previousMin, double previousMax, double min, double max,
                           long long* histogram);
