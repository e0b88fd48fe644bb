#include "foundation/raster/XRasterSidecar.h"

#include "foundation/base/XPath.h"
#include "foundation/raster/XScratchFolder.h"

#include <cpl_vsi.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <tuple>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr long long kCacheBytes = 20LL << 30;

/// Empty without a home.
fs::path CacheFolder()
{
    const char* const own = std::getenv("XDG_CACHE_HOME");
    if (own && own[0] == '/') return fs::path(own) / "tql" / "sidecars";
    const char* const home = std::getenv("HOME");
    if (home && home[0] == '/') return fs::path(home) / ".cache" / "tql" / "sidecars";
    return fs::path();
}

/// FNV-1a (G. Fowler, L. C. Noll, K.-P. Vo, 1991) from two starts: 128 bits that tell the files of a
/// user apart.
XString HashText(const XString& text)
{
    std::uint64_t sums[2] = {0xCBF29CE484222325u, 0x84222325CBF29CE4u};
    for (int i = 0; i < text.GetLength(); ++i)
        for (std::uint64_t& sum : sums)
            sum = (sum ^ static_cast<unsigned char>(text.GetAt(i))) * 0x100000001B3u;
    return XfnFormat("%016llx%016llx", static_cast<unsigned long long>(sums[0]),
                     static_cast<unsigned long long>(sums[1]));
}

/// Size and time of the file behind a name; empty when there is none.
XString StateOf(const XString& name)
{
    struct stat plain = {};
    if (::stat(name, &plain) == 0)
        return S_ISREG(plain.st_mode)
                   ? XfnFormat("%lld-%lld.%09ld", static_cast<long long>(plain.st_size),
                               static_cast<long long>(plain.st_mtim.tv_sec), plain.st_mtim.tv_nsec)
                   : XString();
    VSIStatBufL inner;
    if (std::strncmp(name, "/vsi", 4) == 0 && VSIStatL(name, &inner) == 0)
        return XfnFormat("%lld-%lld", static_cast<long long>(inner.st_size),
                         static_cast<long long>(inner.st_mtime));
    return XString();
}

/// Of the file that holds a raster: the name of one inside a file holds that file's, as in
/// NETCDF:"a.nc":b.
XString StateBehind(const XString& path)
{
    XString state = StateOf(path);
    const std::string name = path.GetString();
    for (std::size_t i = 0; state.IsEmpty() && i < name.size();) {
        const std::size_t end = std::min(name.find_first_of("\":", i), name.size());
        state = StateOf(name.substr(i, end - i).c_str());
        i = end + 1;
    }
    return state;
}

bool IsOlder(const struct stat& a, const struct stat& b)
{
    return std::tie(a.st_mtim.tv_sec, a.st_mtim.tv_nsec) <
           std::tie(b.st_mtim.tv_sec, b.st_mtim.tv_nsec);
}

bool IsThere(const XString& name)
{
    return !name.IsEmpty() && ::access(name, R_OK) == 0;
}

} // namespace

XRasterSidecar::XRasterSidecar(const XString& path) : m_path(path)
{
    std::error_code code;
    const fs::path whole = fs::absolute(path.GetString(), code);
    m_state = StateBehind(path);
    if (!m_state.IsEmpty()) m_stem = HashText(code ? path : XString(whole.c_str()));
}

XString XRasterSidecar::GetBeside(const char* tail) const
{
    struct stat status = {};
    const bool isPlain = ::stat(m_path, &status) == 0 && S_ISREG(status.st_mode);
    return isPlain ? m_path + tail : XString();
}

XString XRasterSidecar::GetCached(const char* tail) const
{
    const fs::path folder = CacheFolder();
    if (folder.empty() || m_state.IsEmpty()) return XString();
    return (folder / XfnFormat("%s-%s%s", m_stem, m_state, tail).GetString()).c_str();
}

XString XRasterSidecar::Find(const char* tail) const
{
    const XString cached = GetCached(tail);
    if (IsThere(cached)) {
        ::utimensat(AT_FDCWD, cached, nullptr, 0); // it was used
        return cached;
    }
    const XString beside = GetBeside(tail);
    return IsThere(beside) && !IsOutdated(tail) ? beside : XString();
}

