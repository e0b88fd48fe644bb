#include "foundation/raster/XDMFileCatalogue.h"

#include "foundation/base/XChecksum.h"
#include "foundation/base/XFile.h"
#include "foundation/raster/XDMFileMeta.h"
#include "foundation/raster/XDMFileTile.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

bool IsAligned(std::uint64_t offset)
{
    return offset % kXDMFileAlignment == 0;
}

/// 1 when [offset, offset + bytes) lies behind the header and before the end.
bool IsInFile(std::uint64_t offset, std::uint64_t bytes, std::uint64_t fileBytes)
{
    return offset >= sizeof(tagXDMFileHeader) && bytes <= fileBytes && offset <= fileBytes - bytes;
}

XString NameLevel(int band, int level)
{
    return XfnFormat("level %d of band %d", level, band + 1);
}

/// What a block of this type holds, for sentences.
const char* GetBlockName(std::uint32_t type)
{
    switch (static_cast<XDMFileBlock>(type)) {
    case XDMFileBlock::File:
        return "description of the file";
    case XDMFileBlock::Band:
        return "description of a band";
    case XDMFileBlock::TileTable:
        return "tile table";
    case XDMFileBlock::Reference:
        return "spatial reference";
    case XDMFileBlock::Statistics:
        return "statistics";
    case XDMFileBlock::Classes:
        return "class table";
    case XDMFileBlock::Acquisition:
        return "acquisition attributes";
    case XDMFileBlock::Radar:
        return "radar attributes";
    case XDMFileBlock::GCPSets:
        return "control points";
    case XDMFileBlock::Regions:
        return "regions";
    case XDMFileBlock::Signatures:
        return "signatures";
    case XDMFileBlock::Matrices:
        return "matrices";
    case XDMFileBlock::RadarScene:
        return "radar scene";
    }
    return nullptr;
}

/// Place of a tile in the table of its level.
std::size_t IndexOf(const tagXDMFileInfo& info, int band, int level, int tx, int ty)
{
    const tagXDMFileBand& of = info.bands[static_cast<std::size_t>(band)];
    const std::size_t columns =
        static_cast<std::size_t>(of.levels[static_cast<std::size_t>(level)].GetTileColumns());
    return static_cast<std::size_t>(ty) * columns + static_cast<std::size_t>(tx);
}

bool IsBandBlock(XDMFileBlock type)
{
    return type == XDMFileBlock::Band ||
           std::find(std::begin(kXDMFileBandBlocks), std::end(kXDMFileBandBlocks), type) !=
               std::end(kXDMFileBandBlocks);
}

} // namespace

int XfnReadXDMFileBytes(const XFile& file, std::uint64_t offset, void* out, std::size_t count,
                        XString& reason)
{
    try {
        if (file.ReadAt(static_cast<std::int64_t>(offset), out, count) == count) return 1;
        reason = "The file was cut while it was open, or ends too early";
    } catch (XFileException& e) {
        const XFileException cause(e.m_cause, e.m_lOsError);
        reason = cause.GetErrorMessage().TrimRight(".");
        e.Delete();
    }
    return 0;
}

int XDMFileCatalogue::Read(const XFile& file, tagXDMFileInfo& info, XString& reason)
{
    tagXDMFileHeader header;
    return ReadHeader(file, header, reason) && ReadDirectory(file, header, reason) &&
           CheckPlaces(reason) && CountBands(info, reason) && ReadRecords(file, info, reason) &&
           XfnCheckXDMFileInfo(info, reason) && PlaceTables(info, reason);
}

