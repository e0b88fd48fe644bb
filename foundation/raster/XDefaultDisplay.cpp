#include "foundation/raster/XDefaultDisplay.h"

#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XGaussianRange.h"
#include "foundation/raster/XNullSample.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XStretchLUT.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <vector>

namespace {

constexpr double kLowPart = 0.02;
constexpr double kHighPart = 0.98;

/// The values of a coarse level that have data, at most some hundred thousand of them.
std::vector<double> ReadSample(XDMBand& band)
{
    constexpr double kEnough = 300000.0;
    int level = 0;
    double pixels = static_cast<double>(band.GetXSize()) * band.GetYSize();
    for (; level + 1 < band.GetNumOfLevels() && pixels > kEnough; ++level)
        pixels /= 4.0;
    tagXArr2* block = nullptr;
    const int isRead =
        band.ReadSubset(block, level, 0, band.GetXSize() - 1, 0, band.GetYSize() - 1, nullptr);
    const std::unique_ptr<tagXArr2> owner(block);
    std::vector<double> values;
    if (!isRead) return values;
    const std::size_t size = static_cast<std::size_t>(XfnGetDataTypeSize(block->dataType));
    const std::size_t count =
        static_cast<std::size_t>(block->width) * static_cast<std::size_t>(block->height);
    const double null = XfnNullNumber(band.GetNullValue(), block->dataType);
    values.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        double re = 0.0, im = 0.0;
        XfnReadComplexSample(block->base + i * size, block->dataType, re, im);
        const double value = XfnIsComplexType(block->dataType) ? std::hypot(re, im) : re;
        if (XfnIsSet(value) && !(re == null && im == 0.0)) values.push_back(value);
    }
    return values;
}

double QuantileOf(std::vector<double>& values, double part)
{
    const auto place = values.begin() + static_cast<std::ptrdiff_t>(
                                            part * static_cast<double>(values.size() - 1) + 0.5);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

/// 0 when the band has no data.
int CalcPercentiles(XDMBand& band, double& low, double& high)
{
    const auto numbers = band.GetStatistics();
    if (!numbers->IsSet()) return 0;
    low = numbers->min;
    high = numbers->max;
    XfnCalcHistogramRange(numbers->min, numbers->max, numbers->histogram.data(), kLowPart,
                          kHighPart, low, high);
    // a few outliers stretch the histogram until the rest of the image falls into a handful of bins
    constexpr double kNarrow = 16.0 / 255.0;
    if (high - low > (numbers->max - numbers->min) * kNarrow || numbers->min == numbers->max)
        return 1;
    std::vector<double> values = ReadSample(band);
    if (values.size() < 100) return 1;
    const double sampleLow = QuantileOf(values, kLowPart);
    const double sampleHigh = QuantileOf(values, kHighPart);
    if (!(sampleLow < sampleHigh)) return 1; // more than 96 % are one value
    low = sampleLow;
    high = sampleHigh;
    return 1;
}

void SetIdentityCLT(XDMComposite& composite)
{
    unsigned char identity[256];
    std::iota(identity, identity + 256, static_cast<unsigned char>(0));
    for (int ch = 0; ch < 3; ++ch)
        composite.SetCLT(identity, ch);
}

void SetColorTableCLT(XDMComposite& composite, const std::uint32_t* table)
{
    for (int ch = 0; ch < 3; ++ch) {
        const int shift = 8 * (2 - ch); // channel 0 is blue, and red stands lowest in the word
        unsigned char component[256];
        for (int i = 0; i < 256; ++i)
            component[i] = static_cast<unsigned char>(table[i] >> shift & 0xFF);
        composite.SetCLT(component, ch);
    }
}

int IsColour(const XDMBand& band)
{
    constexpr int kTable = 2, kAlpha = 6;
    return band.GetColorInterpretation() != kTable && band.GetColorInterpretation() != kAlpha &&
           !band.HasColorTable();
}

/// Bands that a file calls red, green or blue were made to be looked at as they are.
int IsPhotograph(const XDMBand& band)
{
    constexpr int kRed = 3, kBlue = 5;
    return band.GetColorInterpretation() >= kRed && band.GetColorInterpretation() <= kBlue;
}

/// Measured bytes often fill a small part of their range, and would make a dull first picture.
void WidenFaintBytes(XDMBand& band, double& low, double& high)
{
    constexpr double kFaint = 128.0;
    double cutLow = low, cutHigh = high;
    if (!CalcPercentiles(band, cutLow, cutHigh)) return;
    if (!(cutHigh > cutLow) || cutHigh - cutLow >= kFaint) return;
    low = cutLow;
    high = cutHigh;
}

int FindRole(const XRSFile& file, int role)
{
    for (int i = 0; i < file.GetNumOfBands(); ++i)
        if (file.GetBandAt(i)->GetColorInterpretation() == role) return i;
    return -1;
}

/// The band nearest to a wavelength among `bands`, the first of equals.
int FindWavelength(const XRSFile& file, const std::vector<int>& bands, double nanometres)
{
    int best = -1;
    double bestOff = HUGE_VAL;
    for (const int i : bands) {
        const double off = std::fabs(file.GetBandAt(i)->GetWaveLength() - nanometres);
        if (!(off < bestOff)) continue;
        best = i;
        bestOff = off;
    }
    return best;
}

} // namespace

