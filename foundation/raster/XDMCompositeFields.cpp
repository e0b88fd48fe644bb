#include "foundation/raster/XDMComposite.h"

#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMVand.h"
#include "foundation/raster/XDrawTables.h"
#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XVertBuffer.h"

#include <algorithm>

X_IMPLEMENT_CLASS(XDMComposite, XObject)

XDMComposite::XDMComposite(int mode)
    : m_mode(mode),
      m_backBuffer(std::make_unique<XBackBuffer>()),
      m_vertexBuffer(std::make_unique<XVertBuffer>()),
      m_boundaryBuffer(std::make_unique<XVertBuffer>()),
      m_tables(std::make_unique<XDrawTableCache>())
{}

XDMComposite::~XDMComposite() = default;

tagXCompositeChannel* XDMComposite::Channel(int ch)
{
    return ch >= 0 && ch < 3 ? &m_channels[ch] : nullptr;
}

const tagXCompositeChannel* XDMComposite::Channel(int ch) const
{
    return ch >= 0 && ch < 3 ? &m_channels[ch] : nullptr;
}

const tagXCompositeChannel& XDMComposite::GetChannel(int ch) const
{
    return m_channels[std::clamp(ch, 0, 2)];
}

int XDMComposite::GetNumberOfChannels() const
{
    return m_mode == 3 ? 0 : m_mode == 0 ? 1 : 3;
}

int XDMComposite::IsRasterChannel(int ch) const
{
    return ch >= 0 && ch < GetNumberOfChannels() && m_channels[ch].band;
}

void XDMComposite::SetVand(XDMVand* vand)
{
    m_vand = vand;
    UpdateVector();
    PlaceAll();
}

XDMBand* XDMComposite::GetBand(int ch) const
{
    const tagXCompositeChannel* channel = Channel(ch);
    return channel ? channel->band : nullptr;
}

void XDMComposite::SetBand(XDMBand* band, int ch)
{
    tagXCompositeChannel* channel = Channel(ch);
    if (!channel) return;
    const bool isOther = channel->band != band;
    channel->band = band;
    m_filtered[ch].reset();
    channel->NoteChange();
    channel->subset = tagXSubsetStatistics();
    if (channel->cutType != 0 || !channel->isCutChosen) channel->isCutPending = 1;
    if (isOther) channel->ForgetRange();
    channel->isWarpChosen = 0;
    UpdateWarps(ch);
    PlaceAll();
}

XDMBand* XDMComposite::GetFirstBand() const
{
    for (int ch = 0; ch < GetNumberOfChannels(); ++ch)
        if (m_channels[ch].band) return m_channels[ch].band;
    return nullptr;
}

// One-line accessors: a channel that is none reads as `none` and writes nothing.
#define X_CHANNEL_GET(Type, Name, field, none)                                                     \
    Type XDMComposite::Name(int ch) const                                                          \
    {                                                                                              \
        const tagXCompositeChannel* channel = Channel(ch);                                         \
        return channel ? channel->field : none;                                                    \
    }
#define X_CHANNEL_SET(Type, Name, field)                                                           \
    void XDMComposite::Name(Type value, int ch)                                                    \
    {                                                                                              \
        if (tagXCompositeChannel* channel = Channel(ch)) channel->field = value;                   \
    }

#define X_CHANNEL_SET_STRETCH(Type, Name, field)                                                   \
    void XDMComposite::Name(Type value, int ch)                                                    \
    {                                                                                              \
        tagXCompositeChannel* channel = Channel(ch);                                               \
        if (!channel) return;                                                                      \
        channel->field = value;                                                                    \
        channel->NoteChange();                                                                     \
    }

