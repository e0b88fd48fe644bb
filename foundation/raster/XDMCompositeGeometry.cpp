#include "foundation/raster/XDMComposite.h"

#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMVand.h"
#include "foundation/raster/XDrawLevel.h"
#include "foundation/raster/XDrawMapping.h"
#include "foundation/surface/XBackBuffer.h"

#include <algorithm>
#include <cmath>

namespace {

const XWarp2D kNoWarp;

/// Nearest whole number, held inside int. The value is not NaN.
int RoundToInt(double value)
{
    return static_cast<int>(std::round(std::clamp(value, -2147483647.0, 2147483647.0)));
}

} // namespace

void XDMComposite::UpdateWarps(int ch)
{
    tagXCompositeChannel& channel = m_channels[ch];
    channel.warp = channel.warpInv = XChannelWarp();
    channel.subset = tagXSubsetStatistics();
    if (m_isPixelBase && channel.band) {
        XWarp2D toPixel;
        toPixel.SetAffine(0.0, 1.0, 0.0, 0.0, 0.0, -1.0);
        channel.warp = channel.warpInv = toPixel; // its own inverse
    } else if (channel.isWarpChosen) {
        channel.warp = channel.chosenWarp;
        channel.warpInv = channel.chosenInv;
    } else if (channel.band) {
        channel.warp = channel.band->GetWorldToPixel();
        channel.warpInv = channel.band->GetPixelToWorld();
    }
}

const XWarp2D& XDMComposite::GetWarpCoeff(int ch) const
{
    const tagXCompositeChannel* channel = Channel(ch);
    return channel ? channel->warp.GetPolynomial() : kNoWarp;
}

const XWarp2D& XDMComposite::GetWarpCoeffInv(int ch) const
{
    const tagXCompositeChannel* channel = Channel(ch);
    return channel ? channel->warpInv.GetPolynomial() : kNoWarp;
}

void XDMComposite::SetWarpCoeff(const XWarp2D& warp, int ch)
{
    tagXCompositeChannel* channel = Channel(ch);
    if (!channel) return;
    const XWarp2D guess = channel->warpInv.GetPolynomial();
    channel->warp = warp;
    channel->isWarpChosen = 1;
    channel->warpInv = channel->band ? XfnInvertWarp(warp, guess, channel->band->GetXSize(),
                                                     channel->band->GetYSize())
                                     : warp.InverseAffine();
    channel->chosenWarp = warp;
    channel->chosenInv = channel->warpInv.GetPolynomial();
    channel->subset = tagXSubsetStatistics();
}

int XDMComposite::IsBoundValid() const
{
    double box[4];
    return CalcBoundBox(box);
}

int XDMComposite::CalcBoundBox(double (&box)[4]) const
{
    int isFound = 0;
    const auto add = [&](double left, double right, double bottom, double top) {
        box[0] = isFound ? std::min(box[0], left) : left;
        box[1] = isFound ? std::max(box[1], right) : right;
        box[2] = isFound ? std::min(box[2], bottom) : bottom;
        box[3] = isFound ? std::max(box[3], top) : top;
        isFound = 1;
    };
    if (m_mode == 3 && m_vand) {
        double minX = kXNotSet, minY = kXNotSet, minZ = 0.0, maxX = kXNoData, maxY = kXNoData,
               maxZ = 0.0;
        m_vand->GetRange(minX, minY, minZ, maxX, maxY, maxZ);
        double own[4] = {minX, maxX, minY, maxY};
        if (XfnIsSet(minX) && XfnIsSet(maxX) && XfnIsSet(minY) && XfnIsSet(maxY) && minX <= maxX &&
            minY <= maxY &&
            (!m_vectorWarp.IsValid() ||
             XfnCalcWarpedBox(m_vectorWarp, minX, minY, maxX, maxY, own)))
            add(own[0], own[1], own[2], own[3]);
    }
    for (int ch = 0; ch < GetNumberOfChannels(); ++ch) {
        if (!IsRasterChannel(ch)) continue;
        const tagXCompositeChannel& channel = m_channels[ch];
        const int width = channel.band->GetXSize();
        const int height = channel.band->GetYSize();
        if (!channel.warpInv.IsValid() || width < 1 || height < 1) continue;
        const double marginX = width == 1 ? 0.5 : 0.0; // an extent of zero could not be shown
        const double marginY = height == 1 ? 0.5 : 0.0;
        double own[4];
        if (XfnCalcWarpedBox(channel.warpInv, -marginX, -marginY, width - 1 + marginX,
                             height - 1 + marginY, own))
            add(own[0], own[1], own[2], own[3]);
    }
    return isFound;
}

