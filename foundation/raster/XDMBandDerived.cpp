#include "foundation/raster/XDMBandDerived.h"

#include <vector>

X_IMPLEMENT_CLASS(XDMBandDerived, XDMBand)

int XDMBandDerived::SetInnerBand(XDMBand* inner, int dataType, int tileSide, int radius)
{
    if (!inner || inner->GetNumOfLevels() < 1) return 0;
    for (const XDMBand* band = inner; band;) {
        if (band == this) return 0;
        const auto* derived = dynamic_cast<const XDMBandDerived*>(band);
        band = derived ? derived->GetInnerBand() : nullptr;
    }
    std::vector<tagLevel> levels(static_cast<std::size_t>(inner->GetNumOfLevels()));
    for (int level = 0; level < inner->GetNumOfLevels(); ++level) {
        tagLevel& l = levels[static_cast<std::size_t>(level)];
        inner->GetLevelSize(level, l.width, l.height);
        inner->GetTileSize(level, l.tileWidth, l.tileHeight);
        if (tileSide > 0) l.tileWidth = l.tileHeight = tileSide;
        l.isVirtual = inner->IsVirtualLevel(level);
    }
    m_inner = inner;
    SetLevels(dataType, std::move(levels));
    CloneBand(inner);
    Follow(inner, radius);
    DropPixels();
    return 1;
}

int XDMBandDerived::IsVirtualLevel(int level) const
{
    return m_inner ? m_inner->IsVirtualLevel(level) : 0;
}
