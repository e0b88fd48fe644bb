#include "TestXDMFileSamples.h"

#include "foundation/base/XChecksum.h"
#include "foundation/raster/XDMFileLayout.h"

namespace {

/// A small file that can be changed piece by piece and given right checksums again.
class DamagedFile
{
public:
    explicit DamagedFile(const XDMFileBytes& bytes) : m_bytes(bytes) {}

    tagXDMFileHeader& Header() { return *At<tagXDMFileHeader>(0); }
    std::size_t CountBlocks() { return Header().directoryBytes / sizeof(tagXDMFileDirectoryEntry); }
    tagXDMFileDirectoryEntry& Block(std::size_t index)
    {
        return At<tagXDMFileDirectoryEntry>(Header().directoryOffset)[index];
    }
    tagXDMFileDirectoryEntry& Block(XDMFileBlock type, std::uint32_t band = kXDMFileNoIndex)
    {
        for (std::size_t i = 0; i < CountBlocks(); ++i) {
            if (Block(i).type == static_cast<std::uint32_t>(type) &&
                (band == kXDMFileNoIndex || Block(i).band == band)) {
                return Block(i);
            }
        }
        throw std::runtime_error("no such block");
    }
    tagXDMFileTileEntry& Tile(std::size_t index, std::uint32_t band = 0)
    {
        return At<tagXDMFileTileEntry>(Block(XDMFileBlock::TileTable, band).offset)[index];
    }
    /// Sets value `index` of the field `id` at the top of a block.
    void SetNumber(XDMFileBlock type, unsigned id, std::size_t index, std::int64_t value,
                   std::uint32_t band = kXDMFileNoIndex)
    {
        const tagXDMFileDirectoryEntry block = Block(type, band);
        for (std::size_t at = block.offset; at < block.offset + block.bytes;) {
            std::uint16_t found;
            std::uint32_t count;
            std::memcpy(&found, &m_bytes.at(at), sizeof found);
            std::memcpy(&count, &m_bytes.at(at + 4), sizeof count);
            if (found == id) {
                std::memcpy(&m_bytes.at(at + 8 + 8 * index), &value, sizeof value);
                return;
            }
            at += 8 + count;
        }
        throw std::runtime_error("no such field");
    }
    unsigned char& Byte(std::size_t at) { return m_bytes.at(at); }

    /// Puts other bytes in the place of a block, at the end of the file.
    void Replace(XDMFileBlock type, const XDMFileBytes& bytes)
    {
        m_bytes.resize((m_bytes.size() + 15) / 16 * 16);
        Block(type).offset = m_bytes.size();
        Block(type).bytes = bytes.size();
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
        Header().fileBytes = m_bytes.size();
    }

    /// Makes every checksum right whose piece lies in the file.
    void Seal()
    {
        const auto sum = [&](std::uint64_t offset, std::uint64_t count, std::uint32_t& out) {
            if (offset <= m_bytes.size() && count <= m_bytes.size() - offset) {
                out = XfnGetChecksum(m_bytes.data() + offset, count);
            }
        };
        tagXDMFileHeader& header = Header();
        if (header.directoryOffset + header.directoryBytes <= m_bytes.size() &&
            header.directoryBytes <= m_bytes.size()) {
            for (std::size_t i = 0; i < CountBlocks(); ++i) {
                sum(Block(i).offset, Block(i).bytes, Block(i).checksum);
            }
        }
        sum(header.directoryOffset, header.directoryBytes, header.directoryChecksum);
        sum(0, sizeof header - 4, header.headerChecksum);
    }

    XDMFileBytes& Bytes() { return m_bytes; }

private:
    // the sample is one allocation, and every piece of it aligned to 16
    template <class T>
    T* At(std::size_t offset)
    {
        return reinterpret_cast<T*>(m_bytes.data() + offset);
    }

