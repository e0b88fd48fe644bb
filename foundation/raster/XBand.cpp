#include "foundation/raster/XBand.h"

#include "foundation/raster/XRasterTypes.h"

X_IMPLEMENT_CLASS(XBand, XObject)

XBand::XBand() = default;
XBand::~XBand() = default;

int XBand::GetDataType() const
{
    return m_dataType;
}

int XBand::GetDataSize() const
{
    return XfnGetDataTypeSize(GetDataType());
}

void XBand::SetNullValue(double value)
{
    m_nullValue = value;
    DropStatistics();
}

void XBand::SetLayout(int dataType, int xSize, int ySize, int xTileSize, int yTileSize)
{
    m_dataType = dataType;
    m_xSize = xSize;
    m_ySize = ySize;
    m_xTileSize = xTileSize;
    m_yTileSize = yTileSize;
}

double XBand::GetBandMin() const
{
    return Need(0)->min;
}

double XBand::GetBandMax() const
{
    return Need(0)->max;
}

double XBand::GetBandMean() const
{
    return Need(0)->mean;
}

double XBand::GetBandStdDev() const
{
    return Need(0)->stdDev;
}

const long long* XBand::GetHistogram() const
{
    return Need(1)->histogram.data(); // the band keeps the record, or retires it
}

int XBand::HasEstimatedStatistics() const
{
    return Need(0)->isEstimated;
}

int XBand::HasEstimatedHistogram() const
{
    return Need(1)->isHistogramEstimated;
}

std::shared_ptr<const tagXBandStatistics> XBand::GetStatistics() const
{
    return Need(1);
}

int XBand::HasStatistics() const
{
    const auto current = GetCurrent(nullptr);
    return current && current->hasHistogram;
}

void XBand::SetBandStatistics(const tagXBandStatistics& statistics)
{
    Publish(std::make_shared<const tagXBandStatistics>(statistics), nullptr);
}

void XBand::DropStatistics()
{
    Publish(nullptr, nullptr);
}

int XBand::ReadStoredStatistics(tagXBandStatistics&) const
{
    return 0;
}

tagXBandStatistics XBand::CalcBandStatistics(const tagXBandStatistics* known) const
{
    tagXBandStatistics statistics = known ? *known : tagXBandStatistics();
    statistics.hasHistogram = 1;
    return statistics;
}

std::shared_ptr<const tagXBandStatistics> XBand::GetCurrent(std::uint64_t* generation) const
{
    const std::lock_guard lock(m_stateMutex);
    if (generation) *generation = m_generation;
    return m_statistics;
}

void XBand::Publish(std::shared_ptr<const tagXBandStatistics> statistics,
                    const std::uint64_t* generation) const
{
    const std::lock_guard lock(m_stateMutex);
    // a computed record that came too late is kept too: its caller holds a plain pointer into it
    if (generation && *generation != m_generation) {
        m_retired.push_back(std::move(statistics));
        return;
    }
    if (m_statistics) m_retired.push_back(std::move(m_statistics));
    m_statistics = std::move(statistics);
    ++m_generation;
}

std::shared_ptr<const tagXBandStatistics> XBand::Need(int withHistogram) const
{
    const auto suffices = [withHistogram](const auto& s) {
        return s && (s->hasHistogram || !withHistogram);
    };
    std::shared_ptr<const tagXBandStatistics> current = GetCurrent(nullptr);
    if (suffices(current)) return current;

    const std::lock_guard one(m_calcMutex);
    std::uint64_t generation = 0;
    current = GetCurrent(&generation);
    if (suffices(current)) return current;

    tagXBandStatistics known;
    int isKnown = 0;
    if (current) {
        known = *current;
        isKnown = known.IsSet();
    } else {
        isKnown = ReadStoredStatistics(known);
    }
    tagXBandStatistics made =
        isKnown && !withHistogram ? known : CalcBandStatistics(isKnown ? &known : nullptr);
    auto result = std::make_shared<const tagXBandStatistics>(made);
    Publish(result, &generation);
    return result;
}