void XfnDefaultStretch(XDMComposite* composite)
{
    if (!composite) return;
    SetIdentityCLT(*composite);
    for (int ch = 0; ch < composite->GetNumberOfChannels(); ++ch) {
        XDMBand* band = composite->GetBand(ch);
        if (!band) continue;
        double low = 0.0, high = 255.0;
        // a table of more classes than there are display levels would show most of them alike
        const bool fits = band->GetDataType() == kXUInt8 || band->GetNumOfGIS() <= 256;
        const std::uint32_t* table =
            composite->GetMode() == 0 && fits ? band->GetColorTable() : nullptr;
        if (table)
            SetColorTableCLT(*composite, table);
        else if (band->GetDataType() != kXUInt8)
            CalcPercentiles(*band, low, high);
        else if (!IsPhotograph(*band))
            WidenFaintBytes(*band, low, high);
        composite->SetStretchCoverage(0, ch);
        composite->SetCutType(0, ch);
        composite->SetCutRange(low, high, ch);
        composite->SetStretchType(kXStretchLinear, ch);
        composite->SetIntensity000(0, ch);
        composite->SetIntensity255(255, ch);
    }
}

int XfnDefaultBands(const XRSFile* file, int (&rgb)[3])
{
    rgb[0] = rgb[1] = rgb[2] = 0;
    if (!file || file->GetNumOfBands() < 1) return -1;
    std::vector<int> colours, known;
    for (int i = 0; i < file->GetNumOfBands(); ++i) {
        const XDMBand& band = *file->GetBandAt(i);
        if (!IsColour(band)) continue;
        colours.push_back(i);
        if (XfnIsSet(band.GetWaveLength()) && band.GetWaveLength() > 0.0) known.push_back(i);
    }
    if (colours.size() < 3) {
        if (!colours.empty()) rgb[0] = rgb[1] = rgb[2] = colours[0];
        return 0;
    }
    int found[3] = {FindRole(*file, 3), FindRole(*file, 4), FindRole(*file, 5)};
    if (found[0] >= 0 && found[1] >= 0 && found[2] >= 0) {
        std::copy(std::begin(found), std::end(found), std::begin(rgb));
        return 1;
    }
    if (file->GetHeaderBands(found)) {
        std::copy(std::begin(found), std::end(found), std::begin(rgb));
        return 1;
    }
    if (known.size() >= 3) {
        rgb[0] = FindWavelength(*file, known, 660.0);
        rgb[1] = FindWavelength(*file, known, 550.0);
        rgb[2] = FindWavelength(*file, known, 470.0);
        return 1;
    }
    std::copy_n(colours.begin(), 3, std::begin(rgb));
    return 1;
}
