#include "foundation/base/XColor.h"
#include "foundation/base/XFillStyle.h"
#include "foundation/base/XLineStyle.h"
#include "foundation/base/XSentinels.h"
#include "foundation/base/XTextStyle.h"
#include "foundation/base/XVector3.h"
#include "tests/foundation/base/CodePageScope.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <set>
#include <string>

namespace {

// these records are copied and stored byte by byte
TEST(Styles, FieldsStandWhereTheyAreStored)
{
    EXPECT_EQ(offsetof(tagXLineStyle, style), 4u);
    EXPECT_EQ(offsetof(tagXLineStyle, words), 8u);
    EXPECT_EQ(offsetof(tagXFillStyle, style), 128u);
    EXPECT_EQ(offsetof(tagXTextStyle, font), 4u);
    EXPECT_EQ(offsetof(tagXFontRecord, italic), 20u);
    EXPECT_EQ(offsetof(tagXFontRecord, faceName), 28u);
}

TEST(XLineStyle, EveryPredefinedStyleDiffers)
{
    std::set<unsigned> patterns;
    for (int i = 0; i < tagXLineStyle::kPredefinedCount; ++i) {
        const tagXLineStyle style(i);
        EXPECT_EQ(style.GetStyle(), i);
        EXPECT_TRUE(patterns.insert(style.pattern).second) << i;
        EXPECT_NE(tagXLineStyle::GetName(i), nullptr);
        EXPECT_EQ(style.IsNone(), i == 5) << i; // property pages read 5 as "no line"
    }
    EXPECT_EQ(tagXLineStyle(0), tagXLineStyle());
    EXPECT_EQ(tagXLineStyle(0).pattern, 0xFFFF);
    EXPECT_EQ(tagXLineStyle(99), tagXLineStyle());
    EXPECT_EQ(tagXLineStyle(-1), tagXLineStyle());
    EXPECT_EQ(tagXLineStyle::GetName(tagXLineStyle::kPredefinedCount), nullptr);
    tagXLineStyle own;
    own.words[1] = 5;
    own.SetStyle(0x1234, 77);
    EXPECT_EQ(own.pattern, 0x1234);
    EXPECT_EQ(own.GetStyle(), 77);
    EXPECT_EQ(own.words[1], 5u);
}

XString GetRow(const tagXFillStyle& style, int y)
{
    XString row;
    for (int x = 0; x < 10; ++x)
        row += style.IsSet(x, y) ? '#' : '.';
    return row;
}

TEST(XFillStyle, PredefinedPatterns)
{
    std::set<std::string> patterns;
    for (int i = 0; i < tagXFillStyle::kPredefinedCount; ++i) {
        const tagXFillStyle style(i);
        EXPECT_EQ(style.IsNone(), i == 1 || i == 8) << i; // property pages read 1 as "no fill"
        if (i == 8) {
            EXPECT_EQ(style, tagXFillStyle(1)) << "8 stands for several styles, it is none itself";
            EXPECT_EQ(tagXFillStyle::GetName(i), nullptr);
            continue;
        }
        EXPECT_NE(tagXFillStyle::GetName(i), nullptr) << i;
        EXPECT_EQ(style.GetStyle(), i);
        const char* bytes = reinterpret_cast<const char*>(style.pattern);
        EXPECT_TRUE(patterns.insert(std::string(bytes, 128)).second) << i;
    }
    EXPECT_STREQ(GetRow(tagXFillStyle(0), 4), "##########");
    EXPECT_STREQ(GetRow(tagXFillStyle(1), 4), "..........");
    EXPECT_EQ(tagXFillStyle(), tagXFillStyle(0)) << "the code and its pattern agree from the start";
    EXPECT_TRUE(tagXFillStyle(-1).IsNone() && tagXFillStyle(99).IsNone());
    EXPECT_STREQ(GetRow(tagXFillStyle(tagXFillStyle::kVertical), 0), "....#.....");
    EXPECT_STREQ(GetRow(tagXFillStyle(tagXFillStyle::kForwardDiagonal), 0), ".......#..");
    EXPECT_STREQ(GetRow(tagXFillStyle(tagXFillStyle::kForwardDiagonal), 1), "......#...");
    EXPECT_STREQ(GetRow(tagXFillStyle(tagXFillStyle::kBackwardDiagonal), 1), ".#.......#");
    // the share of set pixels is what the name says
    const struct
    {
        int style;
        int set;
    } kDensities[] = {{tagXFillStyle::kDense75, 768},
                      {tagXFillStyle::kDense50, 512},
                      {tagXFillStyle::kDense25, 256},
                      {tagXFillStyle::kDense12, 128}};
    for (const auto& density : kDensities) {
        int set = 0;
        for (int i = 0; i < 1024; ++i)
            set += tagXFillStyle(density.style).IsSet(i % 32, i / 32);
        EXPECT_EQ(set, density.set) << density.style;
    }
}

TEST(XFillStyle, APatternOfOnesOwn)
{
    unsigned char pattern[128] = {};
    pattern[4] = 0x80; // row 1, leftmost pixel
    pattern[127] = 0x01;
    tagXFillStyle style(1);
    style.SetStyle(pattern);
    EXPECT_EQ(style.GetStyle(), 1024);
    EXPECT_TRUE(style.IsSet(0, 1) && style.IsSet(31, 31) && style.IsSet(32, 33));
    EXPECT_FALSE(style.IsSet(1, 0));
}

TEST(XTextStyle, FaceNamesAreCutBetweenCharacters)
{
    tagXTextStyle style;
    EXPECT_EQ(style.word, 33u);
    EXPECT_EQ(style.font.weight, 400);
    EXPECT_STREQ(style.font.faceName, "Courier New");
    // 30 bytes and a character of 3: it goes as a whole
    style.font.SetFaceName("123456789012345678901234567890\xEA\xB0\x80");
    EXPECT_STREQ(style.font.faceName, "123456789012345678901234567890");
    style.font.SetFaceName("A");
    const char expected[32] = {'A'}; // nothing of the longer name stays behind
    EXPECT_EQ(std::memcmp(style.font.faceName, expected, 32), 0);
    style.font.SetFaceName(nullptr);
    EXPECT_STREQ(style.font.faceName, "");
    const CodePageScope korean(kXCodePageKorean);
    style.font.SetFaceName("123456789012345678901234567890\xB0\xA1");
    EXPECT_EQ(std::strlen(style.font.faceName), 30u);
}

TEST(Values, VectorsColoursSentinels)
{
    tagXVector3 v(1, 2, 3);
    double* words = v;
    words[2] = 5;
    EXPECT_EQ(v, tagXVector3(1, 2, 5));
    for (int axis = 0; axis < 3; ++axis) {
        tagXVector3 other(v);
        other[axis] += 1;
        EXPECT_TRUE(other != v) << axis;
    }
    const tagXVector3 scaled = 2.0 * v;
    EXPECT_EQ(scaled, tagXVector3(2, 4, 10));
    EXPECT_EQ(tagXVector3f(scaled).z, 10.0f);

    EXPECT_EQ(XfnMakeColor(0x11, 0x22, 0x33, 0xFF), 0xFF332211u);
    EXPECT_EQ(XfnGetBlue(0xFF332211u), 0x33u);
    EXPECT_FALSE(XfnIsSet(kXNotSet) || XfnIsSet(kXNoData) || XfnIsSet(std::nan("")) ||
                 XfnIsSet(std::numeric_limits<double>::infinity()));
    EXPECT_TRUE(XfnIsSet(0.0) && XfnIsSet(1.6e308));
}

} // namespace
