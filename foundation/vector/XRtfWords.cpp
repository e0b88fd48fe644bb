#include "foundation/vector/XRtfWords.h"

#include "foundation/vector/XRichText.h"

#include <algorithm>

namespace {

using enum XRtfAction;

constexpr int kLeft = static_cast<int>(XParagraphAlign::Left);
constexpr int kCentre = static_cast<int>(XParagraphAlign::Centre);
constexpr int kRight = static_cast<int>(XParagraphAlign::Right);
constexpr int kJustify = static_cast<int>(XParagraphAlign::Justify);

// Sorted by name.
constexpr tagXRtfWord kWords[] = {
    {"ansi", CodePage, 1252},
    {"ansicpg", CodePageOf},
    {"atnauthor", Skip},
    {"atnid", Skip},
    {"b", Bold},
    {"bin", Binary},
    {"blue", Blue},
    {"bullet", Character, 0x2022},
    {"cell", Character, '\t'},
    {"cf", Colour},
    {"colortbl", ColourTable},
    {"column", Paragraph},
    {"cpg", FaceCodePage},
    {"deff", DefaultFace},
    {"deleted", Hidden},
    {"emdash", Character, 0x2014},
    {"emspace", Character, 0x2003},
    {"endash", Character, 0x2013},
    {"enspace", Character, 0x2002},
    {"f", Face},
    {"fcharset", FaceCharSet},
    {"filetbl", Skip},
    {"fonttbl", FaceTable},
    {"footer", Skip},
    {"footerf", Skip},
    {"footerl", Skip},
    {"footerr", Skip},
    {"footnote", Skip},
    {"fs", Size},
    {"ftncn", Skip},
    {"ftnsep", Skip},
    {"ftnsepc", Skip},
    {"green", Green},
    {"header", Skip},
    {"headerf", Skip},
    {"headerl", Skip},
    {"headerr", Skip},
    {"i", Italic},
    {"info", Skip},
    {"ldblquote", Character, 0x201C},
    {"line", Character, 0x2028},
    {"lquote", Character, 0x2018},
    {"ltrmark", Character, 0x200E},
    {"mac", CodePage, 10000},
    {"nestcell", Character, '\t'},
    {"nestrow", Row},
    {"nonshppict", Skip},
    {"object", Ignore}, // its result is text
    {"page", Paragraph},
    {"par", Paragraph},
    {"pard", ParagraphPlain},
    {"pc", CodePage, 437},
    {"pca", CodePage, 850},
    {"pict", Skip},
    {"plain", Plain},
    {"private", Skip},
    {"qc", Align, kCentre},
    {"qd", Align, kJustify},
    {"qj", Align, kJustify},
    {"ql", Align, kLeft},
    {"qmspace", Character, 0x2005},
    {"qr", Align, kRight},
    {"rdblquote", Character, 0x201D},
    {"red", Red},
    {"revtbl", Skip},
    {"row", Row},
    {"rquote", Character, 0x2019},
    {"rtlmark", Character, 0x200F},
    {"rxe", Skip},
    {"sect", Paragraph},
    {"shprslt", Skip},
    {"strike", StrikeOut},
    {"striked", StrikeOut},
    {"stylesheet", Skip},
    {"tab", Character, '\t'},
    {"tc", Skip},
    {"txe", Skip},
    {"u", Unicode},
    {"uc", StandIns},
    {"ud", AlternativeText},
    {"ul", Underline},
    {"uld", Underline},
    {"uldash", Underline},
    {"uldashd", Underline},
    {"uldashdd", Underline},
    {"uldb", Underline},
    {"ulhwave", Underline},
    {"ulldash", Underline},
    {"ulnone", UnderlineOff},
    {"ulth", Underline},
    {"ulthd", Underline},
    {"ulthdash", Underline},
    {"ulthdashd", Underline},
    {"ulthdashdd", Underline},
    {"ulthldash", Underline},
    {"ululdbwave", Underline},
    {"ulw", Underline},
    {"ulwave", Underline},
    {"upr", Alternative},
    {"v", Hidden},
    {"xe", Skip},
    {"zwbo", Character, 0x200B},
    {"zwj", Character, 0x200D},
    {"zwnbo", Character, 0x2060},
    {"zwnj", Character, 0x200C},
};

constexpr bool IsBefore(const tagXRtfWord& a, const tagXRtfWord& b)
{
    return a.name < b.name;
}

static_assert(std::is_sorted(std::begin(kWords), std::end(kWords), IsBefore));

struct tagCharSet
{
    int charSet;
    int codePage;
};

constexpr tagCharSet kCharSets[] = {
    {2, kXRtfSymbolPage}, {77, 10000}, {128, 932},  {129, 949},  {130, 1361}, {134, 936},
    {136, 950},           {161, 1253}, {162, 1254}, {163, 1258}, {177, 1255}, {178, 1256},
    {186, 1257},          {204, 1251}, {222, 874},  {238, 1250}, {254, 437},  {255, 850},
};

} // namespace

tagXRtfWord XfnFindRtfWord(std::string_view name)
{
    const tagXRtfWord wanted{name};
    const auto* const at = std::lower_bound(std::begin(kWords), std::end(kWords), wanted, IsBefore);
    return at != std::end(kWords) && at->name == name ? *at : wanted;
}

int XfnGetRtfCodePage(int charSet)
{
    for (const tagCharSet& row : kCharSets) {
        if (row.charSet == charSet) return row.codePage;
    }
    return 0;
}
