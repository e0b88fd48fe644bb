#include "TestXDMFileSamples.h"

#include "foundation/raster/XDMFileMeta.h"
#include "tests/support/XFullDisk.h"

#include <functional>
#include <iomanip>
#include <sstream>
#include <thread>

namespace {

void WriteText(const std::string& path, const char* text)
{
    std::ofstream(path) << text;
}

std::string ReadText(const std::string& path)
{
    const XDMFileBytes bytes = LoadBytes(path);
    return std::string(bytes.begin(), bytes.end());
}

} // namespace

TEST(XDMFileWriter, AFullDiskKeepsTheOldFile)
{
    const XDMFileFolder folder;
    const std::string path = folder / "full.xdm";
    const tagXDMFileInfo info = MakeFullInfo();
    const rlim_t whole = MakeSample(info).size();
    WriteText(path, "old");
    // the disk is full at the header, among the tiles, among the records and at the last byte
    for (const rlim_t room : {rlim_t(10), rlim_t(1500), whole - 3000, whole - 1}) {
        XString message;
        int isWritten = 0;
        {
            const XFullDisk disk(room);
            XDMFileWriter writer;
            isWritten = writer.Create(path.c_str(), info, message);
            ForEachTile(info, [&](int b, int l, int tx, int ty) {
                const XDMFileBytes tile = MakeTile(GetTileBytes(info, b, l, tx, ty), b, l, tx, ty);
                isWritten =
                    isWritten && writer.WriteTile(b, l, tx, ty, tile.data(), tile.size(), message);
            });
            isWritten = isWritten && writer.Commit(message);
        }
        EXPECT_FALSE(isWritten) << room;
        EXPECT_GE(message.Find("disk is full"), 0) << room << message.GetString();
        EXPECT_GE(message.Find("full.xdm"), 0) << room << message.GetString();
        EXPECT_EQ(ReadText(path), "old") << room;
        EXPECT_EQ(folder.CountFiles(), 1) << room;
    }
}

TEST(XDMFileWriter, AFailureOnceToldStays)
{
    tagWriting w(MakeInfo({MakeBand(3)}));
    auto& [folder, path, writer, message] = w;
    const XDMFileBytes tile(256, 1);
    {
        const XFullDisk disk(100);
        EXPECT_FALSE(writer.WriteTile(0, 0, 0, 0, tile.data(), tile.size(), message));
    }
    // room again, yet a hole stands where the tile should
    EXPECT_FALSE(writer.WriteTile(0, 0, 1, 0, tile.data(), tile.size(), message));
    message.Empty();
    EXPECT_FALSE(writer.Commit(message));
    EXPECT_GE(message.Find("disk is full"), 0) << message.GetString();
    EXPECT_EQ(folder.CountFiles(), 0);
}

TEST(XDMFileWriter, ACancelLeavesNothing)
{
    const XDMFileFolder folder;
    const std::string path = folder / "cancelled.xdm";
    const tagXDMFileInfo info = MakeInfo({MakeBand(3)});
    WriteText(path, "old");
    for (int tiles = 0; tiles < 3; ++tiles) {
        XDMFileWriter writer;
        XString message;
        ASSERT_TRUE(writer.Create(path.c_str(), info, message));
        for (int tx = 0; tx < tiles; ++tx) {
            const XDMFileBytes tile(GetTileBytes(info, 0, 0, tx, 0), 1);
            ASSERT_TRUE(writer.WriteTile(0, 0, tx, 0, tile.data(), tile.size(), message));
        }
        EXPECT_EQ(folder.CountFiles(), 2);
        if (tiles == 1) writer.Discard();
        if (tiles == 2) {
            ASSERT_TRUE(writer.Create(path.c_str(), info, message));
        }
    }
    EXPECT_EQ(folder.CountFiles(), 1);
    EXPECT_EQ(ReadText(path), "old");
}

