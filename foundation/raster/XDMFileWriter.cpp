#include "foundation/raster/XDMFileWriter.h"

#include "foundation/base/XChecksum.h"
#include "foundation/base/XSafeFile.h"
#include "foundation/raster/XDMFileMeta.h"
#include "foundation/raster/XDMFileTile.h"

#include <array>
#include <bit>
#include <cstring>
#include <mutex>
#include <new>
#include <vector>

namespace {

/// One level under way.
struct tagLevelTable
{
    tagXDMFileLevel level;
    std::vector<tagXDMFileTileEntry> entries; // all zero: an empty tile
};

/// The part of a band that its tiles depend on.
struct tagBandLayout
{
    int dataType = 0;
    double nullValue = 0.0;
    int compression = 0;
    std::array<unsigned char, 16> fill{};
    std::vector<tagLevelTable> levels;
};

bool IsSameLayout(const tagBandLayout& layout, const tagXDMFileBand& band)
{
    if (layout.dataType != band.dataType || layout.levels.size() != band.levels.size())
        return false;
    // by bits: a null value may be NaN
    if (std::bit_cast<std::uint64_t>(layout.nullValue) !=
        std::bit_cast<std::uint64_t>(band.nullValue)) {
        return false;
    }
    for (std::size_t i = 0; i < band.levels.size(); ++i) {
        if (!(layout.levels[i].level == band.levels[i])) return false;
    }
    return true;
}

} // namespace

struct XDMFileWriter::tagState
{
    XSafeFile file;
    XString path;
    std::vector<tagBandLayout> bands;
    std::vector<tagXDMFileDirectoryEntry> directory;
    std::uint64_t features = 0;
    std::uint64_t end = 0; // bytes written
    XString failure;       // a sentence, once something failed
    std::mutex mutex;      // what WriteTile changes

    int Fail(const XString& reason);
    /// The level's table and the shape of the tile; null with a sentence when there is none of
    /// these bytes.
    tagLevelTable* FindTile(int band, int level, int tx, int ty, std::size_t size,
                            tagXDMFileTileShape& shape, XString& message);
    int Write(const void* bytes, std::size_t count);
    int Append(const void* bytes, std::size_t count, std::uint64_t& offset);
    int AppendBlock(XDMFileBlock type, std::uint32_t band, std::uint32_t level, bool isRequired,
                    const void* bytes, std::size_t count);
    int WriteTables();
    int WriteBandRecords(const tagXDMFileInfo& info, XDMFileBlock type);
    int WriteRecords(const tagXDMFileInfo& info);
    int WriteDirectoryAndHeader();
};

int XDMFileWriter::tagState::Fail(const XString& reason)
{
    failure = reason + ": " + path + ".";
    file.Discard();
    return 0;
}

tagLevelTable* XDMFileWriter::tagState::FindTile(int band, int level, int tx, int ty,
                                                 std::size_t size, tagXDMFileTileShape& shape,
                                                 XString& message)
{
    tagLevelTable* table = nullptr;
    if (band >= 0 && static_cast<std::size_t>(band) < bands.size()) {
        auto& levels = bands[static_cast<std::size_t>(band)].levels;
        if (level >= 0 && static_cast<std::size_t>(level) < levels.size()) {
            table = &levels[static_cast<std::size_t>(level)];
        }
    }
    if (table && XfnHasXDMFileTile(table->level, tx, ty)) {
        shape.dataType = bands[static_cast<std::size_t>(band)].dataType;
        XfnGetXDMFileTileSize(table->level, tx, ty, shape.width, shape.height);
    }
    if (shape.width > 0 && size == shape.GetBytes()) return table;
    message = XfnFormat("Tile (%d, %d) of level %d of band %d %s: ", tx, ty, level, band + 1,
                        shape.width == 0 ? "does not exist" : "has another size") +
              path + ".";
    return nullptr;
}

int XDMFileWriter::tagState::Write(const void* bytes, std::size_t count)
{
    if (file.Write(bytes, count)) {
        end += count;
        return 1;
    }
    // the new file keeps why; ending it hands the sentence over and takes the bytes off the disk
    file.Commit(failure);
    return 0;
}

