#include "foundation/base/XString.h"

#include "foundation/base/XIndexException.h"
#include "tests/foundation/base/AllocationCounter.h"
#include "tests/foundation/base/CodePageScope.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <thread>
#include <vector>

namespace {

TEST(XString, CopiesShareUntilChanged)
{
    const XString name("a name too long for any small buffer");
    std::vector<XString> copies(1000);
    AllocationCounter counter;
    for (XString& copy : copies)
        copy = name;
    XString moved(std::move(copies[0]));
    XString empty;
    XString alsoEmpty(empty);
    EXPECT_EQ(counter.GetCount(), 0);
    EXPECT_EQ(copies[1].GetString(), name.GetString());
    EXPECT_EQ(copies[0].GetLength(), 0);

    copies[1].SetAt(0, 'A');
    EXPECT_STREQ(copies[1], "A name too long for any small buffer");
    EXPECT_STREQ(name, "a name too long for any small buffer");
    EXPECT_STREQ(copies[2], name);
}

TEST(XString, EveryChangeLeavesTheOtherCopyAlone)
{
    const std::function<void(XString&)> changes[] = {
        [](XString& s) { s += 'x'; },
        [](XString& s) { s += "xyz"; },
        [](XString& s) { s += s; },
        [](XString& s) { s = s.GetString() + 2; },
        [](XString& s) { s.Delete(0, 3); },
        [](XString& s) { s.Insert(1, "xx"); },
        [](XString& s) { s.Replace("l", "LL"); },
        [](XString& s) { s.TrimLeft(); },
        [](XString& s) { s.TrimRight(); },
        [](XString& s) { s.TrimRight("o "); },
        [](XString& s) { s.MakeUpper(); },
        [](XString& s) { s.MakeLower(); },
        [](XString& s) {
            s.GetBuffer(4)[1] = 'Q';
            s.ReleaseBuffer(2);
        },
        [](XString& s) { s.ReleaseBuffer(1); },
        [](XString& s) { s.Format("%s!", s); },
        [](XString& s) { s.Empty(); },
        [](XString& s) { s = 'c'; },
    };
    int row = 0;
    for (const auto& change : changes) {
        const XString kept("  Hello ");
        XString changed(kept);
        change(changed);
        EXPECT_STREQ(kept, "  Hello ") << row;
        EXPECT_STRNE(changed, kept) << row;
        ++row;
    }
}

TEST(XString, AppendingIsAmortised)
{
    XString text;
    AllocationCounter counter;
    for (int i = 0; i < 100000; ++i)
        text += 'a';
    EXPECT_EQ(text.GetLength(), 100000);
    EXPECT_LT(counter.GetCount(), 40);
    EXPECT_GE(text.GetAllocLength(), text.GetLength());
}

// the source of a change lies in the string itself and would be moved or freed under it
TEST(XString, TakesItsOwnText)
{
    for (int length : {1, 15, 16, 17, 200}) {
        XString text('a', length);
        text.SetAt(length - 1, 'z');
        XString doubled(text);
        doubled += doubled.GetString();
        EXPECT_STREQ(doubled, text + text);
        doubled = doubled.GetString() + length;
        EXPECT_STREQ(doubled, text);
        doubled.Append(doubled.GetString() + length - 1, 1);
        EXPECT_STREQ(doubled, text + 'z');
    }
}

TEST(XString, PartsAreCutToTheText)
{
    const XString s("abcdef");
    EXPECT_STREQ(s.Left(2) + "|" + s.Left(99) + "|" + s.Left(-1), "ab|abcdef|");
    EXPECT_STREQ(s.Right(2) + "|" + s.Right(99) + "|" + s.Right(-1), "ef|abcdef|");
    EXPECT_STREQ(s.Mid(4) + "|" + s.Mid(-2) + "|" + s.Mid(6) + "|" + s.Mid(99), "ef|abcdef||");
    EXPECT_STREQ(s.Mid(1, 2) + "|" + s.Mid(4, INT_MAX) + "|" + s.Mid(INT_MAX, INT_MAX), "bc|ef|");
    EXPECT_STREQ(s.Mid(1, -1), "");
    EXPECT_EQ(XString("abc").Delete(1, INT_MAX), 1);
    EXPECT_EQ(XString("abc").Delete(-5, 1), 2);
    EXPECT_EQ(XString("abc").Delete(3, 1), 3);
}

TEST(XString, Searches)
{
    const XString s("path/to/file.tif");
    EXPECT_EQ(s.Find('/'), 4);
    EXPECT_EQ(s.Find('/', 5), 7);
    EXPECT_EQ(s.ReverseFind('/'), 7);
    EXPECT_EQ(s.ReverseFind('p'), 0);
    EXPECT_EQ(s.ReverseFind('?'), -1);
    EXPECT_EQ(s.Find("ti"), 13);
    EXPECT_EQ(s.Find("to", 6), -1);
    EXPECT_EQ(s.Find("", 3), 3);
    EXPECT_EQ(s.Find("p", -7), 0);
    EXPECT_EQ(s.Find("p", 99), -1);
    EXPECT_EQ(XString().ReverseFind('a'), -1);
}

TEST(XString, IndicesAreChecked)
{
    XString s("ab");
    EXPECT_EQ(s[2], '\0');
    EXPECT_THROW(s[3], XIndexException);
    EXPECT_THROW(s[-1], XIndexException);
    EXPECT_THROW(s[std::size_t{1} << 32], XIndexException);
    EXPECT_THROW(s[~std::size_t{0}], XIndexException);
    EXPECT_THROW(s.SetAt(2, 'x'), XIndexException);
    EXPECT_THROW(s.ReleaseBuffer(1000), XIndexException);
    EXPECT_THROW(XString("x", -1), XIndexException);
    EXPECT_THROW(s.GetBuffer(INT_MAX), std::bad_alloc);
    EXPECT_STREQ(s, "ab");
}

TEST(XString, ABufferGivenOutIsNotShared)
{
    XString s("abc");
    char* buffer = s.GetBuffer(10);
    const XString taken(s);
    std::snprintf(buffer, 11, "0123456789");
    EXPECT_STREQ(taken, "abc");
    s.ReleaseBuffer();
    EXPECT_EQ(s.GetLength(), 10);
    const XString shared(s);
    EXPECT_EQ(shared.GetString(), s.GetString());
}

TEST(XString, ComparesAndKeepsZeroBytes)
{
    const XString zero("a\0b", 3);
    EXPECT_EQ(zero.GetLength(), 3);
    EXPECT_NE(zero, XString("a"));
    EXPECT_EQ((zero + zero).GetLength(), 6);
    EXPECT_LT(XString("a"), "b");
    EXPECT_GT(XString("\xC3"), XString("z")); // bytes compare without a sign
    EXPECT_TRUE("a" == XString("a") && XString("a") != "b" && XString() == nullptr);
    EXPECT_EQ(XString("FiLe").CompareNoCase("fIlE"), 0);
    EXPECT_LT(XString("a").CompareNoCase("B"), 0);
    EXPECT_EQ(XString("x").Collate("x"), 0);
    EXPECT_NE(XString("x").Collate("X"), 0);
    EXPECT_EQ(XString("x").CollateNoCase("X"), 0);
    EXPECT_LT(XString("x").Collate("y"), 0);
    EXPECT_STREQ(XfnGetEmptyString(), "");
}

// the second byte of a double-byte character may look like a letter
TEST(XString, DoubleByteCharactersStayWhole)
{
    const CodePageScope korean(kXCodePageKorean);
    XString s("a\201ab\260\241"); // a, U+AC03, b, U+AC00
    EXPECT_STREQ(XString(s).MakeUpper(), "A\201aB\260\241");
    EXPECT_EQ(s.ReverseFind('a'), 0);
    EXPECT_EQ(s.Find('a', 1), -1);
    EXPECT_EQ(s.Find("ab"), -1);
    EXPECT_EQ(XString(s).Replace("a", "-"), 1);
    EXPECT_STREQ(XString("x\201a").TrimRight("a"), "x\201a");
    EXPECT_NE(XString("\201A").CompareNoCase("\201a"), 0);
    EXPECT_STREQ(XfnFormat("%.2s|", s), "a|");
}

// meant for the thread sanitizer: counts cross threads, texts do not
TEST(XString, CopiesLiveInSeveralThreads)
{
    const XString shared("shared between threads");
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([copy = shared, t] {
            for (int i = 0; i < 2000; ++i) {
                XString mine(copy);
                mine += static_cast<char>('0' + t);
                ASSERT_EQ(mine.GetLength(), copy.GetLength() + 1);
            }
        });
    }
    threads.clear(); // joins
    EXPECT_STREQ(shared, "shared between threads");
}

} // namespace
