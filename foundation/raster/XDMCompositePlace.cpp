#include "foundation/raster/XDMComposite.h"

#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMVand.h"
#include "foundation/raster/XDrawMapping.h"
#include "foundation/raster/XReferenceWarp.h"
#include "foundation/reference/XInterProjWarp.h"

#include <algorithm>

namespace {

constexpr int kMap = 3; // coordinate type
constexpr double kNotPlaced = -1.0;

int IsMap(const XSpatialReference& reference)
{
    return reference.GetCoordType() == kMap && !reference.IsEmpty();
}

/// Whether positions in `own` have to be carried over to be positions in `target`.
int IsOther(const XSpatialReference& own, const XSpatialReference& target)
{
    return IsMap(own) && IsMap(target) && !own.IsSame(&target);
}

} // namespace

void XDMComposite::PlaceInReference(const XSpatialReference* target)
{
    m_target = target ? *target : XSpatialReference();
    PlaceAll();
}

void XDMComposite::PlaceAll()
{
    m_placementMiss = 0.0;
    const auto note = [&](double miss) {
        const bool isFailure = miss < 0.0 || m_placementMiss < 0.0;
        m_placementMiss = isFailure ? kNotPlaced : std::max(m_placementMiss, miss);
    };
    for (int ch = 0; ch < 3; ++ch)
        note(PlaceChannel(ch));
    note(PlaceVector());
}

/// @return the miss, in pixels
double XDMComposite::PlaceChannel(int ch)
{
    tagXCompositeChannel& channel = m_channels[ch];
    if (!channel.band || channel.isWarpChosen || m_isPixelBase) return 0.0;
    if (!IsOther(*channel.band->GetSR(), m_target)) {
        if (channel.warp.GetPlaced()) UpdateWarps(ch);
        return 0.0;
    }
    // bands of one file stand in the same place
    for (const tagXCompositeChannel& other : m_channels) {
        const auto& placed = other.warp.GetPlaced();
        if (!placed || !placed->IsFor(*channel.band, m_target)) continue;
        if (&other != &channel) {
            channel.warp = other.warp;
            channel.warpInv = other.warpInv;
            channel.subset = tagXSubsetStatistics();
        }
        return placed->GetMiss();
    }
    UpdateWarps(ch);
    channel.subset = tagXSubsetStatistics();
    const XReferenceWarp::tagPair ways = XReferenceWarp::Make(*channel.band, m_target);
    if (!ways.toPixel || !ways.toWorld) return kNotPlaced;
    channel.warp = XChannelWarp(ways.toPixel);
    channel.warpInv = XChannelWarp(ways.toWorld);
    return ways.toPixel->GetMiss();
}

/// @return the miss, in thousandths of the longer side of the extent
double XDMComposite::PlaceVector()
{
    const bool wasPlaced = m_vectorWarp.IsValid();
    m_vectorWarp = XWarp2D();
    double box[6] = {kXNotSet, kXNotSet, 0.0, kXNoData, kXNoData, 0.0};
    if (m_mode == 3 && m_vand && IsOther(*m_vand->GetSR(), m_target)) {
        m_vand->GetRange(box[0], box[1], box[2], box[3], box[4], box[5]);
        m_isVectorStale = 1;
    } else if (wasPlaced) {
        m_isVectorStale = 1;
    }
    if (!(box[0] <= box[3] && box[1] <= box[4])) return 0.0; // nothing to place
    constexpr int kPoints = 21;
    double miss = 0.0;
    m_vectorWarp = XfnCalcWarpCoeffInterProj(3, box[0], box[1], box[3], box[4], m_vand->GetSR(),
                                             &m_target, 0, kPoints, kPoints, &miss);
    double placed[4];
    if (!m_vectorWarp.IsValid() ||
        !XfnCalcWarpedBox(m_vectorWarp, box[0], box[1], box[3], box[4], placed))
        return kNotPlaced;
    const double side = std::max(placed[1] - placed[0], placed[3] - placed[2]);
    return side > 0.0 ? miss / side * 1000.0 : 0.0;
}
