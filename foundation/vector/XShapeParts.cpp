#include "foundation/vector/XShapeParts.h"

#include "foundation/base/XFile.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XPath.h"

#include <algorithm>
#include <cstdint>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::int64_t kHeadBytes = 100; // of a .shp and of a .shx
constexpr std::int64_t kMagic = 9994;
constexpr std::int64_t kLengthOffset = 24;
constexpr std::int64_t kRecordHeadBytes = 8;
constexpr std::int64_t kLargestLength = INT64_C(0x7FFFFFFF); // in words; the field is signed

std::int64_t ReadBig(const unsigned char* bytes)
{
    return std::int64_t(bytes[0]) << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
}

void WriteBig(std::int64_t value, unsigned char* bytes)
{
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<unsigned char>(value >> (24 - 8 * i));
}

/// Whether a .shp or .shx is as long as its head says.
bool IsWhole(const XFile& file)
{
    unsigned char length[4];
    return file.GetLength() >= kHeadBytes && file.ReadAt(kLengthOffset, length, 4) == 4 &&
           ReadBig(length) * 2 <= file.GetLength();
}

bool IsWholeFile(const XString& path)
{
    XFile file;
    return file.Open(path, XFile::kModeRead) && IsWhole(file);
}

long long CountRows(const XString& path)
{
    XFile file;
    unsigned char head[12];
    if (!file.Open(path, XFile::kModeRead) || file.ReadAt(0, head, sizeof head) != sizeof head)
        return -1;
    const long long told = head[4] | head[5] << 8 | head[6] << 16 | std::int64_t(head[7]) << 24;
    const std::int64_t begin = head[8] | head[9] << 8;
    const std::int64_t length = head[10] | head[11] << 8;
    if (length == 0 || begin > file.GetLength()) return -1;
    return std::min<long long>(told, (file.GetLength() - begin) / length);
}

long long WriteIndex(const XString& shapes, const XString& index)
{
    constexpr std::size_t kMostKept = std::size_t(1) << 20;
    constexpr std::int64_t kLeastWords = 2; // the type of a shape
    XFile in(shapes, XFile::kModeRead);
    XFile out(index, XFile::kModeWrite | XFile::kModeCreate);
    std::vector<unsigned char> made(kHeadBytes);
    const bool hasHead = in.ReadAt(0, made.data(), made.size()) == made.size();
    if (!hasHead || ReadBig(made.data()) != kMagic) return -1;
    const std::int64_t end = in.GetLength();
    long long count = 0;
    unsigned char head[kRecordHeadBytes];
    for (std::int64_t at = kHeadBytes; at + kRecordHeadBytes <= end; ++count) {
        if (in.ReadAt(at, head, sizeof head) != sizeof head) break;
        const std::int64_t words = ReadBig(head + 4);
        if (words < kLeastWords || words > kLargestLength || at / 2 > kLargestLength ||
            at + kRecordHeadBytes + 2 * words > end)
            break;
        made.resize(made.size() + kRecordHeadBytes);
        WriteBig(at / 2, &made[made.size() - 8]);
        WriteBig(words, &made[made.size() - 4]);
        at += kRecordHeadBytes + 2 * words;
        if (made.size() < kMostKept) continue;
        out.Write(made.data(), made.size());
        made.clear();
    }
    out.Write(made.data(), made.size());
    WriteBig((kHeadBytes + count * kRecordHeadBytes) / 2, head);
    out.Seek(kLengthOffset, XFile::kBegin);
    out.Write(head, 4);
    out.Close();
    return count;
}

} // namespace

XString XfnFindBeside(const XString& path, const char* extension)
{
    const XString stem = XfnJoinPath(XfnGetDirName(path), XfnGetFileTitle(path)) + ".";
    for (const XString& name : {stem + extension, stem + XString(extension).MakeUpper()})
        if (::access(name, R_OK) == 0) return name;
    return XString();
}

bool XfnIsShapeHeadCut(const XString& path)
{
    try {
        XFile file;
        unsigned char magic[4];
        return file.Open(path, XFile::kModeRead) && file.GetLength() < kHeadBytes &&
               file.ReadAt(0, magic, 4) == 4 && ReadBig(magic) == kMagic;
    } catch (const XFileException&) { // its reader tells
        return false;
    }
}

tagXShapeParts XfnFindShapeParts(const XString& path)
{
    tagXShapeParts parts;
    try {
        parts.table = XfnFindBeside(path, "dbf");
        parts.index = XfnFindBeside(path, "shx");
        parts.reference = XfnFindBeside(path, "prj");
        parts.isCut = !IsWholeFile(path);
        if (!parts.table.IsEmpty()) parts.tableRows = CountRows(parts.table);
        parts.isIndexCut = !parts.index.IsEmpty() && !IsWholeFile(parts.index);
        if (parts.isIndexCut) parts.index.Empty();
    } catch (XFileException& e) { // what cannot be looked at is left to the reader
        e.Delete();
    }
    return parts;
}

long long XfnWriteShapeIndex(const XString& shapes, const XString& index)
{
    try {
        return WriteIndex(shapes, index);
    } catch (XFileException& e) {
        e.Delete();
        return -1;
    }
}