    XDMFileBytes m_bytes;
};

tagXDMFileInfo MakeSmallInfo()
{
    tagXDMFileInfo info;
    info.bands = {MakeBand(3), MakeBand(3, 1)};
    for (tagXDMFileBand& band : info.bands)
        band.levels = {{20, 10, 16, 8}, {10, 5, 16, 8}};
    info.bands[0].statistics.kind = XDMFileStatisticsKind::Exact;
    info.bands[0].classes.resize(2);
    info.regions.resize(1);
    info.signatures.resize(1);
    info.signatures[0].regions = {0};
    return info;
}

/// Opens and reads everything; the bytes stand in memory that ends where they end.
int ReadEverything(const XDMFileBytes& bytes, XString& message)
{
    const XDMFileBytes exact(bytes.begin(), bytes.end());
    XDMFileReader reader;
    return reader.Open(ShowBytes(exact), "bad.xdm", message) && reader.CheckAll(nullptr, message);
}

XDMFileBytes MakeField(unsigned id, unsigned kind, std::uint32_t count, const XDMFileBytes& value)
{
    XDMFileBytes out(8);
    const std::uint16_t head[2] = {static_cast<std::uint16_t>(id),
                                   static_cast<std::uint16_t>(kind)};
    std::memcpy(out.data(), head, 4);
    std::memcpy(out.data() + 4, &count, 4);
    out.insert(out.end(), value.begin(), value.end());
    return out;
}

XDMFileBytes Repeat(const XDMFileBytes& bytes, int times)
{
    XDMFileBytes out;
    for (int i = 0; i < times; ++i)
        out.insert(out.end(), bytes.begin(), bytes.end());
    return out;
}

constexpr std::uint64_t kHuge = ~std::uint64_t(0) - 15;

/// Makes a block one that every reader may skip.
void Forget(tagXDMFileDirectoryEntry& block)
{
    block.type = 999;
    block.flags = 0;
}

/// A packed tile where one of another width is expected.
void SetTileWidth(DamagedFile& f, int width)
{
    f.Tile(3, 1) = {};
    f.SetNumber(XDMFileBlock::Band, 9, 2, width, 1);
}

using F = DamagedFile&;
using enum XDMFileBlock;

struct tagLie
{
    const char* name;
    const char* answer; // part of the sentence; empty when the file is to be read
    void (*tell)(F);
};

const tagLie kLies[] = {
    {"untouched", "", [](DamagedFile&) {}},
    {"bytes after the end", "", [](F f) { f.Bytes().resize(f.Bytes().size() + 9, 1); }},
    {"an unknown part that may be skipped", "", [](F f) { f.Block(Statistics).type = 999; }},
    {"an unknown optional feature", "", [](F f) { f.Header().optionalFeatures = 64; }},
    {"a later minor version", "", [](F f) { f.Header().minorVersion = 7; }},
    {"an unknown field", "",
     [](F f) {
         f.Replace(File, MakeField(99, 77, 3, {1, 2, 3}));
     }},

    {"another file", "not an XDM file", [](F f) { f.Header().magic[4] = '\n'; }},
    {"a later version", "version 2", [](F f) { f.Header().majorVersion = 2; }},
    {"an unknown required feature", "newer program",
     [](F f) { f.Header().requiredFeatures |= 64; }},
    {"an unknown required part", "newer program",
     [](F f) { f.Block(Regions) = {999, 1, 0, 0, 64, 1, 0, 0}; }},

    {"a directory past the end", "directory lies outside",
     [](F f) { f.Header().directoryOffset = f.Bytes().size() / 16 * 16; }},
    {"a directory whose end wraps", "directory lies outside",
     [](F f) { f.Header().directoryOffset = kHuge; }},
    {"a directory over the header", "directory lies outside",
     [](F f) { f.Header().directoryOffset = 16; }},
    {"a directory off its alignment", "directory lies outside",
     [](F f) { f.Header().directoryOffset -= 8; }},
    {"half an entry in the directory", "impossible size",
     [](F f) { f.Header().directoryBytes -= 8; }},
    {"an empty directory", "impossible size", [](F f) { f.Header().directoryBytes = 0; }},
    {"a directory over a block", "same bytes",
     [](F f) { f.Block(Band).offset = f.Header().directoryOffset + 16; }},

    {"a block past the end", "lies outside", [](F f) { f.Block(Band).bytes = f.Bytes().size(); }},
    {"a block whose end wraps", "lies outside", [](F f) { f.Block(Band).offset = kHuge; }},
    {"a block of absurd size", "impossible size",
     [](F f) { f.Block(Band).bytes = ~std::uint64_t(0); }},
    {"an empty block", "lies outside", [](F f) { f.Block(Band).bytes = 0; }},
    {"two blocks in one place", "same bytes",
     [](F f) { f.Block(Regions).offset = f.Block(Band).offset; }},
    {"an unknown block over another", "same bytes",
     [](F f) {
         f.Block(Regions).offset = f.Block(Band).offset;
         f.Block(Regions).type = 999;
     }},
    {"a block twice", "stands twice", [](F f) { f.Block(Band, 1).band = 0; }},
    {"a gap in the bands", "not there", [](F f) { f.Block(Band, 1).band = 5; }},
    {"statistics for all bands", "not there",
     [](F f) { f.Block(Statistics).band = kXDMFileNoIndex; }},
    {"regions of a band", "must not", [](F f) { f.Block(Regions).band = 0; }},
    {"no band", "no band",
     [](F f) {
         f.Block(Band, 1) = {998, 0, 1, 0, f.Block(Band, 1).offset, 1, 0, 0};
         f.Block(Band, 0) = {999, 0, 1, 0, f.Block(Band, 0).offset, 1, 0, 0};
     }},
    {"no description", "missing", [](F f) { Forget(f.Block(File)); }},
    {"no tile table", "missing", [](F f) { Forget(f.Block(TileTable)); }},
    {"a tile table of no level", "not there", [](F f) { f.Block(TileTable, 1).level = 2; }},
    {"a tile table too short", "not the size", [](F f) { f.Block(TileTable).bytes -= 24; }},

    {"no pixels", "no pixels", [](F f) { f.SetNumber(Band, 9, 0, 0); }},
    {"negative pixels", "no pixels", [](F f) { f.SetNumber(Band, 9, 1, -10); }},
    {"a width beyond 32 bits", "too large", [](F f) { f.SetNumber(Band, 9, 0, (1LL << 32) + 20); }},
    {"more tiles than any file holds", "too many tiles",
     [](F f) {
         for (const std::size_t side : {0, 1})
             f.SetNumber(Band, 9, side, 0x7FFFFFFF), f.SetNumber(Band, 9, 2 + side, 1);
     }},
    {"a wider picture than tiles", "not the size", [](F f) { f.SetNumber(Band, 9, 0, 40); }},
    {"a giant tile", "too large",
     [](F f) { f.SetNumber(Band, 9, 2, 32768), f.SetNumber(Band, 9, 3, 32768); }},
    {"a tile side of 0", "tile size", [](F f) { f.SetNumber(Band, 9, 2, 0); }},
    {"a level that grows", "not smaller", [](F f) { f.SetNumber(Band, 9, 4, 21); }},
    {"a level like the last", "not smaller",
     [](F f) { f.SetNumber(Band, 9, 4, 20), f.SetNumber(Band, 9, 5, 10); }},
    {"an unknown data type", "proper sample", [](F f) { f.SetNumber(Band, 4, 0, 17); }},
    {"a data type beyond an int", "too large", [](F f) { f.SetNumber(Band, 4, 0, 1LL << 40); }},
    {"a data type of another size", "proper sample", [](F f) { f.SetNumber(Band, 4, 0, 8); }},
    {"statistics of no kind", "unknown kind", [](F f) { f.SetNumber(Statistics, 1, 0, 3); }},
    {"a region that is not there", "not there",
     [](F f) {
         const XDMFileBytes regions = MakeField(4, 1, 8, {1, 0, 0, 0, 0, 0, 0, 0});
         f.Replace(Signatures, MakeField(1, 4, 16, regions));
     }},

    {"half a field head", "head of a field",
     [](F f) {
         f.Replace(File, {1, 0, 3, 0, 0, 0, 0});
     }},
    {"a field longer than its block", "within a field",
     [](F f) {
         f.Replace(File, MakeField(1, 3, 4, {1, 2, 3}));
     }},
    {"a field of 4 GiB", "within a field",
     [](F f) {
         f.Replace(File, MakeField(1, 3, 0xFFFFFFFF, {1, 2, 3}));
     }},
    {"a field twice", "twice", [](F f) { f.Replace(File, Repeat(MakeField(1, 3, 1, {'a'}), 2)); }},
    {"a number for a text", "another kind",
     [](F f) { f.Replace(File, MakeField(1, 1, 8, XDMFileBytes(8))); }},
    {"seven bytes of a real", "another length",
     [](F f) { f.Replace(File, MakeField(4, 2, 7, XDMFileBytes(7))); }},
    {"255 bins", "histogram",
     [](F f) { f.Replace(Statistics, MakeField(10, 1, 255 * 8, XDMFileBytes(255 * 8))); }},
    {"a matrix of another size", "wrong size",
     [](F f) {
         f.Block(Classes) = {12, 0, kXDMFileNoIndex, kXDMFileNoIndex, 64, 1, 0, 0};
         f.Replace(Matrices, MakeField(1, 2, 24, XDMFileBytes(24)));
     }},
    {"a flood of empty records", "more records",
     [](F f) { f.Replace(Regions, Repeat(MakeField(1, 4, 0, {}), 5000)); }},

    {"a tile past the end", "lies outside",
     [](F f) { f.Tile(0).offset = f.Bytes().size() / 16 * 16; }},
    {"a tile whose end wraps", "lies outside", [](F f) { f.Tile(0).offset = kHuge; }},
    {"a tile over the header", "lies outside", [](F f) { f.Tile(0).offset = 0; }},
    {"a tile off its alignment", "lies outside", [](F f) { f.Tile(0).offset += 8; }},
    {"a tile over the directory", "another part",
     [](F f) { f.Tile(0).offset = f.Header().directoryOffset; }},
    {"a tile that begins before a block and ends in it", "another part",
     [](F f) { f.Tile(0).offset = (f.Block(TileTable).offset - 16) / 16 * 16; }},
    {"two tiles of a level in one place", "Two tiles",
     [](F f) { f.Tile(1).offset = f.Tile(0).offset + 16; }},
    {"tiles of two bands in one place", "Two tiles", [](F f) { f.Tile(0, 1) = f.Tile(0, 0); }},
    {"a plain tile of other bytes", "impossible size", [](F f) { --f.Tile(0).bytes; }},
    {"a packed tile as large as a plain one", "impossible size",
     [](F f) { f.Tile(0).encoding = 1; }},
    {"an unknown encoding", "unknown way", [](F f) { f.Tile(0).encoding = 3; }},
    {"an empty tile somewhere", "empty and is not", [](F f) { f.Tile(0).bytes = 0; }},
    {"a packed tile that is none", "decompressed",
     [](F f) {
         tagXDMFileTileEntry& tile = f.Tile(0, 1);
         ++f.Byte(tile.offset);
         tile.checksum = XfnGetChecksum(&f.Byte(tile.offset), tile.bytes);
     }},
    {"a packed tile larger than the tile", "decompressed", [](F f) { SetTileWidth(f, 15); }},
    {"a packed tile smaller than the tile", "decompressed", [](F f) { SetTileWidth(f, 17); }},
};

} // namespace

