#include "foundation/base/XObArray.h"
#include "foundation/raster/XDMBandXDM.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XDMFileSaver.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "foundation/surface/XBackBuffer.h"
#include "tests/foundation/raster/TestXDMFileSamples.h"
#include "tests/foundation/raster/XDMBandXDMSamples.h"
#include "tests/support/XBandPlaces.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <thread>

namespace {

TEST(XDMBandXDM, AFileCutWhileItIsOpenEndsInASentence)
{
    XDMFileFolder folder;
    XRSFile made, saved;
    made.AddBand(XfnMakeBand(kXUInt16, 1000, 900, XfnPattern).release());
    Save(made, folder / "whole.xdm", XDMCompression::None);
    const XDMFileBytes bytes = LoadBytes(folder / "whole.xdm");
    XRSFile file;
    Load(file, folder / "whole.xdm");
    XDMBand& band = *file.GetBandAt(0);
    XDMComposite composite(0);
    composite.SetBand(&band, 0);
    XBackBuffer buffer;
    buffer.Resize(nullptr, 1000, 900);
    buffer.SetWorldToCenter(499.5, -449.5);
    const auto draw = [&] {
        composite.Draw(&buffer, -0.5, -899.5, 999.5, 0.5, 1, nullptr, nullptr);
        return composite.GetDrawMessage();
    };
    EXPECT_TRUE(draw().IsEmpty()) << draw().GetString();
    XString message;
    const auto view = band.GetTile(0, 2, 3, nullptr, message);
    ASSERT_TRUE(view);

    // the bytes stand in the same place, so the map sees what it saw
    ASSERT_EQ(truncate((folder / "whole.xdm").c_str(), 4096), 0);
    const XString sentence =
        XfnFormat("The file became shorter while it was read: %s.", (folder / "whole.xdm").c_str());
    EXPECT_STREQ(draw(), sentence) << "tiles are in the cache, their bytes are gone";
    EXPECT_STREQ(draw(), sentence) << "for good";
    EXPECT_TRUE(view->IsLost());
    EXPECT_FALSE(band.GetTile(0, 0, 0, nullptr, message));
    EXPECT_STREQ(message, sentence);
    tagXArr2* block = nullptr;
    EXPECT_FALSE(band.ReadSubset(block, 0, 0, 9, 0, 9, nullptr, &message));
    delete block;
    EXPECT_FALSE(band.CalcExactStatistics(nullptr, nullptr, message));
    EXPECT_FALSE(
        XDMFileSaver::Save(file, (folder / "b.xdm").c_str(), XDMCompression::Zstd, {}, message));
    EXPECT_GE(message.Find("shorter"), 0) << message.GetString();
    EXPECT_EQ(folder.CountFiles(), 1);
}

TEST(XDMBandXDM, PlainTilesAreViewsAndOthersAreNot)
{
    XDMFileFolder folder;
    for (const XDMCompression compression : {XDMCompression::None, XDMCompression::Zstd}) {
        XRSFile file, back;
        for (int type = kXUInt8; type <= kXDoubleComplex; ++type)
            file.AddBand(XfnMakeBand(type, 300, 40, [](int x, int) {
                             return x < 256 ? x % 7 : 0; // the second tile is empty
                         }).release());
        Save(file, folder / "a.xdm", compression);
        Load(back, folder / "a.xdm");
        for (int i = 0; i < back.GetNumOfBands(); ++i) {
            XString message;
            const XDMBand& band = *back.GetBandAt(i);
            const auto first = band.GetTile(0, 0, 0, nullptr, message);
            const auto second = band.GetTile(0, 1, 0, nullptr, message);
            ASSERT_TRUE(first && second) << message.GetString();
            const bool isView = !std::const_pointer_cast<XTile>(first)->GetFillData();
            EXPECT_EQ(isView, compression == XDMCompression::None) << i;
            EXPECT_TRUE(std::const_pointer_cast<XTile>(second)->GetFillData());
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(first->GetData()) % 16, 0u);
        }
        std::filesystem::remove(folder / "a.xdm"); // open files and their views stand
        EXPECT_EQ(ReadLevel(*back.GetBandAt(0), 0), ReadLevel(*file.GetBandAt(0), 0));
    }
}

TEST(XDMBandXDM, LevelsThatTheFileLacksAreVirtual)
{
    XDMFileFolder folder;
    tagXDMFileInfo info;
    info.bands.resize(1);
    info.bands[0].dataType = kXUInt16;
    info.bands[0].levels = {{1300, 700, 100, 64}}; // tiles that fit no other
    WriteSample(folder / "a.xdm", info);
    XRSFile file;
    Load(file, folder / "a.xdm");
    const XDMBand& band = *file.GetBandAt(0);
    ASSERT_EQ(band.GetNumOfLevels(), 4); // 1300, 650, 325, 163
    const auto full = ReadLevel(band, 0);
    for (int level = 1; level < 4; ++level) {
        EXPECT_TRUE(band.IsVirtualLevel(level));
        int width, height, finerWidth, finerHeight;
        band.GetLevelSize(level, width, height);
        band.GetLevelSize(level - 1, finerWidth, finerHeight);
        const auto finer = ReadLevel(band, level - 1);
        const auto all = ReadLevel(band, level);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(std::memcmp(all.data() + 2 * (y * width + x),
                                      finer.data() +
                                          2 * (XfnPickPixel(y, height, finerHeight) * finerWidth +
                                               XfnPickPixel(x, width, finerWidth)),
                                      2),
                          0)
                    << level << ' ' << x << ' ' << y;
    }
}

