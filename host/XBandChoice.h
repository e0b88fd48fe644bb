#pragma once

#include "host/XBandLabels.h"

#include <array>
#include <map>
#include <utility>
#include <vector>

class XDMComposite;
class XRSFile;

/// The stretch of one channel, as it is kept while another band stands in its place.
struct tagXChannelStretch
{
    int coverage = 0;
    int cutType = 0;
    double cutMin = 0;
    double cutMax = 0;
    int stretchType = 0;
    unsigned char intensity000 = 0;
    unsigned char intensity255 = 255;
    std::vector<std::pair<unsigned char, unsigned char>> points; ///< value, position
    std::array<std::array<unsigned char, 256>, 3> colorTable{};  ///< by channel
};

/// Which bands of one file its composite shows, gray or in three colours.
///
/// Bands count from 0; colours stand in the order red, green, blue. A band that comes back into a
/// channel comes with the stretch it had there; a band that is new in a channel gets the stretch of
/// a first look, and the other channels keep theirs. Going from colour to gray and back restores the
/// three bands. Knows no control.
class XBandChoice
{
public:
    /// Both must outlive this object. Chooses the bands and the stretch of a first look.
    XBandChoice(XRSFile* file, XDMComposite* composite);
    /// The same file read anew: takes over what `before` chose for its composite, which goes on
    /// showing it. Bands that the file has no longer give way to those of a first look.
    XBandChoice(XRSFile* file, XDMComposite* composite, const XBandChoice& before);

    int GetBandCount() const { return static_cast<int>(m_labels.size()); }
    const std::vector<tagXBandLabel>& GetLabels() const { return m_labels; }

    bool IsColour() const { return m_isColour; }
    int GetGrayBand() const { return m_gray; }
    int GetBand(int colour) const { return m_rgb[colour]; } ///< 0 red, 1 green, 2 blue

    /// Bands out of range change nothing.
    void SetGray(int band);
    void SetColour(int red, int green, int blue);
    void SetColourMode(bool isColour); ///< with the bands chosen last in that mode
    bool CanPreset(BandPreset preset) const;
    void ApplyPreset(BandPreset preset);

private:
    void ReadLabels();
    void Show();
    void PutBand(int channel, int band);
    void Remember(int channel);

    XRSFile* m_file;
    XDMComposite* m_composite;
    std::vector<tagXBandLabel> m_labels;
    bool m_isColour = false;
    int m_gray = 0;
    int m_rgb[3] = {0, 0, 0};
    int m_shown[3] = {-1, -1, -1}; // band in each channel of the composite
    // by (gray or channel, band): the same band may be stretched differently in two channels
    std::map<std::pair<int, int>, tagXChannelStretch> m_stretches;
};