X_CHANNEL_GET(int, GetHideFlag, hide, 0)
X_CHANNEL_SET(int, SetHideFlag, hide)
X_CHANNEL_GET(int, GetStretchCoverage, coverage, 0)
X_CHANNEL_GET(int, GetCutType, cutType, 0)
X_CHANNEL_GET(double, GetCutMin, cutMin, kXNotSet)
X_CHANNEL_GET(double, GetCutMax, cutMax, kXNotSet)
X_CHANNEL_GET(int, GetStretchType, stretchType, 0)
X_CHANNEL_SET_STRETCH(int, SetStretchType, stretchType)
X_CHANNEL_GET(unsigned char, GetIntensity000, intensity000, 0)
X_CHANNEL_GET(unsigned char, GetIntensity255, intensity255, 0)
X_CHANNEL_SET_STRETCH(unsigned char, SetIntensity000, intensity000)
X_CHANNEL_SET_STRETCH(unsigned char, SetIntensity255, intensity255)
X_CHANNEL_GET(int, GetNumOfHistPts, points.GetCount(), 0)
X_CHANNEL_GET(const unsigned char*, GetLUT, lut.data(), nullptr)
X_CHANNEL_GET(const unsigned char*, GetCLT, clt.data(), nullptr)
X_CHANNEL_GET(unsigned char, GetDefValue, defValue, 0)
X_CHANNEL_SET(unsigned char, SetDefValue, defValue)
X_CHANNEL_GET(double, GetTransparentValue, transparent, kXNotSet)
X_CHANNEL_SET(double, SetTransparentValue, transparent)
X_CHANNEL_GET(double, GetSubsetMin, subset.min, kXNotSet)
X_CHANNEL_GET(double, GetSubsetMax, subset.max, kXNotSet)
X_CHANNEL_GET(double, GetSubsetMean, subset.mean, kXNotSet)
X_CHANNEL_GET(double, GetSubsetStd, subset.stdDev, kXNotSet)
X_CHANNEL_GET(const long long*, GetSubsetHistogram, subset.histogram.data(), nullptr)
X_CHANNEL_GET(long long, GetSubsetNumPixels, subset.count, 0)

#undef X_CHANNEL_GET
#undef X_CHANNEL_SET
#undef X_CHANNEL_SET_STRETCH

int XDMComposite::GetHideFlagVector() const
{
    return m_vand ? m_vand->GetHideFlag() : 0;
}

void XDMComposite::SetHideFlagVector(int flag)
{
    if (m_vand) m_vand->SetHideFlag(flag);
    m_clonedHide = -1;
}

void XDMComposite::GetHistogramMatchingCoeff(double& a, double& b, int ch) const
{
    const tagXCompositeChannel* channel = Channel(ch);
    a = channel ? channel->matchA : 1.0;
    b = channel ? channel->matchB : 0.0;
}

void XDMComposite::SetHistogramMatchingCoeff(double a, double b, int ch)
{
    tagXCompositeChannel* channel = Channel(ch);
    if (!channel) return;
    channel->matchA = a;
    channel->matchB = b;
}

void XDMComposite::SetStretchCoverage(int coverage, int ch)
{
    tagXCompositeChannel* channel = Channel(ch);
    if (!channel) return;
    channel->coverage = coverage;
    channel->NoteChange();
    if (channel->cutType != 0) channel->isCutPending = 1;
}

void XDMComposite::SetCutType(int type, int ch)
{
    tagXCompositeChannel* channel = Channel(ch);
    if (!channel) return;
    channel->cutType = type;
    channel->NoteChange();
    if (type != 0) channel->isCutPending = 1;
}

void XDMComposite::SetCutMin(double value, int ch)
{
    if (const tagXCompositeChannel* channel = Channel(ch)) SetCutRange(value, channel->cutMax, ch);
}

void XDMComposite::SetCutMax(double value, int ch)
{
    if (const tagXCompositeChannel* channel = Channel(ch)) SetCutRange(channel->cutMin, value, ch);
}

void XDMComposite::SetCutRange(double min, double max, int ch)
{
    tagXCompositeChannel* channel = Channel(ch);
    if (!channel) return;
    channel->cutMin = min;
    channel->cutMax = max;
    channel->isCutChosen = 1;
    channel->isCutPending = 0;
    channel->NoteChange();
}

XPtrList* XDMComposite::GetHistPtsList(int ch)
{
    tagXCompositeChannel* channel = Channel(ch);
    return channel ? &channel->points : nullptr;
}

void XDMComposite::AddHistPt(int ch, unsigned char value, unsigned char position)
{
    tagXCompositeChannel* channel = Channel(ch);
    if (!channel) return;
    channel->InsertPoint({position, value});
    channel->NoteChange();
}

void XDMComposite::RemoveAllHistPts(int ch)
{
    tagXCompositeChannel* channel = Channel(ch);
    if (!channel) return;
    channel->RemovePoints();
    channel->NoteChange();
}

void XDMComposite::SetCLT(const unsigned char* table, int ch)
{
    tagXCompositeChannel* channel = Channel(ch);
    if (channel && table) std::copy_n(table, 256, channel->clt.data());
}

