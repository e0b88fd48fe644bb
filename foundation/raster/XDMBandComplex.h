#pragma once

#include "foundation/raster/XDMBandDerived.h"

/// Which real number of a complex sample z is shown.
enum XComplexPart : int {
    kXComplexMagnitude = 0,   ///< |z|
    kXComplexPhase = 1,       ///< arg z in radians, -pi..pi; 0 of zero
    kXComplexReal = 2,        ///< re z
    kXComplexImaginary = 3,   ///< im z
    kXComplexIntensity = 4,   ///< |z| squared
    kXComplexLogMagnitude = 5 ///< 20 log10 |z| in dB; zero has none
};

/// A complex band seen as a real one, for display and for everything that reads real samples.
///
/// Its samples are floats; doubles when the parts of the inner samples are 32-bit integers or
/// doubles. Intensities of integers of 16 bits are exact to 24 bits. A sample without data (a part
/// that is not finite, or the inner null value with an imaginary part of 0) is NaN, which is the
/// null value too. Reports show the data type of the inner band, and the pixel's two numbers are
/// read from there.
///
///     XDMBandComplex* band = new XDMBandComplex;
///     if (!band->Create(complexBand, kXComplexPhase)) ...
class XAPI XDMBandComplex : public XDMBandDerived
{
    X_DECLARE_CLASS(XDMBandComplex)
public:
    XDMBandComplex() = default;

    /// @return 0 for a band that is not complex, or a part that is none; all is then as it was
    int Create(XDMBand* inner, int part = kXComplexMagnitude);
    int GetPart() const { return m_part; } ///< XComplexPart

protected:
    std::shared_ptr<const XTile> ReadTile(int level, int tx, int ty, const std::atomic<int>* abort,
                                          XString& message) const override;

private:
    int m_part = kXComplexMagnitude;
};
