#include "foundation/raster/XDMComposite.h"

#include "foundation/base/XVector3.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMBandSpatialFilter.h"
#include "foundation/raster/XDMVand.h"
#include "foundation/raster/XDrawCut.h"
#include "foundation/raster/XDrawJob.h"
#include "foundation/raster/XDrawLevel.h"
#include "foundation/raster/XDrawTables.h"
#include "foundation/raster/XNullSample.h"
#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XvcBase.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr std::uint32_t kOpaque = 0xFF000000u;
constexpr std::uint32_t kColour = 0x00FFFFFFu;

/// Surface columns and rows whose centres lie inside a world range, half open. A turned or bent
/// surface takes the box around the range. 0 when nothing is left.
int CalcClip(const XBufferMapping& mapping, const double (&range)[4], tagXDrawJob& job)
{
    double box[4] = {HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    for (const int corner : {0, 1, 2, 3}) {
        double x = range[corner & 1 ? 2 : 0];
        double y = range[corner & 2 ? 3 : 1];
        mapping.ConvWorldToPixelCoord(x, y);
        if (!std::isfinite(x) || !std::isfinite(y)) return 0;
        box[0] = std::min(box[0], x);
        box[1] = std::min(box[1], y);
        box[2] = std::max(box[2], x);
        box[3] = std::max(box[3], y);
    }
    // a range computed from the surface's own edges comes back a rounding error off
    constexpr double kSlack = 1e-6;
    const auto first = [](double at, int size) {
        return static_cast<int>(std::clamp(std::ceil(at - 0.5 - kSlack), 0.0, double(size)));
    };
    const auto end = [](double at, int size) {
        return static_cast<int>(std::clamp(std::floor(at - 0.5 + kSlack) + 1.0, 0.0, double(size)));
    };
    job.x0 = first(box[0], mapping.GetWidth());
    job.y0 = first(box[1], mapping.GetHeight());
    job.x1 = end(box[2], mapping.GetWidth());
    job.y1 = end(box[3], mapping.GetHeight());
    return job.x0 < job.x1 && job.y0 < job.y1;
}

/// What keeps a gray picture gray: blue, green, red of one level.
std::uint32_t WordOf(std::uint8_t blue, std::uint8_t green, std::uint8_t red)
{
    return kOpaque | static_cast<std::uint32_t>(red) << 16 |
           static_cast<std::uint32_t>(green) << 8 | blue;
}

/// Whether values between two others mean something between the two. Between two classes lies no
/// third one.
int HasOrder(const XDMBand& band)
{
    return band.GetBandType() < kXBandClassMap && !band.HasColorTable();
}

} // namespace

/// The composite's level number counts levels of its first band; bands of another resolution take
/// the level that comes nearest to the same size on the screen without being coarser.
int XDMComposite::GetDrawnLevel(int ch, const XBackBuffer& buffer) const
{
    const auto stepOf = [&](const tagXCompositeChannel& channel) {
        XDrawMapping mapping;
        const int width = channel.band->GetXSize();
        const int height = channel.band->GetYSize();
        mapping.Set(buffer.GetMapping(), channel.warp, channel.warpInv, width, height, width,
                    height);
        return mapping.GetBandStep();
    };
    const tagXCompositeChannel& own = m_channels[ch];
    if (m_drawLevel < 0) return XfnChooseLevel(*own.band, stepOf(own));
    const tagXCompositeChannel& first = m_channels[GetReferenceChannel()];
    const int level = std::min(m_drawLevel, first.band->GetNumOfLevels() - 1);
    const int isSameRaster = own.band->GetXSize() == first.band->GetXSize() &&
                             own.band->GetYSize() == first.band->GetYSize() &&
                             own.band->GetNumOfLevels() == first.band->GetNumOfLevels();
    if (isSameRaster) return level;
    const double step = stepOf(own) * XfnGetLevelStep(*first.band, level) / stepOf(first);
    return XfnChooseLevel(*own.band, step);
}

