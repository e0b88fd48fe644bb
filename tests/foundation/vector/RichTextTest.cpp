#include "foundation/base/XString.h"
#include "foundation/vector/XRichText.h"
#include "foundation/vector/XRtfReader.h"
#include "foundation/vector/XRtfWriter.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Paragraphs as "align|marks:text|marks:text", one a line; marks are b i u s, size in half points
// when it is not 24, #rrggbb, and the face in brackets.
std::string Tell(const XRichText& text)
{
    std::string told;
    for (const auto& paragraph : text.GetParagraphs()) {
        if (!told.empty()) told += '\n';
        told += "LCRJ"[static_cast<int>(paragraph.align)];
        for (const auto& run : paragraph.runs) {
            const tagXCharFormat& f = run.format;
            told += '|';
            if (f.isBold) told += 'b';
            if (f.isItalic) told += 'i';
            if (f.isUnderline) told += 'u';
            if (f.isStrikeOut) told += 's';
            if (f.halfPoints != 24) told += std::to_string(f.halfPoints);
            if (f.colour) {
                told += XfnFormat("#%02x%02x%02x", XfnGetRed(f.colour), XfnGetGreen(f.colour),
                                  XfnGetBlue(f.colour));
            }
            if (!f.face.empty()) told += "[" + f.face + "]";
            told += ":" + run.text;
        }
    }
    return told;
}

std::string Read(const std::string& rtf)
{
    XRichText text;
    XString error;
    return XfnReadRtf(rtf.data(), rtf.size(), text, error) ? Tell(text)
                                                           : "! " + std::string(error.View());
}