int XDMFileWriter::tagState::Append(const void* bytes, std::size_t count, std::uint64_t& offset)
{
    static const unsigned char kZeros[kXDMFileAlignment] = {};
    const std::uint64_t over = end % kXDMFileAlignment;
    if (over && !Write(kZeros, static_cast<std::size_t>(kXDMFileAlignment - over))) return 0;
    offset = end;
    return Write(bytes, count);
}

int XDMFileWriter::tagState::AppendBlock(XDMFileBlock type, std::uint32_t band, std::uint32_t level,
                                         bool isRequired, const void* bytes, std::size_t count)
{
    if (directory.size() >= kXDMFileMaxBlocks) return Fail("The file would have too many parts");
    tagXDMFileDirectoryEntry entry{};
    entry.type = static_cast<std::uint32_t>(type);
    entry.flags = isRequired ? kXDMFileBlockIsRequired : 0;
    entry.band = band;
    entry.level = level;
    entry.bytes = count;
    entry.checksum = XfnGetChecksum(bytes, count);
    if (!Append(bytes, count, entry.offset)) return 0;
    directory.push_back(entry);
    return 1;
}

int XDMFileWriter::tagState::WriteTables()
{
    for (std::size_t b = 0; b < bands.size(); ++b) {
        for (std::size_t l = 0; l < bands[b].levels.size(); ++l) {
            const std::vector<tagXDMFileTileEntry>& entries = bands[b].levels[l].entries;
            if (!AppendBlock(XDMFileBlock::TileTable, static_cast<std::uint32_t>(b),
                             static_cast<std::uint32_t>(l), true, entries.data(),
                             entries.size() * sizeof(tagXDMFileTileEntry))) {
                return 0;
            }
        }
    }
    return 1;
}

int XDMFileWriter::tagState::WriteBandRecords(const tagXDMFileInfo& info, XDMFileBlock type)
{
    std::vector<unsigned char> first;
    std::vector<unsigned char> bytes;
    bool isShared = XfnMayShareXDMFileBlock(type) && info.bands.size() > 1;
    for (std::size_t b = 0; b < info.bands.size() && isShared; ++b) {
        if (!XfnEncodeXDMFileBandBlock(type, info.bands[b], bytes)) break;
        if (b == 0) first = bytes;
        isShared = bytes == first && !bytes.empty();
    }
    for (std::size_t b = 0; b < info.bands.size(); ++b) {
        if (!XfnEncodeXDMFileBandBlock(type, info.bands[b], bytes)) {
            return Fail("The attributes of a band are too large");
        }
        if (bytes.empty()) continue;
        const std::uint32_t band = isShared ? kXDMFileNoIndex : static_cast<std::uint32_t>(b);
        if (!AppendBlock(type, band, kXDMFileNoIndex, type == XDMFileBlock::Band, bytes.data(),
                         bytes.size())) {
            return 0;
        }
        if (isShared) break;
    }
    return 1;
}

int XDMFileWriter::tagState::WriteRecords(const tagXDMFileInfo& info)
{
    std::vector<unsigned char> bytes;
    if (!XfnEncodeXDMFileBlock(XDMFileBlock::File, info, bytes)) {
        return Fail("The description of the file is too large");
    }
    if (!AppendBlock(XDMFileBlock::File, kXDMFileNoIndex, kXDMFileNoIndex, true, bytes.data(),
                     bytes.size()) ||
        !WriteBandRecords(info, XDMFileBlock::Band)) {
        return 0;
    }
    for (const XDMFileBlock type : kXDMFileBandBlocks) {
        if (!WriteBandRecords(info, type)) return 0;
    }
    for (const XDMFileBlock type : kXDMFileFileBlocks) {
        if (!XfnEncodeXDMFileBlock(type, info, bytes)) {
            return Fail("The regions, signatures or control points are too large");
        }
        if (!bytes.empty() && !AppendBlock(type, kXDMFileNoIndex, kXDMFileNoIndex, false,
                                           bytes.data(), bytes.size())) {
            return 0;
        }
    }
    return 1;
}

