#include "foundation/raster/XGdalSource.h"

#include "foundation/raster/XRasterSidecar.h"
#include "foundation/reference/XGdalErrors.h"

#include <gdal_pam.h>
#include <gdal_priv.h>

#include <algorithm>
#include <chrono>
#include <cstring>

namespace {

// an abort word wakes nobody: whoever waits looks at it often, for a stopped drawing must end soon
constexpr auto kPollPause = std::chrono::microseconds(200);
constexpr std::size_t kFewBands = 4;
constexpr std::int64_t kRecentMisses = 16;

bool IsRaised(const std::atomic<int>* abort)
{
    return abort && abort->load(std::memory_order_relaxed) != 0;
}

bool IsLocalPath(const XString& path)
{
    return std::strncmp(path, "/vsi", 4) != 0;
}

} // namespace

XGdalSource::Handle::~Handle()
{
    if (m_dataset) m_source->Release(m_dataset);
}

XGdalSource::Turn::Turn(XGdalSource& source, const Key& key, const std::atomic<int>* abort)
    : m_source(source), m_key(key)
{
    std::unique_lock lock(source.m_mutex);
    while (!IsRaised(abort)) {
        if (source.m_turns.insert(key).second) {
            m_isMine = true;
            return;
        }
        source.m_changed.wait_for(lock, kPollPause);
    }
}

XGdalSource::Turn::~Turn()
{
    if (!m_isMine) return;
    {
        const std::lock_guard lock(m_source.m_mutex);
        m_source.m_turns.erase(m_key);
    }
    m_source.m_changed.notify_all();
}

XGdalSource::XGdalSource(const XString& path, const char* const* drivers)
    : m_path(path), m_drivers(drivers)
{
    m_hasStatus = IsLocalPath(path) && ::stat(path, &m_status) == 0;
}

std::shared_ptr<XGdalSource> XGdalSource::Open(const XString& path, const char* const* drivers,
                                               XString& error)
{
    XfnPrepareGdal();
    std::shared_ptr<XGdalSource> source(new XGdalSource(path, drivers));
    GDALDataset* dataset = source->OpenDataset(error);
    if (!dataset) return nullptr;
    source->m_width = dataset->GetRasterXSize();
    source->m_height = dataset->GetRasterYSize();
    source->m_bands = dataset->GetRasterCount();
    if (const GDALDriver* driver = dataset->GetDriver())
        source->m_driverName = driver->GetDescription();
    source->m_idle.push_back(dataset);
    source->m_handles = 1;
    return source;
}

XGdalSource::~XGdalSource()
{
    const XGdalErrors errors;
    for (GDALDataset* dataset : m_idle)
        GDALClose(dataset);
}

GDALDataset* XGdalSource::OpenDataset(XString& error) const
{
    const XGdalErrors errors;
    auto* dataset =
        GDALDataset::Open(m_path, GDAL_OF_RASTER | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR,
                          m_drivers, nullptr, nullptr);
    if (!dataset) {
        error = errors.Describe(m_path, "No reader knows its format.");
        return nullptr;
    }
    XfnKeepPamUnwritten(dataset);
    return dataset;
}

int XGdalSource::IsSameFile(bool& isInPlace) const
{
    isInPlace = false;
    if (!m_hasStatus) return 1;
    struct stat now = {};
    if (::stat(m_path, &now) != 0) return 0;
    if (now.st_ino != m_status.st_ino || now.st_dev != m_status.st_dev) return 0;
    isInPlace = now.st_size != m_status.st_size || now.st_mtim.tv_sec != m_status.st_mtim.tv_sec ||
                now.st_mtim.tv_nsec != m_status.st_mtim.tv_nsec;
    return !isInPlace;
}

XGdalSource::Handle XGdalSource::Acquire(const std::atomic<int>* abort, XString& message)
{
    bool isInPlace = false;
    const bool isSame = IsSameFile(isInPlace) != 0;
    if (isInPlace) {
        message = XfnFormat("\"%s\" was changed after it was opened; open it again.", m_path);
        return {};
    }
    std::unique_lock lock(m_mutex);
    for (;;) {
        if (!m_idle.empty()) {
            GDALDataset* dataset = m_idle.back(); // the one whose blocks are warmest
            m_idle.pop_back();
            return {this, dataset};
        }
        if (IsRaised(abort)) return {};
        if (isSame && m_handles < m_maxHandles) {
            ++m_handles;
            lock.unlock();
            XString why;
            GDALDataset* dataset = OpenDataset(why);
            if (dataset && dataset->GetRasterXSize() == m_width &&
                dataset->GetRasterYSize() == m_height && dataset->GetRasterCount() == m_bands)
                return {this, dataset};
            if (dataset) {
                const XGdalErrors errors;
                GDALClose(dataset);
            }
            // one that cannot be opened twice is read in turns
            lock.lock();
            --m_handles;
            m_maxHandles = std::max(m_handles, 1);
            continue;
        }
        m_changed.wait_for(lock, kPollPause);
    }
}

void XGdalSource::Release(GDALDataset* dataset)
{
    {
        const std::lock_guard lock(m_mutex);
        m_idle.push_back(dataset);
    }
    m_changed.notify_all();
}

void XGdalSource::LimitHandles(int count)
{
    const std::lock_guard lock(m_mutex);
    m_maxHandles = std::max(count, 1);
}

void XGdalSource::AddMember(std::uint64_t owner, int bandNumber)
{
    const std::lock_guard lock(m_mutex);
    m_members.push_back({owner, bandNumber, -kRecentMisses});
}

void XGdalSource::RemoveMember(std::uint64_t owner)
{
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_members, [owner](const tagMember& m) { return m.owner == owner; });
}

std::vector<XGdalSource::tagMember> XGdalSource::NoteMiss(std::uint64_t owner)
{
    const std::lock_guard lock(m_mutex);
    ++m_misses;
    std::vector<tagMember> wanted;
    for (tagMember& member : m_members) {
        if (member.owner == owner) {
            member.lastMiss = m_misses;
            wanted.insert(wanted.begin(), member);
        } else if (m_members.size() <= kFewBands || m_misses - member.lastMiss < kRecentMisses) {
            wanted.push_back(member);
        }
    }
    return wanted;
}

std::shared_ptr<XGdalSource> XfnOpenLevels(const XString& path)
{
    static const char* const kDrivers[] = {"GTiff", nullptr};
    const XString name = XRasterSidecar(path).Find(".ovr");
    XString ignored; // without it the image is as good as before
    return name.IsEmpty() ? nullptr : XGdalSource::Open(name, kDrivers, ignored);
}

void XfnKeepPamUnwritten(GDALDataset* dataset)
{
    // what stands in an .aux.xml is read all the same
    if (auto* pam = dynamic_cast<GDALPamDataset*>(dataset))
        pam->SetPamFlags(pam->GetPamFlags() | GPF_NOSAVE);
}
