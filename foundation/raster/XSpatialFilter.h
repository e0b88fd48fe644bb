#pragma once

#include "foundation/base/XApi.h"

/// What a spatial filter does. The numbers are stored with a composite.
enum XSpatialFilterType : int {
    kXFilterNone = 0,
    kXFilterMean = 1,
    kXFilterMedian = 2,
    kXFilterGaussian = 3,
    kXFilterSharpen = 4,
    kXFilterSobel = 5,
    kXFilterLaplacian = 6
};

/// A filter over a square neighbourhood of n x n pixels, n one of 3, 5, 7, 9, 11.
///
/// In band units, over the samples v of the neighbourhood:
/// - mean: their mean.
/// - median: the middle one; of an even number the lower of the two in the middle, so that the
///   result always is a value of the neighbourhood.
/// - Gaussian G: weights exp(-(dx^2 + dy^2) / (2 s^2)), s = n / 5 pixels, divided by their sum.
/// - sharpen: unsharp masking, v + amount (v - G).
/// - Sobel: the magnitude of the gradient, in eighths of a band unit a pixel: a ramp of slope 1
///   gives 8. The 3 x 3 kernels 1 2 1 / 0 0 0 / -1 -2 -1 and its transpose.
/// - Laplacian: the sum of the second derivatives in band units a pixel squared, by the 3 x 3 kernel
///   1 2 1 / 2 -12 2 / 1 2 1 over 4, the nine-point form with the least dependence on direction.
///   Positive in a dip.
/// Sobel and Laplacian of a larger n are taken over the image smoothed by the Gaussian of n - 2.
///
/// No data (the null value, NaN, infinities): a centre without data stays without. Neighbours
/// without are left out: the weights of the others are divided by their own sum (normalised
/// convolution; H. Knutsson and C.-F. Westin, CVPR 1993), the median is that of the others, and to
/// the derivatives of Sobel and Laplacian they count as equal to the centre, so that a border of
/// the data is no edge. Beyond the rim of an image its outermost pixels are repeated.
struct tagXSpatialFilter
{
    int type = kXFilterNone;
    int kernelSize = 3;
    double amount = 1.0; ///< of sharpen only; finite
};

/// The filter of two stored numbers. A type that is none gives kXFilterNone; a size that is none
/// gives the next smaller one, at least 3.
XAPI tagXSpatialFilter XfnMakeSpatialFilter(int type, int kernelSize, double amount = 1.0);

/// How many pixels to each side a filter reads: (n - 1) / 2, 0 without a filter.
XAPI int XfnGetFilterRadius(const tagXSpatialFilter& filter);

/// The data type of a filtered band of real type `dataType`: the same, but float for Sobel and
/// Laplacian, whose results have signs and sizes that the type need not hold; double for those of
/// 32-bit integers and of doubles. kXTypeNone for a complex type.
XAPI int XfnGetFilteredType(const tagXSpatialFilter& filter, int dataType);

/// Filters a block of samples, computing in float, for 32-bit integers and doubles in double.
///
/// @param src      (width + 2 r) x (height + 2 r) samples of `dataType` without gaps, r from
///                 XfnGetFilterRadius; the apron of r beyond the rim of an image holds repeated
///                 pixels (XfnRepeatRim)
/// @param dst      width x height samples of XfnGetFilteredType, apart from src. Integers are
///                 rounded, halves away from 0, and held inside their type; a result that would
///                 read as `dstNull` becomes the next value.
/// @param nullValue, dstNull  what stands for no data before and after; kXNotSet when nothing does.
///                 Real types without one get NaN, integers without one have no pixel without data.
/// Throws std::bad_alloc. @return 0 for a complex type or sizes below 1; dst is then untouched
XAPI int XfnFilterBlock(const tagXSpatialFilter& filter, int dataType, const void* src, int width,
                        int height, double nullValue, void* dst, double dstNull);

/// Fills the rim of a block by repeating the pixels next to it: the columns before `left` and from
/// `width - right`, then the rows above `top` and from `height - bottom`. The rest has at least one
/// pixel. Rows are without gaps, `sampleSize` bytes a sample.
XAPI void XfnRepeatRim(void* block, int sampleSize, int width, int height, int left, int right,
                       int top, int bottom);
