#include "foundation/raster/XDefaultDisplay.h"

#include "foundation/raster/XBlockRun.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XGaussianRange.h"
#include "foundation/raster/XNullSample.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XStretchLUT.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

namespace {

constexpr double kLowPart = 0.02;
constexpr double kHighPart = 0.98;

/// Takes some samples of a level, evenly spread, those that have data. A cut at two per cent of them
/// is off by a sixth of a per cent of the pixels (standard error), which nobody sees.
///
/// Every second tile is read, all of them where they are few. A drawing of the level finds those at
/// hand and decodes the others while it draws.
class XLevelSample
{
public:
    XLevelSample(XDMBand& band, int level)
        : m_band(band),
          m_level(level),
          m_null(XfnNullNumber(band.GetNullValue(), band.GetDataType()))
    {
        band.GetTileSize(level, m_tileWidth, m_tileHeight);
        int width = 0, height = 0;
        band.GetLevelSize(level, width, height);
        const int across = (width - 1) / m_tileWidth + 1;
        const int down = (height - 1) / m_tileHeight + 1;
        constexpr int kFew = 16;
        const bool isWhole = static_cast<std::int64_t>(across) * down < kFew;
        for (int ty = 0; ty < down; ++ty)
            for (int tx = isWhole ? 0 : ty % 2; tx < across; tx += isWhole ? 1 : 2)
                m_places.emplace_back(tx, ty);
        const double pixels = static_cast<double>(width) * height / (isWhole ? 1.0 : 2.0);
        constexpr double kEnough = 8192.0;
        m_step = static_cast<int>(std::ceil(std::sqrt(std::max(pixels / kEnough, 1.0))));
    }

    /// @return 0 when a part cannot be read
    int Read(const std::atomic<int>* abort, std::vector<double>& values)
    {
        values.clear();
        const int count = static_cast<int>(m_places.size());
        std::vector<std::vector<double>> parts(m_places.size());
        const auto work = [&](int piece, int, XString& message) {
            const auto [tx, ty] = m_places[static_cast<std::size_t>(piece)];
            const auto tile = m_band.GetTile(m_level, tx, ty, abort, message);
            if (tile) Take(*tile, tx, ty, parts[static_cast<std::size_t>(piece)]);
            return tile ? 1 : 0;
        };
        tagXSaveControl control;
        control.abort = abort;
        XString message;
        if (IsAtHand()) { // as of the further bands of an interleaved file
            for (int piece = 0; piece < count; ++piece)
                if (!work(piece, 0, message)) return 0;
        } else if (!XBlockRun(control).Run(count, work, nullptr, message)) {
            return 0;
        }
        for (const std::vector<double>& part : parts)
            values.insert(values.end(), part.begin(), part.end());
        return 1;
    }

private:
    bool IsAtHand() const
    {
        return std::all_of(m_places.begin(), m_places.end(), [this](const auto& place) {
            return m_band.IsTileAtHand(m_level, place.first, place.second);
        });
    }

    /// Calls take(index) for each sample of a tile that is taken.
    template <class F>
    void Walk(const XTile& tile, int tx, int ty, F&& take) const
    {
        const auto next = [this](int position) { return (m_step - position % m_step) % m_step; };
        for (int y = next(ty * m_tileHeight); y < tile.GetHeight(); y += m_step) {
            // lines begin at different columns, lest all of them meet the same stripes
            const int shift = (ty * m_tileHeight + y) / m_step * 5 % m_step;
            const std::size_t line = static_cast<std::size_t>(y) * tile.GetWidth();
            for (int x = next(tx * m_tileWidth + shift); x < tile.GetWidth(); x += m_step)
                take(line + static_cast<std::size_t>(x));
        }
    }

    void Take(const XTile& tile, int tx, int ty, std::vector<double>& values) const
    {
        const int type = tile.GetDataType();
        const void* data = tile.GetData();
        XfnDispatchRealType<int>(XfnGetPartType(type), [&]<class T>(const T*) {
            const T* samples = static_cast<const T*>(data);
            const bool isReal = XfnIsRealType(type) != 0;
            Walk(tile, tx, ty, [&](std::size_t i) {
                const double re = static_cast<double>(samples[isReal ? i : 2 * i]);
                const double im = isReal ? 0.0 : static_cast<double>(samples[2 * i + 1]);
                const double value = isReal ? re : std::hypot(re, im);
                if (XfnIsSet(value) && !(re == m_null && im == 0.0)) values.push_back(value);
            });
            return 1;
        });
    }

