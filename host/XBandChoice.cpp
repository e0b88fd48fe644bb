#include "host/XBandChoice.h"

#include "foundation/base/XPtrList.h"
#include "foundation/base/XSentinels.h"
#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XDefaultDisplay.h"
#include "foundation/raster/XRSFile.h"

#include <algorithm>

namespace {

constexpr int kGraySlot = 3;

tagXChannelStretch ReadStretch(XDMComposite& composite, int channel)
{
    tagXChannelStretch s;
    s.coverage = composite.GetStretchCoverage(channel);
    s.cutType = composite.GetCutType(channel);
    s.cutMin = composite.GetCutMin(channel);
    s.cutMax = composite.GetCutMax(channel);
    s.stretchType = composite.GetStretchType(channel);
    s.intensity000 = composite.GetIntensity000(channel);
    s.intensity255 = composite.GetIntensity255(channel);
    XPtrList* points = composite.GetHistPtsList(channel);
    if (points) {
        for (auto position = points->GetHeadPosition(); position;) {
            const auto* point = static_cast<const tagXHistPt*>(points->GetNext(position));
            s.points.emplace_back(point->value, point->position);
        }
    }
    for (int i = 0; i < 3; ++i) {
        const unsigned char* table = composite.GetCLT(i);
        std::copy(table, table + 256, s.colorTable[static_cast<std::size_t>(i)].begin());
    }
    return s;
}

// A gray composite sends one level through all three colour tables, so its record has all of them.
void WriteStretch(XDMComposite& composite, int channel, const tagXChannelStretch& s, bool isGray)
{
    composite.SetStretchCoverage(s.coverage, channel);
    composite.SetCutType(s.cutType, channel);
    composite.SetStretchType(s.stretchType, channel);
    composite.SetIntensity000(s.intensity000, channel);
    composite.SetIntensity255(s.intensity255, channel);
    composite.RemoveAllHistPts(channel);
    for (const auto& [value, position] : s.points)
        composite.AddHistPt(channel, value, position);
    composite.SetCutRange(s.cutMin, s.cutMax, channel); // last: the cut type asks for a new range
    for (int i = 0; i < 3; ++i)
        if (isGray || i == channel)
            composite.SetCLT(s.colorTable[static_cast<std::size_t>(i)].data(), i);
}

tagXChannelStretch FirstStretch(XDMBand* band, bool isGray)
{
    XDMComposite scratch(isGray ? 0 : 1);
    for (int channel = 0; channel < (isGray ? 1 : 3); ++channel)
        scratch.SetBand(band, channel);
    XfnDefaultStretch(&scratch);
    return ReadStretch(scratch, 0);
}

} // namespace

XBandChoice::XBandChoice(XRSFile* file, XDMComposite* composite)
    : m_file(file), m_composite(composite)
{
    ReadLabels();
    int rgb[3] = {0, 0, 0};
    const int mode = XfnDefaultBands(m_file, rgb);
    m_isColour = mode == 1;
    m_gray = rgb[0];
    for (int i = 0; i < 3; ++i)
        m_rgb[i] = m_isColour ? rgb[i] : std::min(i, std::max(0, GetBandCount() - 1));
    Show();
}

XBandChoice::XBandChoice(XRSFile* file, XDMComposite* composite, const XBandChoice& before)
    : XBandChoice(before)
{
    for (int channel = 0; channel < 3; ++channel)
        Remember(channel); // while the bands of before are still shown
    m_file = file;
    m_composite = composite;
    m_labels.clear();
    ReadLabels();
    const auto isThere = [this](int band) { return band >= 0 && band < GetBandCount(); };
    if (!isThere(m_gray) || !isThere(m_rgb[0]) || !isThere(m_rgb[1]) || !isThere(m_rgb[2])) {
        for (int channel = 0; channel < 3; ++channel)
            m_composite->SetBand(nullptr, channel);
        *this = XBandChoice(file, composite);
        return;
    }
    std::fill(m_shown, m_shown + 3, -1); // the bands have other objects now
    const int mode = m_isColour ? 1 : 0;
    m_composite->SetMode(mode);
    for (int channel = 0; channel < 3; ++channel)
        PutBand(channel, m_isColour ? m_rgb[2 - channel] : channel == 0 ? m_gray : -1);
    m_composite->UpdateNeeded();
}

void XBandChoice::ReadLabels()
{
    for (int i = 0; i < m_file->GetNumOfBands(); ++i) {
        tagXBandLabel label;
        if (XDMBand* band = m_file->GetBandAt(i)) {
            label.name = XfnToQString(band->GetBandName());
            if (XfnIsSet(band->GetWaveLength())) label.wavelengthNm = band->GetWaveLength();
        }
        m_labels.push_back(label);
    }
}

void XBandChoice::Show()
{
    const int mode = m_isColour ? 1 : 0;
    const bool isOtherMode = m_composite->GetMode() != mode;
    for (int channel = 0; channel < 3; ++channel)
        Remember(channel);
    m_composite->SetMode(mode);
    for (int channel = 0; channel < 3; ++channel) {
        const int band = m_isColour ? m_rgb[2 - channel] : channel == 0 ? m_gray : -1;
        if (isOtherMode || band != m_shown[channel]) PutBand(channel, band);
    }
    m_composite->UpdateNeeded();
}

void XBandChoice::Remember(int channel)
{
    if (m_shown[channel] < 0) return;
    const int slot = m_composite->GetMode() == 0 ? kGraySlot : channel;
    m_stretches[{slot, m_shown[channel]}] = ReadStretch(*m_composite, channel);
}

void XBandChoice::PutBand(int channel, int band)
{
    m_shown[channel] = band;
    XDMBand* source = band >= 0 ? m_file->GetBandAt(band) : nullptr;
    m_composite->SetBand(source, channel);
    if (!source) return;
    const auto kept = m_stretches.find({m_isColour ? channel : kGraySlot, band});
    WriteStretch(*m_composite, channel,
                 kept != m_stretches.end() ? kept->second : FirstStretch(source, !m_isColour),
                 !m_isColour);
}

void XBandChoice::SetGray(int band)
{
    if (band < 0 || band >= GetBandCount()) return;
    m_gray = band;
    m_isColour = false;
    Show();
}

void XBandChoice::SetColour(int red, int green, int blue)
{
    for (const int band : {red, green, blue})
        if (band < 0 || band >= GetBandCount()) return;
    m_rgb[0] = red;
    m_rgb[1] = green;
    m_rgb[2] = blue;
    m_isColour = true;
    Show();
}

void XBandChoice::SetColourMode(bool isColour)
{
    if (isColour)
        SetColour(m_rgb[0], m_rgb[1], m_rgb[2]);
    else
        SetGray(m_gray);
}

bool XBandChoice::CanPreset(BandPreset preset) const
{
    int rgb[3] = {0, 0, 0};
    return XfnPresetBands(preset, m_labels, rgb);
}

void XBandChoice::ApplyPreset(BandPreset preset)
{
    int rgb[3] = {0, 0, 0};
    if (XfnPresetBands(preset, m_labels, rgb)) SetColour(rgb[0], rgb[1], rgb[2]);
}