void XDMComposite::GetBoundRect(double& left, double& right, double& bottom, double& top) const
{
    double box[4] = {0.0, 0.0, 0.0, 0.0};
    CalcBoundBox(box);
    left = box[0];
    right = box[1];
    bottom = box[2];
    top = box[3];
}

void XDMComposite::ConvWorldToPixelCoord(double& x, double& y, int ch) const
{
    const tagXCompositeChannel* channel = Channel(ch);
    if (channel && channel->band) channel->warp.Warp(x, y);
}

void XDMComposite::ConvPixelToWorldCoord(double& x, double& y, int ch) const
{
    const tagXCompositeChannel* channel = Channel(ch);
    if (channel && channel->band) channel->warpInv.Warp(x, y);
}

int XDMComposite::ConvWorldToPixelRange(double left, double right, double bottom, double top,
                                        int& x0, int& x1, int& y0, int& y1, int ch) const
{
    const tagXCompositeChannel* channel = Channel(ch);
    double box[4];
    if (!channel || !channel->band || !channel->warp.IsValid()) return 0;
    if (!XfnCalcWarpedBox(channel->warp, left, bottom, right, top, box)) return 0;
    x0 = RoundToInt(box[0]);
    x1 = RoundToInt(box[1]);
    y0 = RoundToInt(box[2]);
    y1 = RoundToInt(box[3]);
    return 1;
}

int XDMComposite::ConvPixelToWorldRange(int x0, int x1, int y0, int y1, double& left, double& right,
                                        double& bottom, double& top, int ch) const
{
    const tagXCompositeChannel* channel = Channel(ch);
    double box[4];
    if (!channel || !channel->band || !channel->warpInv.IsValid()) return 0;
    if (!XfnCalcWarpedBox(channel->warpInv, x0, y0, x1, y1, box)) return 0;
    left = box[0];
    right = box[1];
    bottom = box[2];
    top = box[3];
    return 1;
}

int XDMComposite::GetReferenceChannel() const
{
    for (int ch = 0; ch < GetNumberOfChannels(); ++ch)
        if (m_channels[ch].band) return ch;
    return -1;
}

int XDMComposite::GetMaxLevel() const
{
    const int ch = GetReferenceChannel();
    return ch < 0 ? 0 : std::max(m_channels[ch].band->GetNumOfLevels() - 1, 0);
}

int XDMComposite::GetHighestLevelForTarget(XBackBuffer* buffer, double x0, double y0, double x1,
                                           double y1) const
{
    const int ch = GetReferenceChannel();
    if (!buffer || ch < 0) return 0;
    const tagXCompositeChannel& channel = m_channels[ch];
    const int width = channel.band->GetXSize();
    const int height = channel.band->GetYSize();
    XDrawMapping mapping;
    mapping.Set(buffer->GetMapping(), channel.warp, channel.warpInv, width, height, width, height);
    // the range may be smaller or larger than what the buffer shows now
    double shown[4] = {HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    for (const int corner : {0, 1, 2, 3}) {
        double x = corner & 1 ? buffer->GetWidth() : 0;
        double y = corner & 2 ? buffer->GetHeight() : 0;
        buffer->ConvPixelToWorldCoord(x, y);
        shown[0] = std::min(shown[0], x);
        shown[1] = std::min(shown[1], y);
        shown[2] = std::max(shown[2], x);
        shown[3] = std::max(shown[3], y);
    }
    const double part = std::min(std::fabs(x1 - x0) / (shown[2] - shown[0]),
                                 std::fabs(y1 - y0) / (shown[3] - shown[1]));
    return XfnChooseLevel(*channel.band, mapping.GetBandStep() * part);
}
