#include "enhance/XPaletteFile.h"

#include "foundation/base/XFile.h"
#include "foundation/base/XPath.h"
#include "foundation/base/XSafeFile.h"

#include <algorithm>

#include <sys/stat.h>

namespace {

constexpr std::size_t kRecordBytes = 4;
constexpr std::size_t kFileBytes = kRecordBytes * tagXPaletteTable::kEntries;
constexpr int kFlagByte = 0xFF;

XString GetExtension(const XString& path)
{
    XString extension = XfnGetFileExt(path);
    extension.MakeLower();
    return extension;
}

// a pipe would keep the reader waiting
bool IsPlainFile(const XString& path)
{
    struct stat status = {};
    return ::stat(path, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

int XfnReadPalette(const XString& path, tagXPaletteTable& table, XString& message)
{
    message = "";
    if (GetExtension(path) != "pal") {
        message = "Not a valid palette file";
        return 0;
    }
    XFile file;
    if (!IsPlainFile(path) || !file.Open(path, XFile::kModeRead)) {
        message = "Unable to open file for reading";
        return 0;
    }
    std::array<unsigned char, kFileBytes> bytes{};
    std::size_t count = 0;
    try {
        count = std::min<std::size_t>(file.Read(bytes.data(), bytes.size()), bytes.size());
    } catch (const XFileException&) {
        return 0;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = i / kRecordBytes;
        switch (i % kRecordBytes) {
        case 0:
            table.red[entry] = bytes[i];
            break;
        case 1:
            table.green[entry] = bytes[i];
            break;
        case 2:
            table.blue[entry] = bytes[i];
            break;
        default:
            table.anchors[entry] = (table.anchors[entry] & ~kFlagByte) | bytes[i];
        }
    }
    return 1;
}

int XfnWritePalette(const XString& path, const tagXPaletteTable& table, XString& message)
{
    message = "";
    XSafeFile file;
    XString detail;
    if (!file.Create(path, detail)) {
        message = "Unable to open file for writing";
        return 0;
    }
    std::array<unsigned char, kFileBytes> bytes{};
    for (std::size_t entry = 0; entry < tagXPaletteTable::kEntries; ++entry) {
        unsigned char* record = bytes.data() + entry * kRecordBytes;
        record[0] = table.red[entry];
        record[1] = table.green[entry];
        record[2] = table.blue[entry];
        record[3] = static_cast<unsigned char>(table.anchors[entry] & kFlagByte);
    }
    return file.Write(bytes.data(), bytes.size()) && file.Commit(detail);
}

XString XfnGetPaletteSavePath(const XString& path)
{
    const XString extension = GetExtension(path);
    XString result = path;
    if (extension.IsEmpty())
        result += ".pal";
    else if (extension != "pal")
        result.Replace(extension, "pal");
    return result;
}