int XDMFileCatalogue::ReadHeader(const XFile& file, tagXDMFileHeader& header, XString& reason)
{
    std::uint64_t length = 0;
    try {
        length = static_cast<std::uint64_t>(std::max<std::int64_t>(file.GetLength(), 0));
    } catch (XFileException& e) {
        reason = "The size of the file cannot be told";
        e.Delete();
        return 0;
    }
    unsigned char start[sizeof header] = {};
    const std::size_t got = static_cast<std::size_t>(std::min<std::uint64_t>(length, sizeof start));
    if (!XfnReadXDMFileBytes(file, 0, start, got, reason)) return 0;
    if (got < sizeof kXDMFileMagic || std::memcmp(start, kXDMFileMagic, sizeof kXDMFileMagic)) {
        reason = "This is not an XDM file";
        return 0;
    }
    if (got < sizeof header) {
        reason = "The file ends within its header";
        return 0;
    }
    std::memcpy(&header, start, sizeof header);
    if (header.majorVersion != kXDMFileMajorVersion) {
        reason = XfnFormat("The file has version %d of the format and this program reads %d",
                           int(header.majorVersion), int(kXDMFileMajorVersion));
        return 0;
    }
    if (!XfnIsChecksum(header.headerChecksum, start, sizeof header - 4)) {
        reason = "The header of the file is damaged";
        return 0;
    }
    if (header.requiredFeatures & ~kXDMFileKnownFeatures) {
        reason = "The file uses features of a newer program";
        return 0;
    }
    if (header.fileBytes > length) {
        reason = XfnFormat("The file is cut: %I64u of its %I64u bytes are there",
                           static_cast<unsigned long long>(length),
                           static_cast<unsigned long long>(header.fileBytes));
        return 0;
    }
    m_fileBytes = header.fileBytes;
    return 1;
}

int XDMFileCatalogue::ReadDirectory(const XFile& file, const tagXDMFileHeader& header,
                                    XString& reason)
{
    constexpr std::uint64_t kEntry = sizeof(tagXDMFileDirectoryEntry);
    if (!IsInFile(header.directoryOffset, header.directoryBytes, m_fileBytes) ||
        !IsAligned(header.directoryOffset)) {
        reason = "The directory lies outside the file";
        return 0;
    }
    if (header.directoryBytes % kEntry != 0 || header.directoryBytes == 0 ||
        header.directoryBytes / kEntry > kXDMFileMaxBlocks) {
        reason = "The directory has an impossible size";
        return 0;
    }
    m_directory.resize(static_cast<std::size_t>(header.directoryBytes / kEntry));
    if (!XfnReadXDMFileBytes(file, header.directoryOffset, m_directory.data(),
                             static_cast<std::size_t>(header.directoryBytes), reason)) {
        return 0;
    }
    if (!XfnIsChecksum(header.directoryChecksum, m_directory.data(),
                       static_cast<std::size_t>(header.directoryBytes))) {
        reason = "The directory is damaged";
        return 0;
    }
    m_pieces = {{0, sizeof header},
                {header.directoryOffset, header.directoryOffset + header.directoryBytes}};
    return 1;
}

int XDMFileCatalogue::CheckPlaces(XString& reason)
{
    for (const tagXDMFileDirectoryEntry& entry : m_directory) {
        const char* name = GetBlockName(entry.type);
        if (!name && (entry.flags & kXDMFileBlockIsRequired)) {
            reason = "The file needs a part that a newer program wrote";
            return 0;
        }
        const std::uint64_t limit = static_cast<XDMFileBlock>(entry.type) == XDMFileBlock::TileTable
                                        ? kXDMFileMaxTiles * sizeof(tagXDMFileTileEntry)
                                        : kXDMFileMaxBlockBytes;
        if (name && entry.bytes > limit) {
            reason = XfnFormat("The %s has an impossible size", name);
            return 0;
        }
        if (entry.bytes == 0 || !IsInFile(entry.offset, entry.bytes, m_fileBytes) ||
            !IsAligned(entry.offset)) {
            reason =
                XfnFormat("The %s lies outside the file", name ? name : "part of a newer program");
            return 0;
        }
        m_pieces.push_back({entry.offset, entry.offset + entry.bytes});
    }
    std::sort(m_pieces.begin(), m_pieces.end());
    for (std::size_t i = 1; i < m_pieces.size(); ++i) {
        if (m_pieces[i].begin < m_pieces[i - 1].end) {
            reason = "Two parts of the file claim the same bytes";
            return 0;
        }
    }
    // an order in which every block follows what it needs, and two of a kind stand together
    const auto key = [](const tagXDMFileDirectoryEntry& e) {
        return std::array{e.type, e.band, e.level};
    };
    std::sort(m_directory.begin(), m_directory.end(),
              [&](const auto& a, const auto& b) { return key(a) < key(b); });
    for (std::size_t i = 1; i < m_directory.size(); ++i) {
        const char* name = GetBlockName(m_directory[i].type);
        if (name && key(m_directory[i]) == key(m_directory[i - 1])) {
            reason = XfnFormat("The %s stands twice in the file", name);
            return 0;
        }
    }
    return 1;
}

