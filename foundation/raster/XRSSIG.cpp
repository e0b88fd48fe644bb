#include "foundation/raster/XRSSIG.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/raster/XROI.h"

#include <algorithm>
#include <cstdint>
#include <utility>

X_IMPLEMENT_CLASS(XRSSIG, XObject)

namespace {

constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kLeastRegionBytes = 36; // version, type, texts, colour, null value, counts

} // namespace

XRSSIG::XRSSIG() = default;
XRSSIG::XRSSIG(const XRSSIG& other) = default;
XRSSIG& XRSSIG::operator=(const XRSSIG& other) = default;
XRSSIG::~XRSSIG() = default;

int XRSSIG::Add(XROI* region)
{
    if (!region) return -1;
    const int index = Find(region);
    if (index >= 0) return index;
    m_regions.push_back(region);
    return GetSize() - 1;
}

XROI* XRSSIG::GetAt(int index) const
{
    return index >= 0 && index < GetSize() ? m_regions[static_cast<std::size_t>(index)] : nullptr;
}

int XRSSIG::Find(const XROI* region) const
{
    const auto found = std::find(m_regions.begin(), m_regions.end(), region);
    return found == m_regions.end() ? -1 : static_cast<int>(found - m_regions.begin());
}

int XRSSIG::Remove(const XROI* region)
{
    if (std::erase(m_regions, region) == 0) return 0;
    std::erase_if(m_loaded, [region](const auto& loaded) { return loaded.get() == region; });
    return 1;
}

void XRSSIG::RemoveAll()
{
    m_regions.clear();
    m_loaded.clear();
}

const tagXRegionStatistics& XRSSIG::GetStatistics() const
{
    std::vector<std::shared_ptr<const tagXRegionStatistics>> sources;
    for (const XROI* region : m_regions)
        if (region->IsCalculated()) sources.push_back(region->GetStatistics());
    if (sources == m_sources) return m_joined;
    m_joined = sources.empty() ? tagXRegionStatistics() : *sources.front();
    for (std::size_t i = 1; i < sources.size(); ++i)
        m_joined.Merge(*sources[i]);
    m_sources = std::move(sources);
    return m_joined;
}

int XRSSIG::GetNumBands() const
{
    return GetStatistics().GetNumBands();
}

long long XRSSIG::GetNumPoints() const
{
    return GetStatistics().pointCount;
}

double XRSSIG::GetMin(int band) const
{
    return GetStatistics().GetMin(band);
}

double XRSSIG::GetMax(int band) const
{
    return GetStatistics().GetMax(band);
}

double XRSSIG::GetMean(int band) const
{
    return GetStatistics().GetMean(band);
}

double XRSSIG::GetStd(int band) const
{
    return GetStatistics().GetStd(band);
}

long long XRSSIG::GetHistogram(int band, int bin) const
{
    return GetStatistics().GetHistogram(band, bin);
}

double XRSSIG::GetCovariance(int i, int j) const
{
    return GetStatistics().joint.GetCovariance(i, j);
}

double XRSSIG::GetCorrelation(int i, int j) const
{
    return GetStatistics().joint.GetCorrelation(i, j);
}

void XRSSIG::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        archive << kVersion << m_name << m_comment << m_color
                << static_cast<std::uint32_t>(m_regions.size());
        for (XROI* region : m_regions)
            region->Serialize(archive);
        return;
    }
    std::uint32_t version = 0;
    XRSSIG read;
    archive >> version;
    if (version != kVersion) XFileException::Throw(XFileException::kGeneric);
    archive >> read.m_name >> read.m_comment >> read.m_color;
    const std::uint32_t count = archive.ReadCount(kLeastRegionBytes);
    for (std::uint32_t i = 0; i < count; ++i) {
        read.m_loaded.push_back(std::make_shared<XROI>());
        read.m_loaded.back()->Serialize(archive);
        read.m_regions.push_back(read.m_loaded.back().get());
    }
    *this = read;
}