TEST(RichText, ReadsWhatWordProcessorsWrite)
{
    const struct
    {
        const char* why;
        std::string body; // between "{\\rtf1" and "}"
        std::string told;
    } rows[] = {
        {"formats and what ends them",
         "\\ansi a\\b b\\i c\\b0 d\\i0\\ul e\\ulnone\\ulwave0 f\\strike g\\plain h\\uldb1 i",
         "L|:a|b:b|bi:c|i:d|u:e|:f|s:g|:h|u:i"},
        {"a group gives its format back", " a{\\b b{\\i c}d}e", "L|:a|b:b|bi:c|b:d|:e"},
        {"paragraphs, the last mark begins none",
         "\\qc a\\par b\\par\\pard c\\qr d\\line e\\tab f\\par\\qj g\\par\\par}",
         "C|:a\nC|:b\nR|:cd\u2028e\tf\nJ|:g\nJ"},
        {"no mark at the end", "\\pard\\qc a\\par{\\qr b}", "C|:a\nR|:b"},
        {"line ends are nothing, escaped ones are marks", " a\r\nb\\\nc\\\r\nd",
         "L|:ab\nL|:c\nL|:d"},
        {"the table of colours, with and without an automatic one",
         "{\\colortbl ;\\red255\\green0\\blue16;\\red1;}\\cf1 a\\cf2 b\\cf0 c\\cf9 d",
         "L|#ff0010:a|#010000:b|:cd"},
        {"a table without a first semicolon",
         "{\\colortbl\\red0\\green0\\blue0;\\red0\\green0\\blue255;}\\cf0 a\\cf1 b",
         "L|#000000:a|#0000ff:b"},
        {"the table of faces as one writes it",
         "\\deff1{\\fonttbl{\\f0\\fswiss\\fcharset0\\fprq2{\\*\\panose 020b06}Arial{\\*\\falt "
         "Helv};}{\\f1\\fnil Sans;}}a{\\f0\\fs20 b}\\f7 c\\plain d",
         "L|[Sans]:a|20[Arial]:b|:c|[Sans]:d"},
        {"and as another does",
         "{\\fonttbl\\f0\\fswiss Helvetica;\\f3\\fmodern Courier;}\\f3 a\\f0 b",
         "L|[Courier]:a|[Helvetica]:b"},
        {"a face with its name in Korean bytes, text by character set, trail bytes as letters",
         "\\ansi\\ansicpg1252{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset129 "
         "\\'b1\\'bc\\'b8\\'b2;}}\\f1\\'b0\\'a1\\'81\\'41 \\'81A\\f0\\'e9",
         "L|[굴림]:가갂 갂|[Arial]:é"},
        {"the code page of the document; western letters of a western face in it",
         "\\ansi\\ansicpg949{\\fonttbl{\\f0\\fcharset0 Arial;}}\\f0\\'b0\\'a1 \\'e9",
         "L|[Arial]:°¡ é"},
        {"the same, all of it Korean", "\\ansi\\ansicpg949 \\'b0\\'a1{\\b\\'b3\\'aa}",
         "L|:가|b:나"},
        {"Japanese and Russian by character set",
         "{\\fonttbl{\\f1\\fcharset128 G;}{\\f2\\fcharset204 R;}}\\f1\\'82\\'a0\\f2\\'ff",
         "L|[G]:あ|[R]:я"},
        {"letters by number, negative ones, with stand-ins of all kinds",
         "\\u44032?\\u-21504?\\uc2\\u9731\\'a1\\'a1x\\uc0\\u233 y\\uc1\\u233\\tab z{\\u233}q",
         "L|:가가☃xéyézéq"},
        {"pairs, and halves that stand alone",
         "\\u-10179?\\u-8704? \\u55357?x\\u56832?{\\uc0\\u-10179}\\uc0\\u-8704\\u128512 ",
         "L|:😀 �x���😀"},
        {"stand-ins end with their group and count bytes of data as one",
         "{\\uc3\\u233 a}b\\uc1\\u233\\bin3 {{{c", "L|:ébéc"},
        {"named letters",
         "\\lquote a\\rquote\\ldblquote b\\rdblquote\\endash\\emdash\\~\\_\\-\\bullet \\{\\}\\\\",
         "L|:‘a’“b”–—\u00A0\u2011•{}\\"},
        {"what is no text",
         "{\\info{\\title T}}{\\stylesheet{\\s1 S;}}{\\*\\generator G;}{\\header h}a{\\pict\\bin4 "
         "}}{{0123}{\\footnote{\\i n}}{\\*\\x{\\b y}}b{\\v h\\v0 c}\\deleted d",
         "L|:abc"},
        {"fields and objects show their result, lists their marks",
         "{\\field{\\*\\fldinst{ HYPERLINK \"x\"}}{\\fldrslt{\\ul link}}}{\\object{\\*\\objdata "
         "00}{\\result r}}{\\fonttbl{\\f2\\fcharset2 "
         "Symbol;}}{\\pntext\\f2\\'b7\\tab}{\\*\\pn\\pnlvlblt}i",
         "L|u:link|:r|[Symbol]:•\t|:i"},
        {"the Unicode form of two", "{\\upr{a}{\\*\\ud{\\u945 ?}}}b", "L|:αb"},
        {"cells and rows", "\\trowd\\intbl a\\cell b\\cell\\row c", "L|:a\tb\t\nL|:c"},
        {"the double form of fonts: the last one counts",
         "{\\fonttbl{\\f5 A;}{\\f6\\fcharset129 B;}}{\\rtlch\\fcs1\\af5\\ltrch\\fcs0\\hich\\af5"
         "\\dbch\\af6\\loch\\f5 x}{\\loch\\af5\\hich\\af5\\dbch\\f6\\'b0\\'a1}",
         "L|[A]:x|[B]:가"},
        {"sizes out of range", "\\fs0 a\\fs99999 b\\fs-4 c", "L|:a|3276:bc"},
        {"damage", " a\\'zzb\\'4}c", "L|:azzb"},
        {"a control word that is too long for its number", "\\b99999999999999a\\b-0 b", "L|b:a|:b"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Read("{\\rtf1" + row.body + "}"), row.told) << row.why;
    EXPECT_EQ(Read("\xEF\xBB\xBF {\\rtf1 a{\\b b"), "L|:a|b:b") << "cut short";
    EXPECT_EQ(Read("{\\rtf1 a}}}\\b junk\0"), "L|:a") << "what follows is no text";
}

TEST(RichText, HostileBytesAreRefusedOrRead)
{
    for (const char* text : {"", "x", "{\\rt", "plain text", "{{\\rtf1 a}}"})
        EXPECT_EQ(Read(text)[0], '!') << text;
    const std::string open(kXRtfMaxDepth - 1, '{');
    EXPECT_EQ(Read("{\\rtf1" + open + "a"), "L|:a");
    EXPECT_EQ(Read("{\\rtf1{" + open + "a"), "! The rich text nests its groups too deeply.");
    XRichText text("kept", {});
    const XRichText before = text;
    XString error;
    EXPECT_FALSE(XfnReadRtf(nullptr, 0, text, error));
    EXPECT_EQ(text, before);
    std::string many = "{\\rtf1";
    for (int i = 0; i < 1200000; ++i)
        many += "\\par";
    ASSERT_TRUE(XfnReadRtf(many.data(), many.size(), text, error));
    EXPECT_LE(text.GetParagraphs().size(), XRichText::kMaxParts);
}

TEST(RichText, WhatIsWrittenComesBackExactly)
{
    XRichText text;
    const tagXCharFormat plain{.face = "Arial", .halfPoints = 21};
    text.Append("a{b}\\c; ünï 가\U0001F600\u2028\t\u00A0 -1", plain);
    text.Append("1", {.face = "굴림체", .colour = 0x010203u, .isBold = true, .isStrikeOut = true});
    text.BreakParagraph(XParagraphAlign::Justify, {.halfPoints = 3276, .isItalic = true});
    text.BreakParagraph(XParagraphAlign::Right, {.face = "A;b}\\", .isUnderline = true});
    text.Append(" blank ", {.face = "日本 ; αβ ☃", .halfPoints = 1});
    text.BreakParagraph(XParagraphAlign::Centre, plain);
    text.EndLast(XParagraphAlign::Left, {.colour = 0xFF00FF00u});
    const XString rtf = XfnWriteRtf(text);
    for (const char ch : rtf.View())
        ASSERT_TRUE((ch >= ' ' && ch < 127) || ch == '\n');
    XRichText read;
    XString error;
    ASSERT_TRUE(XfnReadRtf(rtf, static_cast<std::size_t>(rtf.GetLength()), read, error));
    EXPECT_EQ(Tell(read), Tell(text));
    EXPECT_EQ(read, text);
    EXPECT_GE(rtf.Find("\\fcharset129 \\'b1\\'bc\\'b8\\'b2\\'c3\\'bc;"), 0);
}

TEST(RichText, IsHeldAndChangedAsAWhole)
{
    const tagXCharFormat small{.halfPoints = 20};
    XRichText text("one\r\ntwo\nMG", small, XParagraphAlign::Right);
    text.Append("R", {.isBold = true});
    text.Append("S MGRS", small);
    EXPECT_EQ(Tell(text), "R|20:one\nR|20:two\nR|20:MG|b20:R|20:S MGRS");
    EXPECT_EQ(text.Replace("MGRS", "grid"), 2);
    EXPECT_EQ(Tell(text), "R|20:one\nR|20:two\nR|20:grid grid");
    EXPECT_EQ(text.Replace("o", "a\nb"), 2);
    EXPECT_EQ(text.GetPlainText(), "a\nbne\ntwa\nb\ngrid grid");
    EXPECT_EQ(text.Replace("", "x"), 0);

    text.Append("!", {.halfPoints = 30, .isBold = true});
    unsigned common = 0;
    EXPECT_EQ(text.GetFormat(common).halfPoints, 20);
    EXPECT_EQ(common, tagXCharFormat::kAll & ~(tagXCharFormat::kSize | tagXCharFormat::kBold));
    text.SetFormat({.face = "\n \tA", .halfPoints = 0, .colour = 0x0000FFu}, tagXCharFormat::kAll);
    EXPECT_EQ(Tell(text).substr(0, 18), "R|1#ff0000[A]:a\u2028");
    EXPECT_EQ(text.GetFormat(common), text.GetParagraphs().back().endFormat);
    EXPECT_EQ(common, tagXCharFormat::kAll);
    EXPECT_TRUE(text.IsAlign(XParagraphAlign::Right));
    text.SetAlign(XParagraphAlign::Centre);
    EXPECT_FALSE(text.IsAlign(XParagraphAlign::Right));

    EXPECT_EQ(XRichText::Clean("a\x01\x7F\xC2\x85\t\r\nb\xFF\xC0\x80\xED\xA0\x80"),
              "a\t\u2028b\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD");
    XRichText full(std::string(XRichText::kMaxBytes, 'a'), small);
    EXPECT_FALSE(full.Append("b", small));
    EXPECT_EQ(full.Replace("a", "aa"), 0);
    EXPECT_EQ(full.GetByteCount(), XRichText::kMaxBytes);
}

} // namespace