TEST(XDMFileDamage, EveryLieIsASentence)
{
    const XDMFileBytes sample = MakeSample(MakeSmallInfo());
    for (const tagLie& lie : kLies) {
        DamagedFile file(sample);
        lie.tell(file);
        file.Seal();
        XString message;
        const int isRead = ReadEverything(file.Bytes(), message);
        if (*lie.answer == 0) {
            EXPECT_TRUE(isRead) << lie.name << ": " << message.GetString();
            continue;
        }
        EXPECT_FALSE(isRead) << lie.name;
        EXPECT_GE(message.Find(lie.answer), 0) << lie.name << ": " << message.GetString();
        EXPECT_GE(message.Find(": bad.xdm."), 0) << lie.name << ": " << message.GetString();
    }
}

TEST(XDMFileDamage, EveryCutIsASentence)
{
    const XDMFileBytes whole = MakeSample(MakeSmallInfo());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        XString message;
        EXPECT_FALSE(ReadEverything(XDMFileBytes(whole.begin(), whole.begin() + length), message))
            << length << " bytes";
        EXPECT_GE(message.Find("bad.xdm"), 0) << length << " bytes";
    }
}

TEST(XDMFileDamage, EveryFlippedBitIsSeenOrDoesNotMatter)
{
    const tagXDMFileInfo info = MakeSmallInfo();
    XDMFileBytes bytes = MakeSample(info);
    int unseen = 0;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            bytes[at] ^= static_cast<unsigned char>(1 << bit);
            XDMFileReader reader;
            XString message;
            if (reader.Open(ShowBytes(bytes), "bad.xdm", message) &&
                reader.CheckAll(nullptr, message)) {
                ++unseen;
                EXPECT_TRUE(reader.GetInfo() == info && HasSampleTiles(reader, message)) << at;
            } else {
                EXPECT_GE(message.Find("bad.xdm"), 0) << at;
            }
            bytes[at] ^= static_cast<unsigned char>(1 << bit);
        }
    }
    // only bytes between the pieces may go unseen
    EXPECT_LT(unseen, static_cast<int>(bytes.size()));
}

TEST(XDMFileDamage, TablesAreReadWhenATileIsAskedFor)
{
    DamagedFile file(MakeSample(MakeSmallInfo()));
    file.Tile(0, 0).offset = 8;
    file.Seal();
    XDMFileReader reader;
    XString message;
    ASSERT_TRUE(reader.Open(ShowBytes(file.Bytes()), "half.xdm", message)) << message.GetString();
    XDMFileBytes tile(reader.GetTileBytes(0, 0, 0, 0));
    for (int attempt = 0; attempt < 2; ++attempt) { // the second answer is kept, not read
        message.Empty();
        EXPECT_FALSE(reader.ReadTile(0, 0, 0, 0, tile.data(), tile.size(), message));
        EXPECT_GE(message.Find("half.xdm"), 0);
    }
    EXPECT_TRUE(reader.ReadTile(1, 0, 0, 0, tile.data(), tile.size(), message));
}
