#include "TestXDMFileSamples.h"

#include "foundation/base/XChecksum.h"
#include "foundation/base/XCodePage.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string_view AsText(const XDMFileBytes& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

int CountText(const XDMFileBytes& bytes, std::string_view text)
{
    int count = 0;
    for (std::size_t at = AsText(bytes).find(text); at != std::string_view::npos;
         at = AsText(bytes).find(text, at + 1)) {
        ++count;
    }
    return count;
}

} // namespace

TEST(XDMFileChecksum, IsThePublishedOne)
{
    XDMFileBytes up(32), down(32);
    for (unsigned char i = 0; i < 32; ++i) {
        up[i] = i;
        down[i] = static_cast<unsigned char>(31 - i);
    }
    EXPECT_EQ(XfnGetChecksum("123456789", 9), 0xE3069283u);
    EXPECT_EQ(XfnGetChecksum(XDMFileBytes(32, 0).data(), 32), 0x8A9136AAu);
    EXPECT_EQ(XfnGetChecksum(XDMFileBytes(32, 255).data(), 32), 0x62A8AB43u);
    EXPECT_EQ(XfnGetChecksum(up.data(), 32), 0x46DD794Eu);
    EXPECT_EQ(XfnGetChecksum(down.data(), 32), 0x113FDB5Cu);
}

TEST(XDMFileChecksum, FastAndPlainFormAgree)
{
    XDMFileBytes bytes(20000);
    std::minstd_rand noise(5);
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(noise() >> 8);
    for (const std::size_t count : {0, 1, 7, 8, 9, 1023, 3071, 3072, 3073, 6144, 6151, 19990}) {
        for (const std::size_t start : {0, 3}) {
            EXPECT_EQ(XfnGetChecksum(bytes.data() + start, count),
                      XfnGetChecksumByTable(bytes.data() + start, count))
                << count << " bytes from " << start;
        }
    }
}

TEST(XDMFile, CompressionSavesAndPredictionSavesMore)
{
    std::uintmax_t sizes[3];
    for (int compression = 0; compression <= 2; ++compression) {
        tagXDMFileInfo info;
        info.bands = {MakeBand(4, compression)};
        info.bands[0].levels = {{256, 256, 256, 256}};
        std::vector<std::int16_t> terrain(256 * 256);
        for (int i = 0; i < 256 * 256; ++i) {
            terrain[static_cast<std::size_t>(i)] =
                static_cast<std::int16_t>(900 * std::sin(i % 256 * 0.03) + 5 * (i / 256) - 400);
        }
        tagWriting w(info);
        ASSERT_TRUE(w.writer.WriteTile(0, 0, 0, 0, terrain.data(), 2 * terrain.size(), w.message));
        ASSERT_TRUE(w.writer.Commit(w.message));
        sizes[compression] = std::filesystem::file_size(w.path);
    }
    EXPECT_LT(sizes[1], sizes[0] * 3 / 4);
    EXPECT_LT(sizes[2], sizes[1] / 2);
}

TEST(XDMFile, RealsComeBackBitByBit)
{
    const double odd[] = {-0.0,     std::bit_cast<double>(0x7FF8000000000123u), kXNotSet,
                          kXNoData, std::numeric_limits<double>::infinity(),    5e-324};
    for (const double value : odd) {
        tagXDMFileInfo info;
        info.bands = {MakeBand(7)};
        info.bands[0].nullValue = value;
        info.bands[0].statistics.mean = value;
        const tagOpenSample sample(info);
        const tagXDMFileBand& band = sample.reader.GetInfo().bands[0];
        for (const double read : {band.nullValue, band.statistics.mean})
            EXPECT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(value));
    }
}

TEST(XDMFile, TextIsUtf8InTheFileWhateverTheCodePage)
{
    tagXDMFileInfo info;
    info.bands = {MakeBand(1)};
    ASSERT_TRUE(XfnSetCodePage(kXCodePageKorean));
    info.bands[0].name = "\xBA\xCE\xC3\xB5"; // in code page 949
    const XDMFileBytes bytes = MakeSample(info);
    XDMFileReader reader;
    XString message;
    const int isOpen = reader.Open(ShowBytes(bytes), "memory", message);
    XfnSetCodePage(kXCodePageUtf8);
    ASSERT_TRUE(isOpen) << message.GetString();
    EXPECT_EQ(CountText(bytes, "\xEB\xB6\x80\xEC\xB2\x9C"), 1);
    EXPECT_EQ(reader.GetInfo().bands[0].name, info.bands[0].name);
}

TEST(XDMFile, BandsOfOneReferenceStoreItOnce)
{
    tagXDMFileInfo info;
    for (int i = 0; i < 4; ++i) {
        info.bands.push_back(MakeBand(1));
        info.bands.back().reference.wkt = "LOCAL_CS[\"shared\"]";
    }
    for (const bool isOneApart : {false, true}) {
        if (isOneApart) info.bands[2].reference = {}; // as constructed: takes no bytes itself
        const tagOpenSample sample(info);
        EXPECT_EQ(CountText(sample.bytes, "shared"), isOneApart ? 3 : 1);
        EXPECT_TRUE(sample.reader.GetInfo() == info) << isOneApart;
    }
}