TEST(XDMBandXDM, ManyThreadsReadTheSameBand)
{
    tagRoundTrip trip(XfnMakeBand(kXFloat, 900, 800, XfnPattern));
    const auto wanted = ReadLevel(*trip.source, 0);
    std::vector<std::jthread> threads;
    std::atomic<int> good{0};
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] { good += ReadLevel(*trip.band, 0) == wanted; });
    threads.clear(); // joins
    EXPECT_EQ(good, 4);
}

TEST(XDMBandXDM, ContentDecidesAndDamageIsSaid)
{
    XDMFileFolder folder;
    XRSFile file;
    file.AddBand(XfnMakeBand(kXUInt8, 600, 500, XfnPattern).release());
    Save(file, folder / "a.xdm", XDMCompression::None);
    const XDMFileBytes bytes = LoadBytes(folder / "a.xdm");
    const auto write = [&](const char* name, XDMFileBytes changed) {
        std::ofstream(folder / name, std::ios::binary)
            .write(reinterpret_cast<const char*>(changed.data()),
                   static_cast<std::streamsize>(changed.size()));
        return XString((folder / name).c_str());
    };
    XRSFile opened;
    XString error;
    ASSERT_TRUE(XRSFileIO::Open(write("picture.tif", bytes), &opened, error)) << error.GetString();
    EXPECT_STREQ(opened.GetFormatName(), "XDM");

    const std::pair<const char*, XDMFileBytes> cases[] = {
        {"half.xdm", XDMFileBytes(bytes.begin(), bytes.begin() + 20000)},
        {"other.xdm", {'n', 'o'}}};
    for (const auto& [name, cut] : cases) { // one that begins as ours, and one that does not
        SCOPED_TRACE(name);
        EXPECT_FALSE(XRSFileIO::Open(write(name, cut), &opened, error));
        EXPECT_EQ(error.Find(XfnFormat("\"%s\": ", (folder / name).c_str())), 0)
            << error.GetString();
        EXPECT_EQ(error.GetAt(error.GetLength() - 1), '.') << error.GetString();
        EXPECT_EQ(opened.GetNumOfBands(), 1) << "what was open stays open";
    }
    // a damaged pixel shows when its tile is read, and only then
    XDMFileBytes pixel = bytes;
    pixel[64 + 1000] ^= 1;
    ASSERT_TRUE(XRSFileIO::Open(write("pixel.xdm", pixel), &opened, error));
    int damaged = 0;
    for (int tx = 0; tx < 3; ++tx) {
        if (opened.GetBandAt(0)->GetTile(0, tx, 0, nullptr, error)) continue;
        ++damaged;
        EXPECT_GE(error.Find("pixel.xdm"), 0) << error.GetString();
    }
    EXPECT_LE(damaged, 1);
    XThread stopped;
    stopped.Terminate();
    EXPECT_FALSE(opened.LoadFileXDM((folder / "a.xdm").c_str(), error, &stopped));
    EXPECT_TRUE(error.IsEmpty());
}

TEST(XDMFileSaver, AStopOrAFailureLeavesNothing)
{
    XDMFileFolder folder;
    XRSFile file;
    file.AddBand(XfnMakeBand(kXUInt16, 3000, 2000, XfnPattern).release());
    XString error;
    std::atomic<int> abort{0};
    std::vector<int> percents;
    tagXSaveControl control;
    control.abort = &abort;
    control.progress = [&](int percent) {
        percents.push_back(percent);
        if (percent >= 30) abort = 1;
    };
    EXPECT_FALSE(
        XDMFileSaver::Save(file, (folder / "a.xdm").c_str(), XDMCompression::Zstd, control, error));
    EXPECT_TRUE(error.IsEmpty()) << error.GetString();
    EXPECT_LT(percents.back(), 100);
    EXPECT_EQ(folder.CountFiles(), 0);

    std::ofstream(folder / "a.xdm") << "old";
    XThread thread;
    thread.Terminate();
    control = {&thread, nullptr, nullptr};
    EXPECT_FALSE(
        XDMFileSaver::Save(file, (folder / "a.xdm").c_str(), XDMCompression::Zstd, control, error));
    EXPECT_EQ(LoadBytes(folder / "a.xdm").size(), 3u) << "an older file survives";

    // a source that cannot be read to its end
    abort = 0;
    XRSFile source;
    Save(file, folder / "source.xdm", XDMCompression::None);
    XDMFileBytes bytes = LoadBytes(folder / "source.xdm");
    bytes[bytes.size() / 3] ^= 1;
    std::ofstream(folder / "source.xdm", std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    Load(source, folder / "source.xdm");
    EXPECT_FALSE(
        XDMFileSaver::Save(source, (folder / "b.xdm").c_str(), XDMCompression::Zstd, {}, error));
    EXPECT_GE(error.Find("source.xdm"), 0) << error.GetString();
    EXPECT_EQ(folder.CountFiles(), 2);
    XRSFile empty;
    EXPECT_FALSE(
        XDMFileSaver::Save(empty, (folder / "b.xdm").c_str(), XDMCompression::Zstd, {}, error));
    EXPECT_FALSE(error.IsEmpty());
    EXPECT_FALSE(
        XDMFileSaver::Save(file, (folder / "none/b.xdm").c_str(), XDMCompression::Zstd, {}, error));
    EXPECT_GE(error.Find("b.xdm"), 0) << error.GetString();
    // 0 to 100, each once
    percents.clear();
    control = {nullptr, nullptr, [&](int percent) { percents.push_back(percent); }};
    ASSERT_TRUE(
        XDMFileSaver::Save(file, (folder / "b.xdm").c_str(), XDMCompression::Zstd, control, error));
    EXPECT_EQ(percents.front(), 0);
    EXPECT_EQ(percents.back(), 100);
    EXPECT_EQ(std::set<int>(percents.begin(), percents.end()).size(), percents.size());
}

} // namespace
