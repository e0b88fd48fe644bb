#include "foundation/base/XCodePage.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cwchar>
#include <iconv.h>
#include <iterator>
#include <string_view>

namespace {

std::atomic<int> g_codePage{kXCodePageUtf8};

bool IsOffered(int codePage)
{
    return codePage == kXCodePageUtf8 || codePage == kXCodePageKorean ||
           (codePage >= 1250 && codePage <= 1258);
}

// Those of files, which need not be those that a process may run in.
constexpr int kFilePages[] = {437, 850, 852, 866, 874, 932, 936, 950, 1361, 10000};

bool IsKnown(int codePage)
{
    return IsOffered(codePage) || std::ranges::find(kFilePages, codePage) != std::end(kFilePages);
}

/// One conversion descriptor of the C library, for one thread.
class XConverter
{
public:
    XConverter(const char* to, const char* from) : m_handle(iconv_open(to, from)) {}
    XConverter(const XConverter&) = delete;
    XConverter& operator=(const XConverter&) = delete;
    ~XConverter()
    {
        if (IsOpen()) iconv_close(m_handle);
    }

    bool IsOpen() const { return m_handle != reinterpret_cast<iconv_t>(-1); }

    /// Converts all of `text`.
    /// @param replacement  what stands for a character the target lacks or for a bad byte
    /// @param skip         how many bytes at a refused place to pass over
    template <class Skip>
    XString Convert(const XString& text, const char* replacement, Skip skip)
    {
        XString out;
        char* in = const_cast<char*>(text.GetString()); // only read
        std::size_t inLeft = static_cast<std::size_t>(text.GetLength());
        while (true) {
            char chunk[512];
            char* to = chunk;
            std::size_t room = sizeof chunk;
            const bool isEnd = inLeft == 0;
            const std::size_t result = isEnd ? iconv(m_handle, nullptr, nullptr, &to, &room)
                                             : iconv(m_handle, &in, &inLeft, &to, &room);
            const int error = result == static_cast<std::size_t>(-1) ? errno : 0;
            out.Append(chunk, static_cast<int>(to - chunk));
            if (isEnd && error != E2BIG) return out;
            if (error == EILSEQ || error == EINVAL) {
                out += replacement;
                const std::size_t passed = skip(in, inLeft);
                in += passed;
                inLeft -= passed;
            }
        }
    }

private:
    iconv_t m_handle;
};

XString GetName(int codePage)
{
    if (codePage == kXCodePageUtf8) return "UTF-8";
    if (codePage == 1361) return "JOHAB";
    if (codePage == 10000) return "MACINTOSH";
    return XfnFormat("CP%d", codePage);
}

bool IsContinuation(char ch)
{
    return (static_cast<unsigned char>(ch) & 0xC0) == 0x80;
}

void AppendUtf8(XString& out, std::uint32_t code)
{
    if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) code = 0xFFFD;
    char bytes[4];
    int count = 0;
    if (code < 0x80) {
        bytes[count++] = static_cast<char>(code);
    } else {
        const int later = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
        const unsigned mark = later == 1 ? 0xC0 : later == 2 ? 0xE0 : 0xF0;
        bytes[count++] = static_cast<char>(mark | code >> 6 * later);
        for (int i = later - 1; i >= 0; --i) {
            bytes[count++] = static_cast<char>(0x80 | (code >> 6 * i & 0x3F));
        }
    }
    out.Append(bytes, count);
}

bool IsDoubleByte()
{
    return XfnGetCodePage() == kXCodePageKorean;
}

} // namespace

int XfnSetCodePage(int codePage)
{
    if (!IsOffered(codePage)) return 0;
    if (!XConverter("UTF-8", GetName(codePage)).IsOpen()) return 0;
    g_codePage = codePage;
    return 1;
}

int XfnGetCodePage()
{
    return g_codePage.load(std::memory_order_relaxed);
}

XString XfnTextToUtf8(const XString& text)
{
    return XfnCodePageToUtf8(XfnGetCodePage(), text);
}

XString XfnTextFromUtf8(const XString& utf8)
{
    return XfnUtf8ToCodePage(XfnGetCodePage(), utf8);
}

int XfnIsCodePageKnown(int codePage)
{
    return IsKnown(codePage) ? 1 : 0;
}

XString XfnCodePageToUtf8(int codePage, const XString& text)
{
    if (codePage == kXCodePageUtf8 || !IsKnown(codePage)) return text;
    XConverter converter("UTF-8", GetName(codePage));
    if (!converter.IsOpen()) return text;
    return converter.Convert(text, "\xEF\xBF\xBD",
                             [](const char*, std::size_t) { return std::size_t{1}; });
}

XString XfnUtf8ToCodePage(int codePage, const XString& utf8)
{
    if (codePage == kXCodePageUtf8 || !IsKnown(codePage)) return utf8;
    XConverter converter(GetName(codePage), "UTF-8");
    if (!converter.IsOpen()) return utf8;
    return converter.Convert(utf8, "?", [](const char* at, std::size_t left) {
        std::size_t count = 1; // a character the target lacks goes as a whole
        while (count < left && IsContinuation(at[count]))
            ++count;
        return count;
    });
}

XString XfnWideToText(const wchar_t* text, std::size_t count)
{
    static_assert(sizeof(wchar_t) == 4);
    XString utf8;
    for (std::size_t i = 0; i < count; ++i)
        AppendUtf8(utf8, static_cast<std::uint32_t>(text[i]));
    return XfnTextFromUtf8(utf8);
}

int XfnIsLeadByte(unsigned char byte)
{
    return byte >= 0x81 && byte <= 0xFE && IsDoubleByte();
}

int XfnIsTrailByte(const char* text, int index)
{
    if (!IsDoubleByte()) return 0;
    int i = 0;
    while (i < index)
        i += XfnIsLeadByte(static_cast<unsigned char>(text[i])) ? 2 : 1;
    return i != index;
}

int XfnFitToCharacter(const char* text, int length, int count)
{
    if (count >= length) return length;
    if (count <= 0) return 0;
    if (IsDoubleByte()) return count - XfnIsTrailByte(text, count);
    if (XfnGetCodePage() != kXCodePageUtf8) return count;
    int fit = count;
    while (fit > 0 && count - fit < 3 && IsContinuation(text[fit]))
        --fit;
    return IsContinuation(text[fit]) ? count : fit; // no UTF-8 at all: cut where asked
}
