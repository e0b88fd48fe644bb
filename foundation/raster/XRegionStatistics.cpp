#include "foundation/raster/XRegionStatistics.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/raster/XSubsetStatElem.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace {

constexpr std::uint32_t kVersion = 1;
constexpr std::uint32_t kMostBands = 0xFFFF; // squared, this still fits the count of products
// one band: its count, four moments, two limits, 256 bins and a mean
constexpr std::size_t kBandBytes = 8 * (1 + 4 + 2 + 256 + 1);

/// Calls f with every number in the order of the file.
template <class F>
void ForEachNumber(tagXRegionStatistics& statistics, F&& f)
{
    f(statistics.pointCount);
    for (tagXRegionBand& band : statistics.bands) {
        tagXMoments& m = band.moments;
        f(m.count);
        for (double* number :
             {&m.min, &m.max, &m.mean, &m.squares, &band.histogramMin, &band.histogramMax})
            f(*number);
        for (long long& bin : band.histogram)
            f(bin);
    }
    f(statistics.joint.count);
    for (double& mean : statistics.joint.means)
        f(mean);
    for (double& product : statistics.joint.coMoments)
        f(product);
}

std::size_t PlaceOf(int i, int j, std::size_t bands)
{
    return static_cast<std::size_t>(i) * bands + static_cast<std::size_t>(j);
}

bool IsSound(const tagXRegionBand& band)
{
    const tagXMoments& m = band.moments;
    if (m.count < 0) return false;
    if (m.count > 0) {
        const bool isSound = XfnIsSet(m.min) && XfnIsSet(m.max) && m.min <= m.max &&
                             m.mean >= m.min && m.mean <= m.max && m.squares >= 0.0 &&
                             std::isfinite(m.squares);
        if (!isSound) return false;
    }
    long long left = m.count; // subtracted, so that no sum of lying counts can wrap
    for (const long long n : band.histogram) {
        if (n < 0 || n > left) return false;
        left -= n;
    }
    if (left == m.count) return true; // an empty histogram needs no limits
    return XfnIsSet(band.histogramMin) && XfnIsSet(band.histogramMax) &&
           band.histogramMin <= band.histogramMax;
}

bool IsSound(const tagXJointMoments& joint)
{
    const std::size_t n = joint.means.size();
    if (joint.count < 0 || joint.coMoments.size() != n * n) return false;
    for (std::size_t i = 0; i < n; ++i) {
        if (!std::isfinite(joint.means[i]) || !(joint.coMoments[i * n + i] >= 0.0)) return false;
        for (std::size_t j = 0; j <= i; ++j) {
            const double value = joint.coMoments[i * n + j];
            if (!std::isfinite(value) || value != joint.coMoments[j * n + i]) return false;
        }
    }
    return true;
}

} // namespace

void tagXRegionBand::Merge(const tagXRegionBand& other)
{
    moments.Merge(other.moments);
    if (!XfnIsSet(other.histogramMin)) return;
    if (!XfnIsSet(histogramMin)) {
        histogramMin = other.histogramMin;
        histogramMax = other.histogramMax;
    }
    std::array<long long, 256> moved = other.histogram;
    if (other.histogramMin != histogramMin || other.histogramMax != histogramMax)
        XfnMoveHistogram(other.histogramMin, other.histogramMax, histogramMin, histogramMax,
                         moved.data());
    for (std::size_t i = 0; i < moved.size(); ++i)
        histogram[i] += moved[i];
}

void tagXJointMoments::Reset(int bands)
{
    const auto n = static_cast<std::size_t>(std::max(bands, 0));
    count = 0;
    means.assign(n, 0.0);
    coMoments.assign(n * n, 0.0);
}

int tagXJointMoments::Merge(const tagXJointMoments& other)
{
    const std::size_t bands = means.size();
    if (other.means.size() != bands) return 0;
    if (other.count == 0) return 1;
    const double n = static_cast<double>(count) + static_cast<double>(other.count);
    const double share = static_cast<double>(other.count) / n;
    const double weight = static_cast<double>(count) * share;
    std::vector<double> delta(bands);
    for (std::size_t i = 0; i < bands; ++i)
        delta[i] = count ? other.means[i] - means[i] : 0.0;
    for (std::size_t i = 0; i < bands; ++i)
        for (std::size_t j = 0; j < bands; ++j)
            coMoments[i * bands + j] +=
                other.coMoments[i * bands + j] + delta[i] * delta[j] * weight;
    for (std::size_t i = 0; i < bands; ++i)
        means[i] = count ? means[i] + delta[i] * share : other.means[i];
    count += other.count;
    return 1;
}

