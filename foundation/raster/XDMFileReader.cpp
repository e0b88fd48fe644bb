#include "foundation/raster/XDMFileReader.h"

#include "foundation/base/XChecksum.h"
#include "foundation/base/XFile.h"
#include "foundation/platform/XFileMap.h"
#include "foundation/raster/XDMFileCatalogue.h"
#include "foundation/raster/XDMFileTile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

struct XDMFileReader::tagState
{
    std::unique_ptr<XFile> file;
    XString name;
    tagXDMFileInfo info;
    XDMFileCatalogue catalogue;
    std::shared_ptr<const XFileMap> map; // null when the file cannot be mapped
    struct timespec writeTime = {};
    mutable std::atomic<int> isCut{0};
    mutable std::atomic<int> isWritten{0};

    bool IsCut() const { return isCut.load(std::memory_order_relaxed) || (map && map->IsLost()); }
    bool IsLost() const { return IsCut() || isWritten.load(std::memory_order_relaxed); }
    const char* Describe() const
    {
        return IsCut() ? "The file became shorter while it was read"
                       : "The file was written after it was opened";
    }
    int Fail(const XString& what, XString& message) const
    {
        message = what + ": " + name + ".";
        return 0;
    }
    /// Null with a sentence when there is no such tile or its table cannot be had.
    const tagXDMFileTileEntry* FindTile(int band, int level, int tx, int ty,
                                        tagXDMFileTileShape& shape, XString& message) const;
};

namespace {

/// When the file was written last; 0 for one that the system does not know.
struct timespec GetWriteTime(const XFile& file)
{
    struct stat status = {};
    if (file.GetDescriptor() >= 0) ::fstat(file.GetDescriptor(), &status);
    return status.st_mtim;
}

/// Bytes of a compressed tile on their way; kept a thread unless a giant passed.
unsigned char* GetPayloadBuffer(std::size_t count)
{
    thread_local std::unique_ptr<unsigned char[]> buffer;
    thread_local std::size_t capacity = 0;
    constexpr std::size_t kKept = std::size_t(1) << 22;
    if (count > capacity || capacity > std::max(kKept, count)) {
        const std::size_t wanted = std::max(count, std::size_t(1) << 16);
        buffer.reset();
        buffer.reset(new (std::nothrow) unsigned char[wanted]);
        capacity = buffer ? wanted : 0;
    }
    return buffer.get();
}

XString NameTile(int band, int level, int tx, int ty)
{
    return XfnFormat("Tile (%d, %d) of level %d of band %d", tx, ty, level, band + 1);
}

} // namespace

XDMFileReader::XDMFileReader() = default;
XDMFileReader::~XDMFileReader() = default;

int XDMFileReader::Open(const char* path, XString& message)
{
    auto file = std::make_unique<XFile>();
    XFileException exception;
    if (!file->Open(path ? path : "", XFile::kModeRead, &exception)) {
        message = exception.GetErrorMessage();
        return 0;
    }
    return Open(std::move(file), path, message);
}

int XDMFileReader::Open(std::unique_ptr<XFile> file, const XString& name, XString& message)
{
    auto state = std::make_unique<tagState>();
    state->file = std::move(file);
    state->name = name;
    state->writeTime = GetWriteTime(*state->file);
    XString reason;
    try {
        if (state->catalogue.Read(*state->file, state->info, reason)) {
            if (std::in_range<std::ptrdiff_t>(state->catalogue.GetFileBytes()))
                state->map = XFileMap::Map(
                    *state->file, static_cast<std::size_t>(state->catalogue.GetFileBytes()));
            m_state = std::move(state);
            return 1;
        }
    } catch (const std::bad_alloc&) {
        reason = "There is not enough memory to open the file";
    }
    message = reason + ": " + name + ".";
    return 0;
}

void XDMFileReader::Close()
{
    m_state.reset();
}

XString XDMFileReader::GetFilePath() const
{
    return m_state ? m_state->name : XString();
}

const tagXDMFileInfo& XDMFileReader::GetInfo() const
{
    static const tagXDMFileInfo kNothing;
    return m_state ? m_state->info : kNothing;
}

