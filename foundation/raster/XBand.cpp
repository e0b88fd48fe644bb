#include "foundation/raster/XBand.h"

#include "foundation/raster/XRasterTypes.h"

#include <algorithm>
#include <chrono>
#include <new>

X_IMPLEMENT_CLASS(XBand, XObject)

namespace {

std::uint64_t NextChange()
{
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

bool IsRaised(const std::atomic<int>* abort)
{
    return abort && abort->load(std::memory_order_relaxed) != 0;
}

} // namespace

XBand::XBand() : m_changeNumber(NextChange()) {}
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
    std::shared_ptr<const tagXBandStatistics> record = Need(1);
    const std::lock_guard lock(m_stateMutex);
    if (std::find(m_lent.begin(), m_lent.end(), record) == m_lent.end()) m_lent.push_back(record);
    return record->histogram.data();
}

int XBand::HasEstimatedStatistics() const
{
    return Need(0)->isEstimated;
}

int XBand::HasEstimatedHistogram() const
{
    return Need(1)->isHistogramEstimated;
}

std::shared_ptr<const tagXBandStatistics> XBand::GetStatistics(const std::atomic<int>* abort) const
{
    return Need(1, abort);
}

int XBand::HasStatistics() const
{
    {
        const std::lock_guard lock(m_stateMutex);
        if (m_statistics) return m_statistics->hasHistogram;
    }
    tagXBandStatistics stored;
    return ReadStoredStatistics(stored) && stored.hasHistogram;
}

void XBand::SetBandStatistics(const tagXBandStatistics& statistics)
{
    Publish(std::make_shared<const tagXBandStatistics>(statistics));
}

int XBand::SetBandStatistics(const tagXBandStatistics& statistics, std::uint64_t changeNumber)
{
    auto made = std::make_shared<const tagXBandStatistics>(statistics);
    const std::lock_guard lock(m_stateMutex);
    // a change takes its number first and drops the statistics then
    if (m_changeNumber.load() != changeNumber) return 0;
    m_statistics.swap(made);
    ++m_generation;
    return 1;
}

void XBand::DropStatistics()
{
    m_changeNumber = NextChange();
    Publish(nullptr);
}

int XBand::ReadStoredStatistics(tagXBandStatistics&) const
{
    return 0;
}

tagXBandStatistics XBand::CalcBandStatistics(const tagXBandStatistics* known,
                                             const std::atomic<int>*) const
{
    tagXBandStatistics statistics = known ? *known : tagXBandStatistics();
    statistics.hasHistogram = 1;
    return statistics;
}

void XBand::Publish(std::shared_ptr<const tagXBandStatistics> statistics)
{
    const std::lock_guard lock(m_stateMutex);
    m_statistics.swap(statistics);
    ++m_generation;
}

/// Numbers beyond those at hand. Null when the memory does not suffice or after an abort.
std::shared_ptr<const tagXBandStatistics> XBand::Calc(const tagXBandStatistics* current,
                                                      int withHistogram,
                                                      const std::atomic<int>* abort) const
{
    try {
        tagXBandStatistics known = current ? *current : tagXBandStatistics();
        const int isKnown = current ? known.IsSet() : ReadStoredStatistics(known);
        const int isEnough = isKnown && (known.hasHistogram || !withHistogram);
        auto made = std::make_shared<const tagXBandStatistics>(
            isEnough ? known : CalcBandStatistics(isKnown ? &known : nullptr, abort));
        return IsRaised(abort) && !isEnough ? nullptr : made;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

std::shared_ptr<const tagXBandStatistics> XBand::Need(int withHistogram,
                                                      const std::atomic<int>* abort) const
{
    static const auto kNone = std::make_shared<const tagXBandStatistics>();
    constexpr auto kPollPause = std::chrono::microseconds(200); // as XGdalSource
    std::unique_lock lock(m_stateMutex);
    for (;;) {
        if (m_statistics && (m_statistics->hasHistogram || !withHistogram)) return m_statistics;
        if (IsRaised(abort)) return m_statistics ? m_statistics : kNone;
        if (!m_isCalculating) break;
        m_calculated.wait_for(lock, kPollPause);
    }
    m_isCalculating = true;
    const std::uint64_t generation = m_generation;
    const std::shared_ptr<const tagXBandStatistics> current = m_statistics;
    lock.unlock();
    const std::shared_ptr<const tagXBandStatistics> made =
        Calc(current.get(), withHistogram, abort);
    lock.lock();
    m_isCalculating = false;
    if (made && generation == m_generation) {
        m_statistics = made;
        ++m_generation;
    }
    m_calculated.notify_all();
    return made ? made : current ? current : kNone;
}