int XDMFileWriter::tagState::WriteDirectoryAndHeader()
{
    tagXDMFileHeader header{};
    std::memcpy(header.magic, kXDMFileMagic, sizeof header.magic);
    header.majorVersion = kXDMFileMajorVersion;
    header.minorVersion = kXDMFileMinorVersion;
    header.requiredFeatures = features;
    header.directoryBytes = directory.size() * sizeof(tagXDMFileDirectoryEntry);
    header.directoryChecksum = XfnGetChecksum(directory.data(), header.directoryBytes);
    if (!Append(directory.data(), header.directoryBytes, header.directoryOffset)) return 0;
    header.fileBytes = end;
    header.headerChecksum = XfnGetChecksum(&header, sizeof header - 4);
    try {
        file.GetFile().SeekToBegin();
    } catch (XFileException& e) {
        e.Delete();
        return Fail("The header of the file cannot be written");
    }
    return Write(&header, sizeof header);
}

XDMFileWriter::XDMFileWriter() = default;
XDMFileWriter::~XDMFileWriter() = default;

int XDMFileWriter::Create(const char* path, const tagXDMFileInfo& info, XString& message)
{
    Discard();
    XString reason;
    if (!XfnCheckXDMFileInfo(info, reason)) {
        message = reason + ": " + XString(path) + ".";
        return 0;
    }
    try {
        auto state = std::make_unique<tagState>();
        state->path = path;
        for (const tagXDMFileBand& band : info.bands) {
            tagBandLayout layout;
            layout.dataType = band.dataType;
            layout.nullValue = band.nullValue;
            layout.compression = band.compression;
            layout.fill = XfnGetXDMFileFill(band.dataType, band.nullValue);
            for (const tagXDMFileLevel& level : band.levels) {
                layout.levels.push_back({level, {}});
                layout.levels.back().entries.resize(
                    static_cast<std::size_t>(level.GetTileColumns() * level.GetTileRows()));
            }
            state->bands.push_back(std::move(layout));
        }
        m_info = info;
        if (!state->file.Create(path, message)) return 0;
        const tagXDMFileHeader place{}; // of zeros until Commit, so that no piece passes for a file
        if (!state->Write(&place, sizeof place)) {
            message = state->failure;
            return 0;
        }
        m_state = std::move(state);
    } catch (const std::bad_alloc&) {
        message = "There is not enough memory to write the file: " + XString(path) + ".";
        return 0;
    }
    return 1;
}

int XDMFileWriter::WriteTile(int band, int level, int tx, int ty, const void* samples,
                             std::size_t size, XString& message)
{
    if (!m_state) {
        message = "No file is being written.";
        return 0;
    }
    tagState& state = *m_state;
    tagXDMFileTileShape shape;
    tagLevelTable* table = state.FindTile(band, level, tx, ty, samples ? size : 0, shape, message);
    if (!table) return 0;

    const tagBandLayout& layout = state.bands[static_cast<std::size_t>(band)];
    const std::size_t sampleSize =
        static_cast<std::size_t>(XfnGetXDMFileSampleSize(shape.dataType));
    tagXDMFileTileEntry entry{};
    std::vector<unsigned char> packed;
    const void* payload = samples;
    if (!XfnIsXDMFileTileEmpty(samples, size, layout.fill.data(), sampleSize)) {
        const XDMFileEncoding encoding =
            XfnEncodeXDMFileTile(samples, shape, layout.compression, packed);
        if (encoding != XDMFileEncoding::Plain) payload = packed.data();
        entry.encoding = static_cast<std::uint32_t>(encoding);
        entry.bytes =
            static_cast<std::uint32_t>(encoding == XDMFileEncoding::Plain ? size : packed.size());
        entry.checksum = XfnGetChecksum(payload, entry.bytes);
    }

    const std::lock_guard lock(state.mutex);
    if (!state.failure.IsEmpty() ||
        (entry.bytes > 0 && !state.Append(payload, entry.bytes, entry.offset))) {
        message = state.failure;
        return 0;
    }
    if (entry.encoding != 0) state.features |= kXDMFileUsesZstd;
    if (static_cast<XDMFileEncoding>(entry.encoding) == XDMFileEncoding::PredictedZstd) {
        state.features |= kXDMFileUsesPrediction;
    }
    table->entries[static_cast<std::size_t>(ty) *
                       static_cast<std::size_t>(table->level.GetTileColumns()) +
                   static_cast<std::size_t>(tx)] = entry;
    return 1;
}

