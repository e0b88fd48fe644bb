#include "foundation/base/XArchive.h"

#include "foundation/base/XIndexException.h"
#include "foundation/base/XMemFile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <tuple>
#include <vector>

namespace {

/// Every type, with a buffer so small that values straddle its end.
void Store(XFile& file, int bufferSize)
{
    XArchive archive(&file, XArchive::kStore, bufferSize);
    archive << std::int16_t{-2} << std::uint16_t{0xFEDC} << std::int32_t{-70000} << 0x89ABCDEFu;
    archive << XString("text") << XString() << std::uint8_t{7} << 1.5 << -2.5f << INT64_MIN;
    archive << XString('z', 50);
    archive.Close();
}

struct tagValues
{
    std::int16_t i16 = 0;
    std::uint16_t u16 = 0;
    std::int32_t i32 = 0;
    std::uint32_t u32 = 0;
    XString text;
    XString empty = "not empty";
    std::uint8_t u8 = 0;
    double real = 0;
    float small = 0;
    std::int64_t i64 = 0;
    XString tail;
};

void Load(XFile& file, int bufferSize, tagValues& v)
{
    XArchive archive(&file, XArchive::kLoad, bufferSize);
    archive >> v.i16 >> v.u16 >> v.i32 >> v.u32 >> v.text >> v.empty >> v.u8 >> v.real >> v.small;
    archive >> v.i64 >> v.tail;
}

TEST(XArchive, WhatIsStoredIsLoaded)
{
    std::vector<unsigned char> first;
    for (const int bufferSize : {0, 16, 17, 31, 4096}) {
        XMemFile file;
        Store(file, bufferSize);
        const unsigned char* bytes = file.GetBuffer();
        const std::vector<unsigned char> all(bytes, bytes + file.GetLength());
        if (first.empty()) first = all;
        EXPECT_EQ(all, first) << bufferSize; // the layout does not depend on the buffer
        file.SeekToBegin();
        tagValues v;
        Load(file, bufferSize, v);
        EXPECT_EQ(std::tuple(v.i16, v.u16, v.i32, v.u32, v.u8, v.real, v.small, v.i64),
                  std::tuple(-2, 0xFEDC, -70000, 0x89ABCDEFu, 7, 1.5, -2.5f, INT64_MIN));
        EXPECT_STREQ(v.text + "|" + v.empty + "|", "text||");
        EXPECT_EQ(v.tail, XString('z', 50));
    }
    const unsigned char begin[] = {0xFE, 0xFF, 0xDC, 0xFE, 0x90, 0xEE, 0xFE, 0xFF};
    EXPECT_EQ(std::memcmp(first.data(), begin, sizeof begin), 0); // lowest byte first
}

TEST(XArchive, EveryTruncationIsTold)
{
    XMemFile whole;
    Store(whole, 4096);
    for (std::int64_t length = 0; length < whole.GetLength(); ++length) {
        XMemFile file;
        file.Attach(whole.GetBuffer(), static_cast<std::size_t>(length));
        tagValues v;
        try {
            Load(file, 16, v);
            FAIL() << length;
        } catch (XFileException& e) {
            EXPECT_EQ(e.m_cause, XFileException::kEndOfFile) << length;
            e.Delete();
        }
    }
}

TEST(XArchive, LyingCountsAllocateNothing)
{
    const unsigned char bytes[] = {0xFF, 0xFF, 0xFF, 0xFF, 'a', 'b'};
    for (const std::size_t perElement : {std::size_t{0}, std::size_t{1}, SIZE_MAX}) {
        XMemFile file;
        file.Attach(bytes, sizeof bytes);
        XArchive archive(&file, XArchive::kLoad);
        EXPECT_THROW(archive.ReadCount(perElement), XFileException);
    }
    XMemFile file;
    file.Attach(bytes, sizeof bytes);
    XArchive archive(&file, XArchive::kLoad);
    XString text("kept");
    EXPECT_THROW(archive >> text, XFileException);
    EXPECT_STREQ(text, "kept");
    const unsigned char fitting[] = {2, 0, 0, 0, 'a', 'b', 'c'};
    XMemFile other;
    other.Attach(fitting, sizeof fitting);
    XArchive reader(&other, XArchive::kLoad);
    EXPECT_EQ(reader.ReadCount(1), 2u);
}

TEST(XArchive, DirectionAndBuffer)
{
    XMemFile file;
    file.Write("0123456789", 10);
    file.SeekToBegin();
    XArchive loading(&file, XArchive::kLoad, 16);
    EXPECT_THROW(loading << 1, XFileException);
    EXPECT_THROW(loading.FillBuffer(17), XIndexException);
    EXPECT_THROW(loading.FillBuffer(11), XFileException);
    loading.FillBuffer(4);
    char text[4];
    loading.ReadExactly(text, 3);
    loading.Flush(); // the file stands where the archive does
    EXPECT_EQ(file.GetPosition(), 3);
    loading.ReadExactly(text, 1);
    EXPECT_EQ(text[0], '3');
    EXPECT_EQ(loading.Read(text, 4), 4u);
    loading.Close();
    EXPECT_EQ(file.GetPosition(), 8);
    EXPECT_THROW(loading.Read(text, 1), XFileException);

    XMemFile view;
    view.Attach("x", 1);
    XArchive storing(&view, XArchive::kStore);
    storing << 1;
    int value = 0;
    EXPECT_THROW(storing >> value, XFileException);
    EXPECT_THROW(storing.Close(), XFileException); // a view cannot be written
    EXPECT_THROW(storing << 1, XFileException);
}

} // namespace