TEST(XDMFile, TilesWithoutValuesTakeNoBytes)
{
    const struct
    {
        const char* name;
        int type;
        double nullValue;
        XDMFileBytes fill;
    } cases[] = {
        {"no null value: zero", 3, kXNotSet, {0, 0}},
        {"a null value in the type", 3, 513, {1, 2}},
        {"below the type", 1, -9999, {0}},
        {"above the type", 2, 200, {0}},
        {"not a whole number", 6, 0.5, {0, 0, 0, 0}},
        {"NaN in whole numbers", 6, NAN, {0, 0, 0, 0}},
        {"the nearest float", 7, 0.1, {0xCD, 0xCC, 0xCC, 0x3D}},
        {"beyond every float", 7, kXNoData, {0, 0, 0, 0}},
        {"complex: the real part", 12, -2, {0xFE, 0xFF, 0, 0}},
    };
    for (const auto& c : cases) {
        tagXDMFileInfo info;
        info.bands = {MakeBand(c.type)};
        info.bands[0].levels = {{60000, 500, 250, 250}};
        info.bands[0].nullValue = c.nullValue;
        XDMFileBytes tile;
        while (tile.size() < 250 * 250 * c.fill.size()) {
            tile.insert(tile.end(), c.fill.begin(), c.fill.end());
        }
        tagWriting w(info);
        auto& [folder, path, writer, message] = w;
        ASSERT_TRUE(writer.WriteTile(0, 0, 5, 1, tile.data(), tile.size(), message));
        tile.back() ^= 1; // one bit of the last sample, and it is no longer empty
        ASSERT_TRUE(writer.WriteTile(0, 0, 7, 0, tile.data(), tile.size(), message));
        ASSERT_TRUE(writer.Commit(message));
        EXPECT_LT(std::filesystem::file_size(path), tile.size() + 480 * 24 + 1024) << c.name;

        XDMFileReader reader;
        ASSERT_TRUE(reader.Open(path.c_str(), message)) << message.GetString();
        XDMFileBytes read(tile.size(), 0x55);
        EXPECT_EQ(reader.IsTileEmpty(0, 0, 5, 1, message), 1) << c.name;
        EXPECT_EQ(reader.IsTileEmpty(0, 0, 7, 0, message), 0) << c.name;
        EXPECT_EQ(reader.IsTileEmpty(0, 0, 7, 2, message), -1) << c.name;
        ASSERT_TRUE(reader.ReadTile(0, 0, 7, 0, read.data(), read.size(), message));
        EXPECT_EQ(read, tile) << c.name;
        tile.back() ^= 1;
        for (const int never : {5, 6}) { // written empty, and never written
            ASSERT_TRUE(reader.ReadTile(0, 0, never, 1, read.data(), read.size(), message));
            EXPECT_EQ(read, tile) << c.name;
        }
    }
}

TEST(XDMFileReader, RefusesTilesThatAreNot)
{
    const XDMFileBytes bytes = MakeSample(MakeInfo({MakeBand(3)}));
    XDMFileReader reader;
    XString message;
    XDMFileBytes tile(256, 7);
    EXPECT_FALSE(reader.ReadTile(0, 0, 0, 0, tile.data(), 256, message));
    EXPECT_EQ(message, "No file is open.");
    ASSERT_TRUE(reader.Open(ShowBytes(bytes), "a.xdm", message));
    const int none[][4] = {{-1, 0, 0, 0}, {1, 0, 0, 0},  {0, -1, 0, 0}, {0, 2, 0, 0},
                           {0, 0, 3, 0},  {0, 0, -1, 0}, {0, 0, 0, 3},  {0, 1, 0, 1}};
    for (const auto& t : none) {
        EXPECT_FALSE(reader.ReadTile(t[0], t[1], t[2], t[3], tile.data(), 256, message));
        EXPECT_GE(message.Find("does not exist: a.xdm."), 0) << message.GetString();
        EXPECT_EQ(reader.GetTileBytes(t[0], t[1], t[2], t[3]), 0u);
    }
    EXPECT_FALSE(reader.ReadTile(0, 0, 2, 0, tile.data(), 256, message)); // 5 pixels wide
    EXPECT_EQ(tile, XDMFileBytes(256, 7));
    EXPECT_TRUE(reader.ReadTile(0, 0, 0, 0, tile.data(), 256, message)) << message.GetString();
}

TEST(XDMFileReader, AFailedOpenKeepsTheOldFile)
{
    tagOpenSample sample(MakeInfo({MakeBand(3)}));
    auto& [bytes, reader, message] = sample;
    EXPECT_FALSE(reader.Open("/nonexistent/none.xdm", message));
    EXPECT_GE(message.Find("/nonexistent/none.xdm"), 0);
    EXPECT_EQ(reader.GetFilePath(), "a.xdm");
    EXPECT_TRUE(HasSampleTiles(reader, message));
}