int XDMComposite::GetNumberOfTransparentValue() const
{
    return static_cast<int>(std::count_if(
        std::begin(m_channels), std::end(m_channels),
        [](const tagXCompositeChannel& channel) { return channel.transparent != kXNotSet; }));
}

void XDMComposite::ResetTransparentValue()
{
    for (tagXCompositeChannel& channel : m_channels)
        channel.transparent = kXNotSet;
}

void XDMComposite::SetPixelBaseMode(int flag)
{
    const bool isOther = (m_isPixelBase != 0) != (flag != 0);
    m_isPixelBase = flag;
    if (!isOther) return;
    for (int ch = 0; ch < 3; ++ch)
        UpdateWarps(ch);
    PlaceAll();
}

void XDMComposite::SetDrawRange(double x0, double y0, double x1, double y1)
{
    m_drawRange[0] = std::min(x0, x1);
    m_drawRange[1] = std::min(y0, y1);
    m_drawRange[2] = std::max(x0, x1);
    m_drawRange[3] = std::max(y0, y1);
}

void XDMComposite::GetDrawRange(double& x0, double& y0, double& x1, double& y1) const
{
    if (m_drawRange[0] == kXNotSet) {
        GetBoundRect(x0, x1, y0, y1);
        return;
    }
    x0 = m_drawRange[0];
    y0 = m_drawRange[1];
    x1 = m_drawRange[2];
    y1 = m_drawRange[3];
}

int XDMComposite::GetDIBits(tagBITMAPINFO& info) const
{
    return m_backBuffer->GetDIBits(info) ? 1 : 0;
}

void XDMComposite::CloneXDMComposite(const XDMComposite* source)
{
    if (!source || source == this) return;
    m_name = source->m_name;
    m_mode = source->m_mode;
    m_vand = source->m_vand;
    for (int ch = 0; ch < 3; ++ch)
        m_channels[ch] = source->m_channels[ch];
    m_isMatching = source->m_isMatching;
    m_backColor = source->m_backColor;
    m_alpha = source->m_alpha;
    m_isTransparent = source->m_isTransparent;
    m_isTransparentAsOne = source->m_isTransparentAsOne;
    std::copy_n(source->m_drawRange, 4, m_drawRange);
    m_vertexBuffer->SetRecording(source->m_vertexBuffer->GetRecording());
    m_isVectorStale = source->m_isVectorStale;
    m_clonedHide = source->m_clonedHide;
    if (!m_isVectorStale && m_clonedHide < 0) m_clonedHide = source->GetHideFlagVector();
    m_target = source->m_target;
    m_placementMiss = source->m_placementMiss;
    m_vectorWarp = source->m_vectorWarp;
    std::copy_n(source->m_filtered, 3, m_filtered);
    m_isPixelBase = source->m_isPixelBase;
    m_isBoundaryDrawn = source->m_isBoundaryDrawn;
    m_boundaryColor = source->m_boundaryColor;
    m_isInterpolated = source->m_isInterpolated;
    m_filterType = source->m_filterType;
    m_kernelSize = source->m_kernelSize;
    *m_tables = *source->m_tables;
    m_drawLevel = -1;
    m_isUpdateNeeded = 1;
}

void XDMComposite::CopyDisplaySettings(const XDMComposite* source)
{
    if (!source || source == this) return;
    // a gray picture sends one level through three colour tables, the others each channel through
    // its own: between the two kinds the tables would mean something else
    const bool isSameKind = (source->m_mode == 0) == (m_mode == 0);
    for (int ch = 0; ch < 3; ++ch) {
        const auto own = m_channels[ch].clt;
        const tagXCompositeChannel& from = source->m_channels[source->m_mode == 0 ? 0 : ch];
        m_channels[ch].CopyDisplay(from);
        m_channels[ch].clt = isSameKind ? source->m_channels[ch].clt : own;
        if (m_channels[ch].band != from.band) m_channels[ch].ForgetRange();
    }
    m_isMatching = source->m_isMatching;
    m_alpha = source->m_alpha;
    m_isTransparent = source->m_isTransparent;
    m_isTransparentAsOne = source->m_isTransparentAsOne;
    m_isBoundaryDrawn = source->m_isBoundaryDrawn;
    m_boundaryColor = source->m_boundaryColor;
    m_isInterpolated = source->m_isInterpolated;
    m_filterType = source->m_filterType;
    m_kernelSize = source->m_kernelSize;
    m_isUpdateNeeded = 1;
}
