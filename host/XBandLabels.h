#pragma once

#include <QString>

#include <vector>

/// One band as lists name it.
struct tagXBandLabel
{
    QString name;            ///< empty when the file gives none
    double wavelengthNm = 0; ///< centre, in nanometres; 0 when unknown
};

/// "27 - 662 nm", "3 - Red", "3 - Red, 662 nm", or "3": number counted from 1 first. Above
/// 10 micrometres the wavelength is written in micrometres.
QString XfnBandLabelText(int index, const tagXBandLabel& label);

/// The band that a typed text means: a number counted from 1 ("27"), a wavelength with its unit
/// ("0.66 um", "662nm", "662,4 nm"), which finds the nearest centre, a whole label, or the name.
/// @return the index from 0, or -1 when nothing fits
int XfnFindBand(const QString& text, const std::vector<tagXBandLabel>& labels);

/// A choice of three bands by wavelength.
enum class BandPreset { Natural, FalseColour, ShortWave };

/// The bands nearest to the wavelengths of a preset: natural 660/550/470 nm, false colour
/// 840/660/550 nm, short wave 1650/840/660 nm.
/// @return false, and `rgb` unchanged, when a band would be off by more than 60 nm (150 nm in the
///         short wave) or two would be the same
bool XfnPresetBands(BandPreset preset, const std::vector<tagXBandLabel>& labels, int (&rgb)[3]);
