#pragma once

#include "foundation/raster/XDMBand.h"

/// The base of bands whose pixels are computed from those of another band, the inner one, tile by
/// tile as they are asked for. Read only.
///
/// Size, levels, reference, geometry and description are those of the inner band when it was set.
/// The statistics are its own. A change of the inner band's pixels, levels or null value drops what
/// was computed from them.
///
/// Ownership: the inner band is not owned and must outlive the last reading; destruction may come
/// in any order, so that both may belong to one file.
class XAPI XDMBandDerived : public XDMBand
{
    X_DECLARE_CLASS(XDMBandDerived)
public:
    XDMBand* GetInnerBand() const { return m_inner; } ///< null before one is set
    int IsVirtualLevel(int level) const override;

protected:
    XDMBandDerived() = default;

    /// @param tileSide  of the tiles of every level; 0 takes the inner band's
    /// @param radius    pixels to each side that a pixel depends on, at each level
    /// @return 0 for null, a band without pixels or one that is derived from this one; all is then
    ///         as it was
    int SetInnerBand(XDMBand* inner, int dataType, int tileSide, int radius);

private:
    XDMBand* m_inner = nullptr;
};