int XDMFileCatalogue::ReadBlock(const XFile& file, const tagXDMFileDirectoryEntry& entry,
                                std::vector<unsigned char>& bytes, XString& reason) const
{
    bytes.resize(static_cast<std::size_t>(entry.bytes));
    if (!XfnReadXDMFileBytes(file, entry.offset, bytes.data(), bytes.size(), reason)) return 0;
    if (!XfnIsChecksum(entry.checksum, bytes.data(), bytes.size())) {
        reason = XfnFormat("The %s is damaged", GetBlockName(entry.type));
        return 0;
    }
    return 1;
}

int XDMFileCatalogue::CountBands(tagXDMFileInfo& info, XString& reason)
{
    const auto isBand = [](const tagXDMFileDirectoryEntry& e) {
        return static_cast<XDMFileBlock>(e.type) == XDMFileBlock::Band;
    };
    const auto count = std::count_if(m_directory.begin(), m_directory.end(), isBand);
    if (count == 0 || count > kXDMFileMaxBands) {
        reason = count == 0 ? "There is no band" : "There are too many bands";
        return 0;
    }
    info.bands.resize(static_cast<std::size_t>(count));
    m_fills.resize(info.bands.size());
    return 1;
}

int XDMFileCatalogue::ReadBandBlock(const XFile& file, const tagXDMFileDirectoryEntry& entry,
                                    tagXDMFileInfo& info, XString& reason)
{
    const XDMFileBlock type = static_cast<XDMFileBlock>(entry.type);
    const bool isShared = entry.band == kXDMFileNoIndex && XfnMayShareXDMFileBlock(type);
    if ((!isShared && entry.band >= info.bands.size()) || entry.level != kXDMFileNoIndex) {
        reason = XfnFormat("The %s belongs to a band that is not there", GetBlockName(entry.type));
        return 0;
    }
    std::vector<unsigned char> bytes;
    if (!ReadBlock(file, entry, bytes, reason)) return 0;
    tagXDMFileBand common;
    std::array<unsigned char, 16> fill{};
    tagXDMFileBand& band = isShared ? common : info.bands[entry.band];
    if (const char* fault =
            XfnDecodeXDMFileBandBlock(type, bytes.data(), bytes.size(), band, fill)) {
        reason = XfnFormat("The %s %s", GetBlockName(entry.type), fault);
        return 0;
    }
    if (type == XDMFileBlock::Band) m_fills[entry.band] = fill;
    if (!isShared) return 1;
    std::vector<bool> hasOwn(info.bands.size());
    for (const tagXDMFileDirectoryEntry& other : m_directory) {
        if (other.type == entry.type && other.band < hasOwn.size()) hasOwn[other.band] = true;
    }
    for (std::size_t i = 0; i < info.bands.size(); ++i) {
        if (hasOwn[i]) continue;
        if (type == XDMFileBlock::Reference) info.bands[i].reference = common.reference;
        if (type == XDMFileBlock::Acquisition) info.bands[i].acquisition = common.acquisition;
    }
    return 1;
}

