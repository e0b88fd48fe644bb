#include "foundation/base/XSystem.h"

#include "foundation/base/XFile.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XNumber.h"
#include "foundation/base/XPath.h"

#include <cstring>
#include <sys/statvfs.h>
#include <unistd.h>

std::uint64_t XfnGetAvailablePhysicalMemory()
{
    XFile file;
    char text[4096];
    if (file.Open("/proc/meminfo", XFile::kModeRead)) {
        try {
            text[file.Read(text, sizeof text - 1)] = '\0';
            const char* key = "MemAvailable:";
            const char* line = std::strstr(text, key);
            std::int64_t kibibytes = 0;
            if (line && XfnReadInteger(line + std::strlen(key), kibibytes) && kibibytes >= 0) {
                return static_cast<std::uint64_t>(kibibytes) * 1024;
            }
        } catch (XFileException& e) {
            e.Delete();
        }
    }
    const long pages = sysconf(_SC_AVPHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0) return 0;
    return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize);
}

int XfnIsDiskSpaceEnough(const char* path, std::uint64_t bytes)
{
    XString place(path);
    if (place.IsEmpty()) return 0;
    struct statvfs disk;
    while (statvfs(place, &disk) != 0) {
        const XString above = XfnGetDirName(place);
        if (above == place || place == ".") return 0;
        place = above.IsEmpty() ? XString(".") : above;
    }
    const std::uint64_t unit = disk.f_frsize ? disk.f_frsize : disk.f_bsize;
    // compared in blocks: the product in bytes could wrap on a hostile file system
    return unit > 0 && bytes / unit + (bytes % unit != 0) <= disk.f_bavail;
}

int XfnGetErrorString(int code, XString& name, XString& text)
{
    name = strerrorname_np(code);
    const char* sentence = strerrordesc_np(code);
    if (sentence) {
        text = sentence;
        return 1;
    }
    text.Format("Unknown error %d", code);
    return 0;
}