double tagXJointMoments::GetCovariance(int i, int j) const
{
    if (i < 0 || j < 0 || i >= GetNumBands() || j >= GetNumBands() || count < 2) return 0.0;
    return coMoments[PlaceOf(i, j, means.size())] / static_cast<double>(count - 1);
}

double tagXJointMoments::GetCorrelation(int i, int j) const
{
    // roots before the product: the product of two squares may leave the range of a double
    const double deviations = std::sqrt(GetCovariance(i, i)) * std::sqrt(GetCovariance(j, j));
    if (!(deviations > 0.0)) return 0.0;
    return i == j ? 1.0 : std::clamp(GetCovariance(i, j) / deviations, -1.0, 1.0);
}

int tagXRegionStatistics::IsConsistent() const
{
    if (pointCount < 0 || joint.means.size() != bands.size() || !IsSound(joint)) return 0;
    return std::all_of(bands.begin(), bands.end(), [](const auto& band) { return IsSound(band); });
}

int tagXRegionStatistics::Merge(const tagXRegionStatistics& other)
{
    if (other.bands.size() != bands.size() || !joint.Merge(other.joint)) return 0;
    pointCount += other.pointCount;
    for (std::size_t i = 0; i < bands.size(); ++i)
        bands[i].Merge(other.bands[i]);
    return 1;
}

const tagXRegionBand* tagXRegionStatistics::FindBand(int band) const
{
    const bool isInside = band >= 0 && band < GetNumBands();
    return isInside ? &bands[static_cast<std::size_t>(band)] : nullptr;
}

double tagXRegionStatistics::GetMin(int band) const
{
    const tagXRegionBand* found = FindBand(band);
    return found && found->moments.count > 0 ? found->moments.min : kXNotSet;
}

double tagXRegionStatistics::GetMax(int band) const
{
    const tagXRegionBand* found = FindBand(band);
    return found && found->moments.count > 0 ? found->moments.max : kXNotSet;
}

double tagXRegionStatistics::GetMean(int band) const
{
    const tagXRegionBand* found = FindBand(band);
    return found && found->moments.count > 0 ? found->moments.mean : kXNotSet;
}

double tagXRegionStatistics::GetStd(int band) const
{
    const tagXRegionBand* found = FindBand(band);
    if (!found || found->moments.count < 1) return kXNotSet;
    if (found->moments.count == 1) return 0.0;
    return std::sqrt(found->moments.squares / static_cast<double>(found->moments.count - 1));
}

long long tagXRegionStatistics::GetHistogram(int band, int bin) const
{
    const tagXRegionBand* found = FindBand(band);
    return found && bin >= 0 && bin < 256 ? found->histogram[static_cast<std::size_t>(bin)] : 0;
}

void tagXRegionStatistics::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        if (bands.size() > kMostBands) XFileException::Throw(XFileException::kGeneric);
        archive << kVersion << static_cast<std::uint32_t>(bands.size())
                << static_cast<std::uint32_t>(joint.coMoments.size());
        ForEachNumber(*this, [&](auto value) { archive << value; });
        return;
    }
    std::uint32_t version = 0;
    archive >> version;
    if (version != kVersion) XFileException::Throw(XFileException::kGeneric);
    const std::uint32_t count = archive.ReadCount(kBandBytes);
    // the matrix must be in the file too before memory for it is taken
    const std::uint32_t products = archive.ReadCount(sizeof(double));
    if (count > kMostBands || products != count * count)
        XFileException::Throw(XFileException::kGeneric);
    tagXRegionStatistics read;
    read.bands.resize(count);
    read.joint.Reset(static_cast<int>(count));
    ForEachNumber(read, [&](auto& value) { archive >> value; });
    if (!read.IsConsistent()) XFileException::Throw(XFileException::kGeneric);
    *this = std::move(read);
}