namespace {

/// Null when there is no such tile.
const tagXDMFileLevel* FindLevel(const tagXDMFileInfo& info, int band, int level, int tx, int ty)
{
    if (band < 0 || static_cast<std::size_t>(band) >= info.bands.size()) return nullptr;
    const std::vector<tagXDMFileLevel>& levels = info.bands[static_cast<std::size_t>(band)].levels;
    if (level < 0 || static_cast<std::size_t>(level) >= levels.size()) return nullptr;
    const tagXDMFileLevel& found = levels[static_cast<std::size_t>(level)];
    return XfnHasXDMFileTile(found, tx, ty) ? &found : nullptr;
}

tagXDMFileTileShape GetShape(const tagXDMFileInfo& info, const tagXDMFileLevel& level, int band,
                             int tx, int ty)
{
    tagXDMFileTileShape shape;
    shape.dataType = info.bands[static_cast<std::size_t>(band)].dataType;
    XfnGetXDMFileTileSize(level, tx, ty, shape.width, shape.height);
    return shape;
}

} // namespace

std::size_t XDMFileReader::GetTileBytes(int band, int level, int tx, int ty) const
{
    if (!m_state) return 0;
    const tagXDMFileLevel* found = FindLevel(m_state->info, band, level, tx, ty);
    return found ? GetShape(m_state->info, *found, band, tx, ty).GetBytes() : 0;
}

const tagXDMFileTileEntry* XDMFileReader::tagState::FindTile(int band, int level, int tx, int ty,
                                                             tagXDMFileTileShape& shape,
                                                             XString& message) const
{
    const tagXDMFileLevel* found = FindLevel(info, band, level, tx, ty);
    if (!found) {
        Fail(NameTile(band, level, tx, ty) + " does not exist", message);
        return nullptr;
    }
    shape = GetShape(info, *found, band, tx, ty);
    XString reason = Describe();
    const tagXDMFileTileEntry* entry =
        IsLost() ? nullptr : catalogue.GetTile(*file, info, band, level, tx, ty, reason);
    if (!entry) Fail(reason, message);
    return entry;
}

int XDMFileReader::ReadTile(int band, int level, int tx, int ty, void* out, std::size_t size,
                            XString& message) const
{
    if (!m_state) {
        message = "No file is open.";
        return 0;
    }
    const auto fail = [&](const XString& what) { return m_state->Fail(what, message); };
    tagXDMFileTileShape shape;
    const tagXDMFileTileEntry* entry = m_state->FindTile(band, level, tx, ty, shape, message);
    if (!entry) return 0;
    if (size != shape.GetBytes() || !out) {
        return fail(NameTile(band, level, tx, ty) + " does not fit the memory given for it");
    }

    const XDMFileEncoding encoding = static_cast<XDMFileEncoding>(entry->encoding);
    if (entry->bytes == 0) {
        XfnFillXDMFileTile(out, size, m_state->catalogue.GetFill(band),
                           static_cast<std::size_t>(XfnGetXDMFileSampleSize(shape.dataType)));
        return 1;
    }
    const bool isPlain = encoding == XDMFileEncoding::Plain;
    void* payload = isPlain ? out : GetPayloadBuffer(entry->bytes);
    if (!payload) return fail("There is not enough memory to read a tile");
    XString reason;
    if (!XfnReadXDMFileBytes(*m_state->file, entry->offset, payload, entry->bytes, reason)) {
        return IsIntact(message) ? fail(reason) : 0;
    }
    if (!XfnIsChecksum(entry->checksum, payload, entry->bytes)) {
        return fail(NameTile(band, level, tx, ty) + " is damaged");
    }
    if (!isPlain && !XfnDecodeXDMFileTile(encoding, static_cast<unsigned char*>(payload),
                                          entry->bytes, shape, out)) {
        return fail(NameTile(band, level, tx, ty) + " cannot be decompressed");
    }
    return 1;
}

int XDMFileReader::ViewTile(int band, int level, int tx, int ty, tagXDMFileView& view,
                            XString& message) const
{
    view = {};
    if (!m_state) {
        message = "No file is open.";
        return 0;
    }
    tagXDMFileTileShape shape;
    const tagXDMFileTileEntry* entry = m_state->FindTile(band, level, tx, ty, shape, message);
    if (!entry) return 0;
    const XDMFileCatalogue& catalogue = m_state->catalogue;
    if (!m_state->map || entry->bytes == 0 ||
        static_cast<XDMFileEncoding>(entry->encoding) != XDMFileEncoding::Plain)
        return 1;
    const std::size_t offset = static_cast<std::size_t>(entry->offset);
    const unsigned char* samples = m_state->map->GetData() + offset;
    if (!catalogue.IsVerified(m_state->info, band, level, tx, ty)) {
        m_state->map->Prefetch(offset, entry->bytes);
        const bool isGood = XfnIsChecksum(entry->checksum, samples, entry->bytes);
        if (!IsIntact(message)) return 0;
        if (!isGood) return m_state->Fail(NameTile(band, level, tx, ty) + " is damaged", message);
        catalogue.MarkVerified(m_state->info, band, level, tx, ty);
    }
    view.samples = samples;
    view.map = m_state->map;
    return 1;
}