TEST(XDMFileWriter, RefusesWhatCouldNotBeRead)
{
    const struct
    {
        const char* answer;
        std::function<void(tagXDMFileInfo&)> spoil;
    } cases[] = {
        {"no band", [](auto& info) { info.bands.clear(); }},
        {"Band 2 has an unknown data type", [](auto& info) { info.bands[1].dataType = 0; }},
        {"no levels", [](auto& info) { info.bands[0].levels.clear(); }},
        {"Level 1 of band 1 is not smaller",
         [](auto& info) { info.bands[0].levels[1] = info.bands[0].levels[0]; }},
        {"unknown compression", [](auto& info) { info.bands[0].compression = 3; }},
        {"pixel size", [](auto& info) { info.bands[0].reference.xPixelSize = 0; }},
        {"pixel size", [](auto& info) { info.bands[0].reference.yPixelSize = 0.0 / -0.0; }},
        {"upper left", [](auto& info) { info.bands[0].reference.ulY = 1.0 / 0.0; }},
        {"warp", [](auto& info) { info.bands[0].reference.worldToPixel.terms = 5; }},
        {"not finite",
         [](auto& info) { info.bands[1].reference.worldToPixel.xCoeff[9] = 0.0 / -0.0; }},
        {"histogram", [](auto& info) { info.bands[0].statistics.histogram[7] = -1; }},
        {"histogram", [](auto& info) { info.bands[0].statistics.histogram.clear(); }},
        {"red, green and blue", [](auto& info) { info.headerBands[1] = 2; }},
        {"Control point set 1", [](auto& info) { info.gcpSets[0].points[1].refX = 1.0 / 0.0; }},
        {"x, y and z", [](auto& info) { info.regions[0].vertices.pop_back(); }},
        {"Signature 1 names a region", [](auto& info) { info.signatures[0].regions[0] = 2; }},
        {"another number", [](auto& info) { info.signatures[0].regions[0] = -1; }},
        {"unknown type", [](auto& info) { info.signatures[0].own[0].type = 4; }},
        {"wrong size", [](auto& info) { info.regions[0].coMoments.push_back(1); }},
        {"wrong size", [](auto& info) { info.regions[0].jointMeans.push_back(1); }},
        {"wrong size", [](auto& info) { info.correlation.pop_back(); }},
    };
    const XDMFileFolder folder;
    for (const auto& c : cases) {
        tagXDMFileInfo info = MakeFullInfo();
        c.spoil(info);
        XDMFileWriter writer;
        XString message;
        EXPECT_FALSE(writer.Create((folder / "no.xdm").c_str(), info, message)) << c.answer;
        EXPECT_GE(message.Find(c.answer), 0) << c.answer << ": " << message.GetString();
        EXPECT_GE(message.Find("no.xdm"), 0) << message.GetString();
        EXPECT_EQ(folder.CountFiles(), 0);
    }
}

TEST(XDMFileWriter, RecordsMayFollowButNotTheLayout)
{
    tagXDMFileInfo info = MakeInfo({MakeBand(3)});
    info.bands[0].nullValue = 0.0 / -0.0;
    tagWriting w(info);
    auto& [folder, path, writer, message] = w;
    writer.GetInfo().bands[0].statistics.max = 12;
    writer.GetInfo().bands[0].levels.pop_back();
    EXPECT_FALSE(writer.Commit(message));
    EXPECT_GE(message.Find("layout of a band changed"), 0) << message.GetString();
    writer.GetInfo().bands[0].levels = info.bands[0].levels;
    writer.GetInfo().correlation = {1, 2};
    EXPECT_FALSE(writer.Commit(message));
    writer.GetInfo().correlation = {1};
    EXPECT_TRUE(writer.Commit(message)) << message.GetString();
    EXPECT_FALSE(writer.Commit(message));
    XDMFileReader reader;
    ASSERT_TRUE(reader.Open(path.c_str(), message)) << message.GetString();
    EXPECT_EQ(reader.GetInfo().bands[0].statistics.max, 12);
    EXPECT_EQ(reader.GetInfo().correlation, std::vector<double>{1});
}

TEST(XDMFileWriter, RefusesTilesThatDoNotFit)
{
    tagWriting w(MakeInfo({MakeBand(3)}));
    auto& [folder, path, writer, message] = w;
    const XDMFileBytes tile(256, 1);
    EXPECT_FALSE(XDMFileWriter().WriteTile(0, 0, 0, 0, tile.data(), 256, message));
    const int none[][4] = {{1, 0, 0, 0}, {0, 2, 0, 0}, {0, 0, 3, 0}, {0, 0, 0, 3}, {0, 0, 0, -1}};
    for (const auto& t : none) {
        EXPECT_FALSE(writer.WriteTile(t[0], t[1], t[2], t[3], tile.data(), 256, message));
        EXPECT_GE(message.Find("does not exist"), 0) << message.GetString();
    }
    EXPECT_FALSE(writer.WriteTile(0, 0, 2, 0, tile.data(), 256, message)); // 5 pixels wide
    EXPECT_GE(message.Find("another size"), 0) << message.GetString();
    EXPECT_TRUE(writer.WriteTile(0, 0, 0, 0, tile.data(), 256, message)) << message.GetString();
}

TEST(XDMFileWriter, TheLastWriteOfATileCounts)
{
    tagWriting w(MakeInfo({MakeBand(3)}));
    auto& [folder, path, writer, message] = w;
    for (const unsigned char value : {7, 9}) {
        const XDMFileBytes tile(256, value);
        ASSERT_TRUE(writer.WriteTile(0, 0, 0, 0, tile.data(), 256, message));
    }
    ASSERT_TRUE(writer.Commit(message));
    XDMFileReader reader;
    ASSERT_TRUE(reader.Open(path.c_str(), message));
    XDMFileBytes read(256);
    ASSERT_TRUE(reader.ReadTile(0, 0, 0, 0, read.data(), 256, message));
    EXPECT_EQ(read, XDMFileBytes(256, 9));
    EXPECT_TRUE(reader.CheckAll(nullptr, message)) << message.GetString();
}

