#pragma once

#include "foundation/base/XApi.h"

class XPtrList;

/// Stretch types of a channel, as they are stored.
enum XStretchType : int {
    kXStretchLinear = 1,
    kXStretchPiecewise = 2,
    kXStretchLogarithmic = 3,
    kXStretchInverseSquare = 4,
    kXStretchEqualization = 5,
    kXStretchGaussian = 6,
    kXStretchSquareRoot = 7,
};

/// Fills the look-up table of a stretch: cut level 0..255 in, display level out.
///
/// With t = i / 255 and low, high the intensities at 0 and 255, entry i is
/// round(low + (high - low) * f(t)), where f is
///
///     1 linear          t
///     2 piecewise       straight between the points, in intensities; from (0, low) and to
///                       (255, high) where no point stands there
///     3 logarithmic     ln(1 + 255 t) / ln 256
///     4 inverse square  t * t
///     5 equalization    (C[i] - C[0]) / (C[255] - C[0]), C the cumulative of `histogramIn`, so
///                       that bin 0 stands at the low end however full it is
///     6 Gaussian        the t' whose normal distribution function, cut at plus and minus 3 sigma
///                       and spread over 0..1, equals the fraction of type 5 (histogram
///                       matching: Gonzalez and Woods, Digital Image Processing, section 3.3),
///                       to a fiftieth of a level
///     7 square root     sqrt(t)
///
/// Any other type is shown as linear, and so are types 5 and 6 on a histogram whose counts lie all
/// in bin 0 or are all zero. Entry 0 is `intensity000` and entry 255 `intensity255` for every type
/// but 2; the table falls when the first is above the second. Negative counts are taken as 0.
///
/// @param points        records tagXHistPt by rising position, for type 2; null is an empty list
/// @param histogramIn   256 counts after the cut; null is all zero
/// @param histogramOut  256 counts: `histogramIn` sent through the table; may be null, must not be
///                      histogramIn
XAPI void XfnStretchLUT(int type, unsigned char* lut, unsigned char intensity000,
                        unsigned char intensity255, const XPtrList* points,
                        const long long* histogramIn, long long* histogramOut);

/// Re-bins a histogram over [min, max] to a cut range, 256 bins each.
///
/// The cut ends become bins by truncation, held inside 0..255; bins between them are spread over
/// 0..255 (assigned, not added), those below are added to bin 0, and those above, without the very
/// last, to bin 255: that last bin is lost as soon as the cut ends below it, which existing stretch
/// files rely on. A cut that covers all bins copies the histogram.
/// @return 0 with `applied` untouched when an argument is a sentinel or not finite, min is not
///         below max or too far from it for their difference, or the cut range stands upside down
XAPI int XfnApplyCutToHistogram(const long long* source, double min, double max, double cutMin,
                                double cutMax, long long* applied);