int XDMFileCatalogue::ReadRecords(const XFile& file, tagXDMFileInfo& info, XString& reason)
{
    bool hasFileBlock = false;
    for (const tagXDMFileDirectoryEntry& entry : m_directory) {
        const XDMFileBlock type = static_cast<XDMFileBlock>(entry.type);
        if (!GetBlockName(entry.type) || type == XDMFileBlock::TileTable) continue;
        if (IsBandBlock(type)) {
            if (!ReadBandBlock(file, entry, info, reason)) return 0;
            continue;
        }
        if (entry.band != kXDMFileNoIndex || entry.level != kXDMFileNoIndex) {
            reason = XfnFormat("The %s belongs to a band and must not", GetBlockName(entry.type));
            return 0;
        }
        std::vector<unsigned char> bytes;
        if (!ReadBlock(file, entry, bytes, reason)) return 0;
        if (const char* fault = XfnDecodeXDMFileBlock(type, bytes.data(), bytes.size(), info)) {
            reason = XfnFormat("The %s %s", GetBlockName(entry.type), fault);
            return 0;
        }
        if (type == XDMFileBlock::File) hasFileBlock = true;
    }
    if (!hasFileBlock) reason = "The description of the file is missing";
    return hasFileBlock;
}

int XDMFileCatalogue::PlaceTables(const tagXDMFileInfo& info, XString& reason)
{
    m_firstTable.reserve(info.bands.size());
    for (const tagXDMFileBand& band : info.bands) {
        m_firstTable.push_back(m_tableCount);
        m_tableCount += band.levels.size();
    }
    m_tables = std::make_unique<tagTable[]>(m_tableCount);
    std::size_t placed = 0;
    for (const tagXDMFileDirectoryEntry& entry : m_directory) {
        if (static_cast<XDMFileBlock>(entry.type) != XDMFileBlock::TileTable) continue;
        if (entry.band >= info.bands.size() ||
            entry.level >= info.bands[entry.band].levels.size()) {
            reason = "The tile table belongs to a level that is not there";
            return 0;
        }
        const tagXDMFileLevel& level = info.bands[entry.band].levels[entry.level];
        const std::uint64_t tiles = static_cast<std::uint64_t>(level.GetTileColumns()) *
                                    static_cast<std::uint64_t>(level.GetTileRows());
        if (entry.bytes != tiles * sizeof(tagXDMFileTileEntry)) {
            reason = "The tile table of " +
                     NameLevel(static_cast<int>(entry.band), static_cast<int>(entry.level)) +
                     " has not the size that the level needs";
            return 0;
        }
        m_tables[m_firstTable[entry.band] + entry.level].place = entry;
        ++placed;
    }
    // none stands twice, so the right number is one for each level
    if (placed != m_tableCount) reason = "The tile table of a level is missing";
    return placed == m_tableCount;
}

const tagXDMFileTileEntry* XDMFileCatalogue::GetTile(const XFile& file, const tagXDMFileInfo& info,
                                                     int band, int level, int tx, int ty,
                                                     XString& reason) const
{
    tagTable& table = TableOf(band, level);
    if (table.state.load(std::memory_order_acquire) == 0) {
        const std::lock_guard lock(m_tableMutex);
        if (table.state.load(std::memory_order_relaxed) == 0) {
            const int isGood = ReadTable(file, info, band, level, table, table.failure);
            table.state.store(isGood ? 1 : -1, std::memory_order_release);
        }
    }
    if (table.state.load(std::memory_order_acquire) < 0) {
        reason = table.failure;
        return nullptr;
    }
    return &table.entries[IndexOf(info, band, level, tx, ty)];
}

bool XDMFileCatalogue::IsVerified(const tagXDMFileInfo& info, int band, int level, int tx,
                                  int ty) const
{
    const tagTable& table = TableOf(band, level);
    if (table.state.load(std::memory_order_acquire) <= 0) return false;
    const std::size_t index = IndexOf(info, band, level, tx, ty);
    return table.verified[index / 64].load(std::memory_order_relaxed) >> (index % 64) & 1;
}

void XDMFileCatalogue::MarkVerified(const tagXDMFileInfo& info, int band, int level, int tx,
                                    int ty) const
{
    const std::size_t index = IndexOf(info, band, level, tx, ty);
    TableOf(band, level)
        .verified[index / 64]
        .fetch_or(std::uint64_t{1} << (index % 64), std::memory_order_relaxed);
}