int XDMFileReader::IsViewReady(int band, int level, int tx, int ty) const
{
    return m_state && m_state->map && FindLevel(m_state->info, band, level, tx, ty) &&
           m_state->catalogue.IsVerified(m_state->info, band, level, tx, ty);
}

int XDMFileReader::IsIntact(XString& message) const
{
    if (!m_state) {
        message = "No file is open.";
        return 0;
    }
    bool isWhole = !m_state->IsCut();
    try {
        isWhole = isWhole && static_cast<std::uint64_t>(
                                 std::max<std::int64_t>(m_state->file->GetLength(), 0)) >=
                                 m_state->catalogue.GetFileBytes();
    } catch (XFileException& e) {
        e.Delete();
        isWhole = false;
    }
    if (!isWhole) m_state->isCut.store(1, std::memory_order_relaxed);
    const struct timespec now = GetWriteTime(*m_state->file);
    if (now.tv_sec != m_state->writeTime.tv_sec || now.tv_nsec != m_state->writeTime.tv_nsec)
        m_state->isWritten.store(1, std::memory_order_relaxed);
    return m_state->IsLost() ? m_state->Fail(m_state->Describe(), message) : 1;
}

int XDMFileReader::IsCurrent(XString& message) const
{
    if (!IsIntact(message)) return 0;
    struct stat own = {};
    struct stat there = {};
    if (m_state->file->GetDescriptor() >= 0 && ::fstat(m_state->file->GetDescriptor(), &own) == 0 &&
        ::stat(m_state->name, &there) == 0 && own.st_ino == there.st_ino &&
        own.st_dev == there.st_dev)
        return 1;
    return m_state->Fail("Another file has taken the place of the one that is open", message);
}

int XDMFileReader::IsTileEmpty(int band, int level, int tx, int ty, XString& message) const
{
    XString reason =
        m_state ? NameTile(band, level, tx, ty) + " does not exist" : "No file is open";
    if (m_state && FindLevel(m_state->info, band, level, tx, ty)) {
        const tagXDMFileTileEntry* entry =
            m_state->catalogue.GetTile(*m_state->file, m_state->info, band, level, tx, ty, reason);
        if (entry) return entry->bytes == 0;
    }
    message = reason + (m_state ? ": " + m_state->name : XString()) + ".";
    return -1;
}

int XDMFileReader::CheckAll(const std::atomic<int>* abort, XString& message) const
{
    if (!m_state) {
        message = "No file is open.";
        return 0;
    }
    message.Empty();
    const tagXDMFileInfo& info = m_state->info;
    std::vector<unsigned char> tile;
    try {
        for (int band = 0; band < static_cast<int>(info.bands.size()); ++band) {
            const auto& levels = info.bands[static_cast<std::size_t>(band)].levels;
            for (int level = 0; level < static_cast<int>(levels.size()); ++level) {
                const tagXDMFileLevel& size = levels[static_cast<std::size_t>(level)];
                for (int ty = 0; ty < size.GetTileRows(); ++ty) {
                    for (int tx = 0; tx < size.GetTileColumns(); ++tx) {
                        if (abort && *abort) return 0;
                        tile.resize(GetTileBytes(band, level, tx, ty));
                        if (!ReadTile(band, level, tx, ty, tile.data(), tile.size(), message)) {
                            return 0;
                        }
                    }
                }
            }
        }
        XString reason;
        if (m_state->catalogue.AreTilesApart(reason)) return 1;
        message = reason + ": " + m_state->name + ".";
    } catch (const std::bad_alloc&) {
        message = "There is not enough memory to check the file: " + m_state->name + ".";
    }
    return 0;
}

int XDMFileReader::IsXDMFile(const void* bytes, std::size_t count)
{
    return count >= sizeof kXDMFileMagic &&
           std::memcmp(bytes, kXDMFileMagic, sizeof kXDMFileMagic) == 0;
}