TEST(XDMFileWriter, ThreadsWriteAtOnce)
{
    const XDMFileFolder folder;
    const std::string path = folder / "threads.xdm";
    const tagXDMFileInfo info =
        MakeInfo({MakeBand(3, 2), MakeBand(7, 1), MakeBand(1), MakeBand(16, 2)});
    XDMFileWriter writer;
    XString message;
    ASSERT_TRUE(writer.Create(path.c_str(), info, message));
    std::vector<std::jthread> threads;
    for (int band = 0; band < 4; ++band) {
        threads.emplace_back([&, band] {
            ForEachTile(info, [&](int b, int l, int tx, int ty) {
                if (b != band) return;
                const XDMFileBytes tile = MakeTile(GetTileBytes(info, b, l, tx, ty), b, l, tx, ty);
                XString own;
                EXPECT_TRUE(writer.WriteTile(b, l, tx, ty, tile.data(), tile.size(), own));
            });
        });
    }
    threads.clear(); // joins
    ASSERT_TRUE(writer.Commit(message)) << message.GetString();
    XDMFileReader reader;
    ASSERT_TRUE(reader.Open(path.c_str(), message)) << message.GetString();
    EXPECT_TRUE(reader.CheckAll(nullptr, message)) << message.GetString();
    EXPECT_TRUE(HasSampleTiles(reader, message)) << message.GetString();
}

/// The page that describes the format shows bytes; they have to be those that the writer makes.
/// Lines of a dump are an offset of so many digits, a colon, and up to sixteen bytes.
XDMFileBytes ReadPage(std::size_t offsetDigits)
{
    std::ifstream page(TQL_SOURCE_DIR "/docs/formats/xdm.md");
    XDMFileBytes shown;
    for (std::string line; std::getline(page, line);) {
        if (line.size() < offsetDigits + 4 || line[offsetDigits] != ':' ||
            line.find_first_not_of("0123456789abcdef") != offsetDigits)
            continue;
        std::istringstream in(line.substr(offsetDigits + 1, 16 * 3));
        for (unsigned value; in >> std::hex >> value;)
            shown.push_back(static_cast<unsigned char>(value));
    }
    return shown;
}

std::string DumpBytes(const XDMFileBytes& bytes)
{
    std::ostringstream dump;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i % 16 == 0)
            dump << (i ? "\n" : "") << std::hex << std::setw(8) << std::setfill('0') << i << ":";
        dump << ' ' << std::hex << std::setw(2) << std::setfill('0') << int(bytes[i]);
    }
    return dump.str();
}

TEST(XDMFileWriter, WritesTheExamplesOfItsDescription)
{
    tagXDMFileInfo info;
    info.name = "tiny";
    tagXDMFileBand band;
    band.name = "b";
    band.dataType = 3;
    band.nullValue = 513;
    band.levels = {{3, 2, 2, 2}};
    info.bands = {band};
    const XDMFileFolder folder;
    XDMFileWriter writer;
    XString message;
    const std::uint16_t left[] = {1, 2, 3, 513};
    const std::uint16_t right[] = {513, 513};
    ASSERT_TRUE(writer.Create((folder / "tiny.xdm").c_str(), info, message));
    ASSERT_TRUE(writer.WriteTile(0, 0, 0, 0, left, sizeof left, message));
    ASSERT_TRUE(writer.WriteTile(0, 0, 1, 0, right, sizeof right, message));
    ASSERT_TRUE(writer.Commit(message)) << message.GetString();
    const XDMFileBytes bytes = LoadBytes(folder / "tiny.xdm");
    EXPECT_EQ(ReadPage(8), bytes) << "the page should show\n" << DumpBytes(bytes);

    tagXDMFileRegion region;
    region.name = "r";
    region.type = 2;
    region.vertices = {0, 0, 0, 2, 0, 0};
    region.calculated = 1;
    region.pixelCount = 3;
    region.bands.push_back({2, 1, 2, 1.5, 0.5, kXNotSet, kXNotSet, {}});
    region.jointCount = 2;
    region.jointMeans = {1.5};
    region.coMoments = {0.5};
    info.regions = {region};
    info.signatures = {{"s", "", 0xFFFFFF, {0}, {}}};
    XDMFileBytes regions, signatures;
    ASSERT_TRUE(XfnEncodeXDMFileBlock(XDMFileBlock::Regions, info, regions));
    ASSERT_TRUE(XfnEncodeXDMFileBlock(XDMFileBlock::Signatures, info, signatures));
    regions.insert(regions.end(), signatures.begin(), signatures.end());
    EXPECT_EQ(ReadPage(4), regions) << "the page should show\n" << DumpBytes(regions);
}