    XDMBand& m_band;
    const int m_level;
    const double m_null;
    int m_tileWidth = 1, m_tileHeight = 1;
    int m_step = 1;
    std::vector<std::pair<int, int>> m_places;
};

/// Samples of a coarse level.
std::vector<double> ReadSample(XDMBand& band, const std::atomic<int>* abort)
{
    constexpr double kEnough = 300000.0;
    int level = 0;
    double pixels = static_cast<double>(band.GetXSize()) * band.GetYSize();
    for (; level + 1 < band.GetNumOfLevels() && pixels > kEnough; ++level)
        pixels /= 4.0;
    std::vector<double> values;
    XLevelSample(band, level).Read(abort, values);
    return values;
}

/// The value below which `part` of the values lie; only those of its bin are put in order.
double QuantileOf(const std::vector<double>& values, double part)
{
    auto rank = static_cast<std::size_t>(part * static_cast<double>(values.size() - 1) + 0.5);
    const auto [least, most] = std::minmax_element(values.begin(), values.end());
    constexpr int kBins = 1024;
    const double low = *least, scale = (kBins - 1) / (*most - *least);
    std::vector<double> bin;
    if (std::isfinite(scale) && scale > 0.0) {
        const auto binOf = [low, scale](double value) {
            return static_cast<std::size_t>((value - low) * scale);
        };
        std::array<std::size_t, kBins> counts{};
        for (const double value : values)
            ++counts[binOf(value)];
        std::size_t found = 0;
        for (; rank >= counts[found]; ++found)
            rank -= counts[found];
        for (const double value : values)
            if (binOf(value) == found) bin.push_back(value);
    } else {
        bin = values; // all the same, or further apart than a number can tell
    }
    const auto place = bin.begin() + static_cast<std::ptrdiff_t>(rank);
    std::nth_element(bin.begin(), place, bin.end());
    return *place;
}

/// 0 when the band has no data.
int CalcPercentiles(XDMBand& band, double& low, double& high, const std::atomic<int>* abort)
{
    const auto numbers = band.GetStatistics(abort);
    if (!numbers->IsSet()) return 0;
    low = numbers->min;
    high = numbers->max;
    XfnCalcHistogramRange(numbers->min, numbers->max, numbers->histogram.data(), kLowPart,
                          kHighPart, low, high);
    // a few outliers stretch the histogram until the rest of the image falls into a handful of bins
    constexpr double kNarrow = 16.0 / 255.0;
    if (high - low > (numbers->max - numbers->min) * kNarrow || numbers->min == numbers->max)
        return 1;
    const std::vector<double> values = ReadSample(band, abort);
    if (values.size() < 100) return 1;
    const double sampleLow = QuantileOf(values, kLowPart);
    const double sampleHigh = QuantileOf(values, kHighPart);
    if (!(sampleLow < sampleHigh)) return 1; // more than 96 % are one value
    low = sampleLow;
    high = sampleHigh;
    return 1;
}

/// The same from some pixels of a level. Below 0 when it cannot be read.
int CalcLevelPercentiles(XDMBand& band, int level, double& low, double& high,
                         const std::atomic<int>* abort)
{
    std::vector<double> values;
    if (!XLevelSample(band, level).Read(abort, values)) return -1;
    if (values.empty()) return 0;
    low = QuantileOf(values, kLowPart);
    high = QuantileOf(values, kHighPart);
    if (low < high) return 1;
    const auto [least, most] = std::minmax_element(values.begin(), values.end());
    low = *least; // nearly all of it is one value
    high = *most;
    return 1;
}

/// The coarsest level of at least a million pixels: of the size of a screen, so most likely the one
/// that is drawn first.
int ChooseSampleLevel(const XDMBand& band)
{
    constexpr std::int64_t kScreen = 1000000;
    for (int level = band.GetLevel(); level > 0; --level) {
        int width = 0, height = 0;
        band.GetLevelSize(level, width, height);
        if (static_cast<std::int64_t>(width) * height >= kScreen) return level;
    }
    return 0;
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

/// Finds the cut range of a band: 0 when it has no data, below 0 when it cannot be read.
using Percentiles = std::function<int(XDMBand& band, double& low, double& high)>;

/// Measured bytes often fill a small part of their range, and would make a dull first picture.
int WidenFaintBytes(const Percentiles& calculate, XDMBand& band, double& low, double& high)
{
    constexpr double kFaint = 128.0;
    double cutLow = low, cutHigh = high;
    const int result = calculate(band, cutLow, cutHigh);
    if (result <= 0 || !(cutHigh > cutLow) || cutHigh - cutLow >= kFaint) return result;
    low = cutLow;
    high = cutHigh;
    return result;
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

/// @return 0 when a band cannot be read
int SetStretch(XDMComposite& composite, const Percentiles& calculate)
{
    SetIdentityCLT(composite);
    for (int ch = 0; ch < composite.GetNumberOfChannels(); ++ch) {
        XDMBand* band = composite.GetBand(ch);
        if (!band) continue;
        double low = 0.0, high = 255.0;
        int result = 0;
        // a table of more classes than there are display levels would show most of them alike
        const bool fits = band->GetDataType() == kXUInt8 || band->GetNumOfGIS() <= 256;
        const std::uint32_t* table =
            composite.GetMode() == 0 && fits ? band->GetColorTable() : nullptr;
        if (table)
            SetColorTableCLT(composite, table);
        else if (band->GetDataType() != kXUInt8)
            result = calculate(*band, low, high);
        else if (!IsPhotograph(*band))
            result = WidenFaintBytes(calculate, *band, low, high);
        if (result < 0) return 0;
        composite.SetStretchCoverage(0, ch);
        composite.SetCutType(0, ch);
        composite.SetCutRange(low, high, ch);
        composite.SetStretchType(kXStretchLinear, ch);
        composite.SetIntensity000(0, ch);
        composite.SetIntensity255(255, ch);
    }
    return 1;
}

} // namespace

int XfnDefaultStretch(XDMComposite* composite, int level, const std::atomic<int>* abort)
{
    if (!composite) return 0;
    return SetStretch(*composite, [level, abort](XDMBand& band, double& low, double& high) {
        return CalcLevelPercentiles(band, std::min(level, band.GetLevel()), low, high, abort);
    });
}

void XfnDefaultStretch(XDMComposite* composite, const std::atomic<int>* abort)
{
    if (!composite) return;
    SetStretch(*composite, [abort](XDMBand& band, double& low, double& high) {
        const int level = ChooseSampleLevel(band);
        if (!band.IsVirtualLevel(level)) { // known numbers or not: the same picture at each call
            const int result = CalcLevelPercentiles(band, level, low, high, abort);
            if (result >= 0) return result;
        }
        return CalcPercentiles(band, low, high, abort);
    });
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