TEST(XDMFileReader, AFileCutWhileOpenIsASentence)
{
    const XDMFileFolder folder;
    const std::string path = folder / "cut.xdm";
    WriteSample(path, MakeInfo({MakeBand(3), MakeBand(3, 2)}));
    XDMFileReader reader;
    XString message;
    ASSERT_TRUE(reader.Open(path.c_str(), message));
    ASSERT_TRUE(HasSampleTiles(reader, message)); // the tables are read now
    XDMFileReader written;
    ASSERT_TRUE(written.Open(path.c_str(), message));
    EXPECT_TRUE(written.IsIntact(message) && written.IsCurrent(message)) << message.GetString();
    const struct timespec times[2] = {{0, UTIME_OMIT}, {5, 5}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    EXPECT_FALSE(written.IsIntact(message));
    EXPECT_GE(message.Find("written after it was opened: "), 0) << message.GetString();
    ASSERT_EQ(truncate(path.c_str(), 100), 0);
    XDMFileBytes tile(256);
    EXPECT_FALSE(reader.ReadTile(0, 0, 0, 0, tile.data(), tile.size(), message));
    EXPECT_GE(message.Find("cut.xdm"), 0) << message.GetString();
    EXPECT_FALSE(reader.ReadTile(1, 0, 0, 0, tile.data(), tile.size(), message));
    EXPECT_FALSE(reader.IsIntact(message));
}

TEST(XDMFileReader, AViewIsVerifiedOnceAndDamageIsSaid)
{
    const XDMFileFolder folder;
    const std::string path = folder / "view.xdm";
    const tagXDMFileInfo info = MakeInfo({MakeBand(3), MakeBand(3, 2)});
    WriteSample(path, info);
    XDMFileReader reader;
    XString message;
    ASSERT_TRUE(reader.Open(path.c_str(), message));
    tagXDMFileView view;
    ASSERT_TRUE(reader.ViewTile(0, 0, 0, 0, view, message)) << message.GetString();
    ASSERT_TRUE(view.samples);
    const XDMFileBytes wanted = MakeTile(GetTileBytes(info, 0, 0, 0, 0), 0, 0, 0, 0);
    EXPECT_EQ(XDMFileBytes(view.samples, view.samples + wanted.size()), wanted);
    ASSERT_TRUE(reader.ViewTile(1, 0, 0, 0, view, message));
    EXPECT_FALSE(view.samples) << "packed";
    ASSERT_TRUE(reader.ViewTile(0, 0, 2, 0, view, message));
    EXPECT_FALSE(view.samples) << "empty";
    EXPECT_FALSE(reader.ViewTile(0, 0, 9, 0, view, message));

    // bytes change and no time of writing tells: what was verified is not looked at again
    const XDMFileBytes bytes = LoadBytes(path);
    struct stat before = {};
    ASSERT_EQ(stat(path.c_str(), &before), 0);
    for (const int tx : {0, 1}) {
        const XDMFileBytes tile = MakeTile(GetTileBytes(info, 0, 0, tx, 0), 0, 0, tx, 0);
        const auto place = std::search(bytes.begin(), bytes.end(), tile.begin(), tile.end());
        ASSERT_TRUE(place != bytes.end());
        std::fstream out(path, std::ios::binary | std::ios::in | std::ios::out);
        out.seekp(place - bytes.begin());
        out.put(static_cast<char>(*place ^ 1));
    }
    const struct timespec times[2] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    EXPECT_TRUE(reader.ViewTile(0, 0, 0, 0, view, message));
    EXPECT_FALSE(reader.ViewTile(0, 0, 1, 0, view, message));
    EXPECT_GE(message.Find("damaged"), 0) << message.GetString();

    // a file in memory has no views
    XDMFileReader loose;
    ASSERT_TRUE(loose.Open(ShowBytes(bytes), "memory", message));
    ASSERT_TRUE(loose.ViewTile(0, 0, 0, 0, view, message));
    EXPECT_FALSE(view.samples);
}

TEST(XDMFileReader, ThreadsReadAtOnce)
{
    const XDMFileFolder folder;
    const std::string path = folder / "threads.xdm";
    WriteSample(path, MakeInfo({MakeBand(3), MakeBand(16, 2), MakeBand(8, 1)}));
    XDMFileReader reader;
    XString message;
    ASSERT_TRUE(reader.Open(path.c_str(), message));
    std::atomic<int> good{0};
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            XString own;
            if (HasSampleTiles(reader, own)) ++good;
        });
    }
    threads.clear(); // joins
    EXPECT_EQ(good, 4);
}

TEST(XDMFileReader, TheCheckStopsWhenToldToAndKnowsTheFirstBytes)
{
    tagOpenSample sample(MakeInfo({MakeBand(3)}));
    sample.message = "old";
    const std::atomic<int> abort{1};
    EXPECT_FALSE(sample.reader.CheckAll(&abort, sample.message));
    EXPECT_TRUE(sample.message.IsEmpty());
    EXPECT_TRUE(XDMFileReader::IsXDMFile(sample.bytes.data(), 8));
    EXPECT_FALSE(XDMFileReader::IsXDMFile(sample.bytes.data(), 7));
    EXPECT_FALSE(XDMFileReader::IsXDMFile(sample.bytes.data() + 1, 8));
}
