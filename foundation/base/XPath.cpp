#include "foundation/base/XPath.h"

#include <cstring>
#include <string_view>

namespace {

bool HasDrive(std::string_view path)
{
    const char letter = path.empty() ? '\0' : static_cast<char>(path[0] | 0x20);
    return path.size() >= 2 && path[1] == ':' && letter >= 'a' && letter <= 'z';
}

/// The number of bytes up to and with the last separator.
std::size_t GetFolderLength(std::string_view path)
{
    const bool isForeign =
        HasDrive(path) || path.starts_with("\\\\") || path.find('/') == std::string_view::npos;
    const std::size_t last = path.find_last_of(isForeign ? "/\\" : "/");
    if (last != std::string_view::npos) return last + 1;
    return HasDrive(path) ? 2 : 0;
}

std::string_view GetName(const char* path)
{
    const std::string_view whole = path ? path : "";
    return whole.substr(GetFolderLength(whole));
}

/// Where the point of the extension stands in a file name, or its length when there is none.
std::size_t GetPoint(std::string_view name)
{
    const std::size_t point = name.rfind('.');
    return point == std::string_view::npos || point == 0 || name == ".." ? name.size() : point;
}

} // namespace

XString XfnGetDirName(const char* path)
{
    const std::string_view whole = path ? path : "";
    std::string_view folder = whole.substr(0, GetFolderLength(whole));
    const std::size_t root = !HasDrive(folder) ? 1 : 3;
    while (folder.size() > root && (folder.back() == '/' || folder.back() == '\\')) {
        folder.remove_suffix(1);
    }
    return XString(folder);
}

XString XfnGetFileName(const char* path)
{
    return XString(GetName(path));
}

XString XfnGetFileExt(const char* path)
{
    const std::string_view name = GetName(path);
    const std::size_t point = GetPoint(name);
    return XString(point == name.size() ? std::string_view() : name.substr(point + 1));
}

XString XfnGetFileTitle(const char* path)
{
    const std::string_view name = GetName(path);
    return XString(name.substr(0, GetPoint(name)));
}

XString XfnJoinPath(const char* folder, const char* name)
{
    XString path(folder);
    if (!path.IsEmpty() && path[path.GetLength() - 1] != '/') path += '/';
    return path + name;
}