int XDMFileCatalogue::ReadTable(const XFile& file, const tagXDMFileInfo& info, int band, int level,
                                tagTable& table, XString& reason) const
{
    try {
        std::vector<tagXDMFileTileEntry> entries(
            static_cast<std::size_t>(table.place.bytes / sizeof(tagXDMFileTileEntry)));
        const std::size_t bytes = static_cast<std::size_t>(table.place.bytes);
        if (!XfnReadXDMFileBytes(file, table.place.offset, entries.data(), bytes, reason)) return 0;
        if (!XfnIsChecksum(table.place.checksum, entries.data(), bytes)) {
            reason = "The tile table of " + NameLevel(band, level) + " is damaged";
            return 0;
        }
        if (!CheckTable(info.bands[static_cast<std::size_t>(band)], level, entries, reason)) {
            reason += " in " + NameLevel(band, level);
            return 0;
        }
        table.verified = std::make_unique<std::atomic<std::uint64_t>[]>(entries.size() / 64 + 1);
        table.entries = std::move(entries);
        return 1;
    } catch (const std::bad_alloc&) {
        reason = "There is not enough memory for the tile table of " + NameLevel(band, level);
        return 0;
    }
}

int XDMFileCatalogue::CheckTable(const tagXDMFileBand& band, int level,
                                 const std::vector<tagXDMFileTileEntry>& entries,
                                 XString& reason) const
{
    const tagXDMFileLevel& size = band.levels[static_cast<std::size_t>(level)];
    const std::size_t columns = static_cast<std::size_t>(size.GetTileColumns());
    std::vector<tagRange> ranges;
    ranges.reserve(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const tagXDMFileTileEntry& entry = entries[i];
        const int tx = static_cast<int>(i % columns);
        const int ty = static_cast<int>(i / columns);
        const char* fault = nullptr;
        if (entry.encoding > static_cast<std::uint32_t>(XDMFileEncoding::PredictedZstd)) {
            fault = "is stored in an unknown way";
        } else if (entry.bytes == 0) {
            if (entry.offset != 0 || entry.encoding != 0) fault = "is empty and is not";
        } else if (!IsInFile(entry.offset, entry.bytes, m_fileBytes) || !IsAligned(entry.offset)) {
            fault = "lies outside the file";
        } else {
            tagXDMFileTileShape shape;
            shape.dataType = band.dataType;
            XfnGetXDMFileTileSize(size, tx, ty, shape.width, shape.height);
            const bool isPlain = entry.encoding == 0;
            if (isPlain ? entry.bytes != shape.GetBytes() : entry.bytes >= shape.GetBytes()) {
                fault = "has an impossible size";
            }
            ranges.push_back({entry.offset, entry.offset + entry.bytes});
            if (IsInPieces(ranges.back())) fault = "claims bytes of another part";
        }
        if (fault) {
            reason = XfnFormat("Tile (%d, %d) %s", tx, ty, fault);
            return 0;
        }
    }
    if (!std::is_sorted(ranges.begin(), ranges.end())) std::sort(ranges.begin(), ranges.end());
    for (std::size_t i = 1; i < ranges.size(); ++i) {
        if (ranges[i].begin < ranges[i - 1].end) {
            reason = "Two tiles claim the same bytes";
            return 0;
        }
    }
    return 1;
}

bool XDMFileCatalogue::IsInPieces(const tagRange& range) const
{
    // pieces are apart, so only the last that begins before the range's end can reach into it
    const auto next =
        std::lower_bound(m_pieces.begin(), m_pieces.end(), tagRange{range.end, range.end});
    return next != m_pieces.begin() && std::prev(next)->end > range.begin;
}

int XDMFileCatalogue::AreTilesApart(XString& reason) const
{
    std::vector<tagRange> ranges;
    for (std::size_t i = 0; i < m_tableCount; ++i) {
        for (const tagXDMFileTileEntry& entry : m_tables[i].entries) {
            if (entry.bytes > 0) ranges.push_back({entry.offset, entry.offset + entry.bytes});
        }
    }
    std::sort(ranges.begin(), ranges.end());
    for (std::size_t i = 1; i < ranges.size(); ++i) {
        if (ranges[i].begin < ranges[i - 1].end) {
            reason = "Two tiles claim the same bytes";
            return 0;
        }
    }
    return 1;
}