int XDMFileWriter::ReadTile(int band, int level, int tx, int ty, void* out, std::size_t size,
                            XString& message)
{
    if (!m_state) {
        message = "No file is being written.";
        return 0;
    }
    tagState& state = *m_state;
    tagXDMFileTileShape shape;
    const tagLevelTable* table =
        state.FindTile(band, level, tx, ty, out ? size : 0, shape, message);
    if (!table) return 0;
    const std::size_t place =
        static_cast<std::size_t>(ty) * static_cast<std::size_t>(table->level.GetTileColumns()) +
        static_cast<std::size_t>(tx);
    tagXDMFileTileEntry entry;
    std::unique_ptr<unsigned char[]> packed;
    const auto fail = [&](const char* reason) {
        message = XString(reason) + ": " + state.path + ".";
        return 0;
    };
    {
        const std::lock_guard lock(state.mutex);
        entry = table->entries[place];
        if (!state.failure.IsEmpty()) {
            message = state.failure;
            return 0;
        }
        if (entry.bytes > 0) {
            void* payload = out;
            if (entry.encoding != 0) {
                packed.reset(new (std::nothrow) unsigned char[entry.bytes]);
                if (!packed) return fail("There is not enough memory to read a tile");
                payload = packed.get();
            }
            // in turn with the writing, which closes the file when it fails
            try {
                if (state.file.GetFile().ReadAt(static_cast<std::int64_t>(entry.offset), payload,
                                                entry.bytes) != entry.bytes)
                    return fail("A part of the file is gone while it is written");
            } catch (XFileException& e) {
                e.m_strFileName = state.path;
                message = e.GetErrorMessage();
                e.Delete();
                return 0;
            }
        }
    }
    if (entry.bytes == 0) {
        const tagBandLayout& layout = state.bands[static_cast<std::size_t>(band)];
        XfnFillXDMFileTile(out, size, layout.fill.data(),
                           static_cast<std::size_t>(XfnGetXDMFileSampleSize(shape.dataType)));
        return 1;
    }
    if (!XfnIsChecksum(entry.checksum, packed ? packed.get() : out, entry.bytes) ||
        (packed && !XfnDecodeXDMFileTile(static_cast<XDMFileEncoding>(entry.encoding), packed.get(),
                                         entry.bytes, shape, out)))
        return fail("A tile was changed by another program while the file is written");
    return 1;
}

int XDMFileWriter::Commit(XString& message)
{
    if (!m_state) {
        message = "No file is being written.";
        return 0;
    }
    tagState& state = *m_state;
    if (state.failure.IsEmpty()) {
        XString reason;
        bool isSame = m_info.bands.size() == state.bands.size();
        for (std::size_t i = 0; isSame && i < state.bands.size(); ++i) {
            isSame = IsSameLayout(state.bands[i], m_info.bands[i]);
        }
        if (!isSame) reason = "The layout of a band changed after its tiles were begun";
        if (!isSame || !XfnCheckXDMFileInfo(m_info, reason)) {
            message = reason + ": " + state.path + ".";
            return 0;
        }
        try {
            if (state.WriteTables() && state.WriteRecords(m_info) &&
                state.WriteDirectoryAndHeader() && state.file.Commit(state.failure)) {
                m_state.reset();
                return 1;
            }
        } catch (const std::bad_alloc&) {
            state.Fail("There is not enough memory to write the file");
        }
    }
    message = state.failure;
    return 0;
}

void XDMFileWriter::Discard()
{
    m_state.reset();
}