/// The channel's band, or a band that filters it; the latter is kept while nothing changes, and its
/// tiles with it.
XDMBand* XDMComposite::GetDrawnBand(int ch)
{
    XDMBand* band = m_channels[ch].band;
    const tagXSpatialFilter filter = XfnMakeSpatialFilter(m_filterType, m_kernelSize);
    std::shared_ptr<XDMBandSpatialFilter>& kept = m_filtered[ch];
    if (filter.type == kXFilterNone || !XfnIsRealType(band->GetDataType()) || !HasOrder(*band)) {
        kept.reset();
        return band;
    }
    if (!kept || kept->GetInnerBand() != band || kept->GetFilterType() != filter.type ||
        kept->GetKernelSize() != filter.kernelSize) {
        kept = std::make_shared<XDMBandSpatialFilter>();
        if (!kept->Create(band, filter.type, filter.kernelSize)) kept.reset();
    }
    return kept ? kept.get() : band;
}

void XDMComposite::SetUpChannel(int ch, const XBackBuffer& buffer, tagXDrawJob& job)
{
    const tagXCompositeChannel& settings = m_channels[ch];
    tagXDrawChannel& channel = job.channels[ch];
    channel.band = nullptr;
    channel.skip = kNone;
    if (!IsRasterChannel(ch) || settings.hide || !settings.warp.IsValid()) return;
    if (XfnGetDataTypeSize(settings.band->GetDataType()) == 0) return;
    XDMBand* band = GetDrawnBand(ch);
    channel.band = band;
    if (band == m_filtered[ch].get()) channel.keeper = m_filtered[ch];
    channel.dataType = band->GetDataType();
    channel.level = GetDrawnLevel(ch, buffer);
    band->GetLevelSize(channel.level, channel.levelWidth, channel.levelHeight);
    channel.mapping.Set(buffer.GetMapping(), settings.warp, settings.warpInv, band->GetXSize(),
                        band->GetYSize(), channel.levelWidth, channel.levelHeight);

    tagXCutSettings cut;
    cut.cutMin = settings.cutMin;
    cut.cutMax = settings.cutMax;
    if (!XfnIsSet(cut.cutMin) || !XfnIsSet(cut.cutMax)) {
        const auto numbers = settings.band->GetStatistics(job.abort);
        const int isKnown = numbers->IsSet() && settings.band->GetDataType() != kXUInt8;
        cut.cutMin = isKnown ? numbers->min : 0.0;
        cut.cutMax = isKnown ? numbers->max : 255.0;
    }
    if (m_isMatching && std::isfinite(settings.matchA) && std::isfinite(settings.matchB)) {
        cut.matchA = settings.matchA;
        cut.matchB = settings.matchB;
    }
    cut.null = XfnNullNumber(band->GetNullValue(), channel.dataType);
    // a double band without a null value may still hold the one that means no data everywhere
    if (channel.dataType == kXDouble && std::isnan(cut.null)) cut.null = kXNoData;
    const int isTransparent = m_isTransparent && settings.transparent != kXNotSet;
    cut.transparent = isTransparent ? settings.transparent : kNone;
    if (!m_isTransparentAsOne) channel.skip = cut.transparent;
    channel.cut = XfnMakeCut(cut);
}

void XDMComposite::SetUpTransparency(tagXDrawJob& job) const
{
    tagXCompose& compose = job.compose;
    int asked = 0;
    for (int ch = 0; ch < 3; ++ch) {
        const tagXDrawChannel& channel = job.channels[ch];
        const int hasValue = channel.band && !std::isnan(channel.cut.wide.transparent);
        asked += hasValue;
        compose.notAsked[ch] = hasValue ? std::uint16_t{0} : kXStateTransparent;
        compose.keep[ch] = 0;
        if (hasValue && !m_isTransparentAsOne)
            compose.keep[ch] = job.mode == 1 ? 0xFFu << (8 * ch) : kColour;
    }
    compose.asOne = asked > 0 && m_isTransparentAsOne ? kXStateTransparent : std::uint16_t{0};
}

/// A cut level through LUT and CLT.
std::array<std::uint8_t, 256> XDMComposite::GetComponents(int ch) const
{
    std::array<std::uint8_t, 256> components;
    const tagXCompositeChannel& channel = m_channels[ch];
    for (int i = 0; i < 256; ++i)
        components[i] = channel.clt[channel.lut[i]];
    return components;
}

