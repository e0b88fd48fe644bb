#include "tests/foundation/base/CodePageScope.h"

#include <gtest/gtest.h>

namespace {

TEST(XCodePage, Utf8PassesUnchanged)
{
    EXPECT_EQ(XfnGetCodePage(), 65001);
    EXPECT_STREQ(XString(L"\uAC00\u00E9A"), "\352\260\200\303\251A");
    EXPECT_STREQ(XString(L"\U0001F600"), "\xF0\x9F\x98\x80");
    const wchar_t broken[] = {0xD800, 0x110000, 0}; // no characters
    EXPECT_STREQ(XString(broken), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_STREQ(XfnTextToUtf8("\xFF\x80"), "\xFF\x80");
    EXPECT_STREQ(XString(static_cast<const wchar_t*>(nullptr)), "");
}

TEST(XCodePage, OtherPagesAreRefused)
{
    for (const int codePage : {0, -1, 1200, 936, 1249, 1259, 12000}) {
        EXPECT_FALSE(XfnSetCodePage(codePage)) << codePage;
    }
    EXPECT_EQ(XfnGetCodePage(), 65001);
    EXPECT_STREQ(XfnUtf8ToCodePage(1252, "\xC3\xA9"), "\xE9");
}

TEST(XCodePage, KoreanBothWays)
{
    const CodePageScope korean(kXCodePageKorean);
    EXPECT_STREQ(XString(L"\uAC00\uAC02"), "\xB0\xA1\x81\x41");
    EXPECT_STREQ(XfnTextToUtf8("\xB0\xA1\x81\x41"), "\xEA\xB0\x80\xEA\xB0\x82");
    // all syllables, those beyond the older standard set included
    for (wchar_t code = 0xAC00; code <= 0xD7A3; ++code) {
        const wchar_t wide[] = {code, 0};
        const XString text(wide);
        ASSERT_EQ(text.GetLength(), 2) << static_cast<int>(code);
        ASSERT_EQ(XfnTextFromUtf8(XfnTextToUtf8(text)), text) << static_cast<int>(code);
    }
}

TEST(XCodePage, WhatCannotBeConvertedIsReplaced)
{
    const int k = kXCodePageKorean;
    EXPECT_STREQ(XfnUtf8ToCodePage(k, "a\302\251b"),
                 "a?b"); // no such sign there
    EXPECT_STREQ(XfnUtf8ToCodePage(k, "a\360\237\230\200b"), "a?b");
    EXPECT_STREQ(XfnUtf8ToCodePage(k, "a\xEA\xB0"), "a?"); // cut off
    EXPECT_STREQ(XfnUtf8ToCodePage(k, "\377b"), "?b");
    EXPECT_STREQ(XfnCodePageToUtf8(k, "a\377\377b"), "a\357\277\275\357\277\275b");
    EXPECT_STREQ(XfnCodePageToUtf8(k, "a\xB0"), "a\xEF\xBF\xBD");
    // longer than one chunk of the conversion, with zero bytes
    XString longText('\0', 3);
    for (int i = 0; i < 1000; ++i)
        longText += "\xEA\xB0\x80";
    const XString converted = XfnUtf8ToCodePage(k, longText);
    EXPECT_EQ(converted.GetLength(), 2003);
    EXPECT_EQ(XfnCodePageToUtf8(k, converted), longText);
}

TEST(XCodePage, CutsBetweenCharacters)
{
    EXPECT_EQ(XfnFitToCharacter("a\352\260\200b", 5, 3), 1);
    EXPECT_EQ(XfnFitToCharacter("a\352\260\200b", 5, 4), 4);
    EXPECT_EQ(XfnFitToCharacter("abc", 3, 9), 3);
    EXPECT_EQ(XfnFitToCharacter("abc", 3, -1), 0);
    EXPECT_EQ(XfnFitToCharacter("\x80\x80\x80\x80\x80", 5, 4), 4); // no UTF-8 at all
    const CodePageScope korean(kXCodePageKorean);
    EXPECT_EQ(XfnFitToCharacter("a\260\241b", 4, 2), 1);
    EXPECT_EQ(XfnFitToCharacter("a\260\241b", 4, 3), 3);
}

} // namespace