int XRasterSidecar::IsOutdated(const char* tail) const
{
    const XString beside = GetBeside(tail);
    struct stat raster = {};
    struct stat own = {};
    return !beside.IsEmpty() && ::stat(m_path, &raster) == 0 && ::stat(beside, &own) == 0 &&
           IsOlder(own, raster);
}

int XRasterSidecar::PutAt(const XString& target,
                          const std::function<int(const XString& name, XString& error)>& make,
                          int& isPlaceBad, XString& error) const
{
    std::error_code code;
    const fs::path whole = fs::absolute(target.GetString(), code);
    XScratchFolder scratch;
    isPlaceBad = !scratch.Create(whole, error);
    if (isPlaceBad) return 0;
    const fs::path name = scratch.GetPath() / whole.filename();
    if (!make(name.c_str(), error)) return 0;
    if (StateBehind(m_path) != m_state) {
        error = XfnFormat("\"%s\" was changed meanwhile; open it again.", m_path);
        return 0;
    }
    struct stat raster = {};
    struct stat own = {};
    // the clock of the raster file's maker may be ahead
    if (::stat(m_path, &raster) == 0 && ::stat(name.c_str(), &own) == 0 && IsOlder(own, raster)) {
        const struct timespec times[2] = {{0, UTIME_OMIT}, raster.st_mtim};
        ::utimensat(AT_FDCWD, name.c_str(), times, 0);
    }
    return scratch.Publish(whole, error);
}

int XRasterSidecar::Put(const char* tail, XSidecarPlace place,
                        const std::function<int(const XString& name, XString& error)>& make,
                        XString& made, XString& error) const
{
    error.Empty();
    const XString beside = GetBeside(tail);
    const XString cached = GetCached(tail);
    int isPlaceBad = 1;
    if (place != XSidecarPlace::Cache && !beside.IsEmpty()) {
        const int isMade = PutAt(beside, make, isPlaceBad, error);
        if (isMade) {
            made = beside;
            if (!cached.IsEmpty()) ::unlink(cached); // one of them is enough
            return 1;
        }
    }
    if (place == XSidecarPlace::Beside || !isPlaceBad) {
        if (isPlaceBad && error.IsEmpty())
            error = XfnFormat("\"%s\": nothing can be kept beside it.", m_path);
        return 0;
    }
    if (cached.IsEmpty()) {
        error = XfnFormat("\"%s\" is no file that something can be kept for.", m_path);
        return 0;
    }
    const fs::path folder = CacheFolder();
    std::error_code code;
    fs::create_directories(folder, code);
    error.Empty();
    if (!PutAt(cached, make, isPlaceBad, error)) return 0;
    made = cached;
    // those for an older state of the same file are of no use any more
    const std::string stem = (m_stem + "-").GetString();
    const std::string name = fs::path(cached.GetString()).filename().string();
    for (const auto& entry : fs::directory_iterator(folder, code)) {
        const std::string other = entry.path().filename().string();
        const bool isOld = other.starts_with(stem) && other.ends_with(tail) && other != name;
        std::error_code ignored;
        if (isOld) fs::remove(entry.path(), ignored);
    }
    TrimCache(kCacheBytes);
    return 1;
}

void XRasterSidecar::TrimCache(long long budgetBytes)
{
    struct tagEntry
    {
        fs::path path;
        long long bytes;
        fs::file_time_type used;
    };
    std::vector<tagEntry> entries;
    long long total = 0;
    std::error_code code;
    for (const auto& entry : fs::directory_iterator(CacheFolder(), code)) {
        std::error_code each;
        if (!entry.is_regular_file(each)) continue;
        const auto bytes = static_cast<long long>(entry.file_size(each));
        const auto used = entry.last_write_time(each);
        if (each) continue; // another program was faster
        entries.push_back({entry.path(), bytes, used});
        total += bytes;
    }
    std::sort(entries.begin(), entries.end(),
              [](const tagEntry& a, const tagEntry& b) { return a.used < b.used; });
    for (const tagEntry& entry : entries) {
        if (total <= budgetBytes) return;
        if (fs::remove(entry.path, code)) total -= entry.bytes;
    }
}