void XDMComposite::SetUpColours(tagXDrawJob& job) const
{
    tagXCompose& compose = job.compose;
    for (int ch = 0; ch < 3; ++ch) {
        const auto components = GetComponents(ch);
        for (int i = 0; i < 512; ++i) {
            const std::uint8_t byte = i < 256 ? m_channels[ch].defValue : components[i - 256];
            compose.bytes[ch][i] = byte;
            compose.words[ch][i] = kOpaque | static_cast<std::uint32_t>(byte) << (8 * ch);
        }
    }
    if (job.mode != 0) return;
    for (int i = 0; i < 512; ++i) {
        const int level = m_channels[0].lut[i & 0xFF];
        compose.words[0][i] =
            WordOf(m_channels[0].clt[level], m_channels[1].clt[level], m_channels[2].clt[level]);
    }
}

/// Looks for a loop that leads straight to words, and makes its tables.
void XDMComposite::SetUpShortcut(tagXDrawJob& job, std::uint32_t (&words)[3][256])
{
    int used = 0;
    int size = 0;
    for (int ch = 0; ch < 3; ++ch) {
        tagXDrawChannel& channel = job.channels[ch];
        if (!channel.band) continue;
        const XDrawTableCache::tagTable* table =
            m_tables->GetTable(ch, channel.dataType, channel.cut.wide);
        channel.cut.table = table ? table->states.data() : nullptr;
        channel.isEveryData = table && table->isEveryData;
        const int ownSize = channel.isEveryData ? XfnGetDataTypeSize(channel.dataType) : -1;
        size = used == 0 || size == ownSize ? ownSize : -1;
        ++used;
    }
    if (job.mode == 2 || size < 1) return;
    if (size == 1) {
        job.shortcut = job.mode == 0 ? XDrawShortcut::Gray8 : XDrawShortcut::Rgb8;
        for (int ch = 0; ch < (job.mode == 0 ? 1 : 3); ++ch) {
            const std::uint16_t* states = job.channels[ch].cut.table;
            for (int i = 0; i < 256; ++i)
                words[ch][i] = job.compose.words[ch][job.channels[ch].band ? states[i] & 0x1FF : 0];
            job.words8[ch] = words[ch];
        }
    } else if (job.mode == 0) {
        job.shortcut = XDrawShortcut::Gray16;
        std::array<std::uint8_t, 256> levels;
        for (int i = 0; i < 256; ++i)
            levels[i] = static_cast<std::uint8_t>(i);
        job.components16[0] = m_tables->GetComponents(0, levels);
        std::copy_n(job.compose.words[0] + 256, 256, words[0]);
        job.words8[0] = words[0];
    } else if (used == 3) {
        job.shortcut = XDrawShortcut::Rgb16;
        for (int ch = 0; ch < 3; ++ch)
            job.components16[ch] = m_tables->GetComponents(ch, GetComponents(ch));
    }
}

int XDMComposite::DrawRaster(XBackBuffer& buffer, const std::atomic<int>* abort)
{
    tagXDrawJob job;
    job.mode = m_mode;
    job.alpha = m_alpha;
    job.abort = abort;
    job.message = &m_drawMessage;
    job.helpers = m_helpers;
    if (!CalcClip(buffer.GetMapping(), m_drawRange, job)) return 1; // the range lies elsewhere
    int isStraight = 1;
    int isAny = 0;
    int isBilinear = m_isInterpolated;
    for (int ch = 0; ch < GetNumberOfChannels(); ++ch) {
        if (!IsRasterChannel(ch)) continue;
        if (job.IsAborted()) return 0;
        UpdateStretch(ch, abort);
    }
    if (job.IsAborted()) return 0;
    for (int ch = 0; ch < 3; ++ch) {
        SetUpChannel(ch, buffer, job);
        const tagXDrawChannel& channel = job.channels[ch];
        if (!channel.band) continue;
        isAny = 1;
        if (channel.mapping.GetKind() == XDrawMapping::Kind::None) return 0;
        if (channel.mapping.GetKind() != XDrawMapping::Kind::Separable) isStraight = 0;
        if (!HasOrder(*m_channels[ch].band)) isBilinear = 0;
    }
    if (!isAny || m_alpha == 0) return 1;
    job.bits = buffer.GetBits();
    job.stride = buffer.GetStride();
    if (!job.bits) return 0;
    SetUpTransparency(job);
    SetUpColours(job);
    std::uint32_t words[3][256];
    SetUpShortcut(job, words);
    const int isDone = isStraight && !isBilinear ? XfnDrawCells(job) : XfnDrawRows(job, isBilinear);
    // a file that was cut meanwhile gave zeros: say so, and the next drawing leaves them out
    for (const tagXDrawChannel& channel : job.channels)
        if (channel.band && m_drawMessage.IsEmpty()) channel.band->IsIntact(m_drawMessage);
    return isDone;
}

void XDMComposite::PrepareVector()
{
    if (!m_isVectorStale || !m_vand || !m_vand->GetBase()) return;
    PlaceAll(); // the objects may reach further than before
    m_vertexBuffer->Start();
    XWarp2D* warp = m_vectorWarp.IsValid() ? &m_vectorWarp : nullptr;
    m_vand->GetBase()->CreateVertexBuffer(m_vertexBuffer.get(), warp, nullptr);
    m_vertexBuffer->End();
    m_isVectorStale = 0;
}

int XDMComposite::DrawVector(XBackBuffer& buffer, const std::atomic<int>* abort)
{
    if (!m_vand || (m_clonedHide < 0 ? m_vand->GetHideFlag() : m_clonedHide)) return 1;
    PrepareVector();
    return m_vertexBuffer->IsEmpty() ? 1 : m_vertexBuffer->Draw(&buffer, abort);
}

/// The outline of every channel's pixels, along the border so that bent images show their true
/// edge.
void XDMComposite::DrawBoundary(XBackBuffer& buffer)
{
    constexpr int kSteps = 64; // a side
    m_boundaryBuffer->Start();
    tagXVertLine line;
    line.colour = static_cast<tagXColor>(m_boundaryColor) | kXOpaque;
    for (int ch = 0; ch < GetNumberOfChannels(); ++ch) {
        const tagXCompositeChannel& channel = m_channels[ch];
        if (!channel.band || !channel.warpInv.IsValid()) continue;
        const double width = channel.band->GetXSize();
        const double height = channel.band->GetYSize();
        const double corners[5][2] = {{0, 0}, {width, 0}, {width, height}, {0, height}, {0, 0}};
        std::vector<tagXVector3> outline;
        const auto flush = [&] { // a piece between two places that the reference does not have
            if (outline.size() > 1)
                m_boundaryBuffer->AddPolyline(outline.data(), outline.size(), line);
            outline.clear();
        };
        for (int side = 0; side < 4; ++side) {
            for (int i = side == 0 ? 0 : 1; i <= kSteps; ++i) {
                const double part = static_cast<double>(i) / kSteps;
                double x =
                    corners[side][0] + (corners[side + 1][0] - corners[side][0]) * part - 0.5;
                double y =
                    corners[side][1] + (corners[side + 1][1] - corners[side][1]) * part - 0.5;
                channel.warpInv.Warp(x, y);
                if (std::isfinite(x) && std::isfinite(y))
                    outline.push_back({x, y, 0.0});
                else
                    flush();
            }
        }
        flush();
        if (m_mode != 0 && ch == 0 && m_channels[1].band && m_channels[2].band &&
            m_channels[1].band->GetXRSFile() == channel.band->GetXRSFile() &&
            m_channels[2].band->GetXRSFile() == channel.band->GetXRSFile())
            break; // one outline for bands of one file
    }
    m_boundaryBuffer->End();
    m_boundaryBuffer->Draw(&buffer);
}

int XDMComposite::Draw(XBackBuffer* buffer, double x0, double y0, double x1, double y1, int,
                       XDMComposite*, std::atomic<int>* abort)
{
    if (!std::isfinite(x0) || !std::isfinite(y0) || !std::isfinite(x1) || !std::isfinite(y1))
        return 0;
    SetDrawRange(x0, y0, x1, y1);
    m_drawMessage.Empty();
    if (!buffer) {
        buffer = m_backBuffer.get();
        buffer->Clear(static_cast<tagXColor>(m_backColor));
    }
    if (buffer->GetWidth() < 1 || buffer->GetHeight() < 1) return 0;
    const int isDone = m_mode == 3 ? DrawVector(*buffer, abort) : DrawRaster(*buffer, abort);
    if (m_isBoundaryDrawn && m_mode != 3 && !(abort && abort->load(std::memory_order_relaxed)))
        DrawBoundary(*buffer);
    if (abort && abort->load(std::memory_order_relaxed)) m_drawMessage.Empty();
    return isDone;
}
