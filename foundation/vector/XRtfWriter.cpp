#include "foundation/vector/XRtfWriter.h"

#include "foundation/base/XCodePage.h"
#include "foundation/base/XColor.h"
#include "foundation/vector/XRichText.h"

#include <cstdint>
#include <map>
#include <string>

namespace {

constexpr int kFirstFont = 1; // a document without \deff has no font 0 that letters fall back to
constexpr char kHexDigits[] = "0123456789abcdef";

bool IsAscii(std::string_view text)
{
    for (const char ch : text) {
        if (static_cast<unsigned char>(ch) >= 0x80) return false;
    }
    return true;
}

class Writer
{
public:
    explicit Writer(const XRichText& text) : m_text(text) {}

    XString Write()
    {
        Collect();
        m_out = "{\\rtf1\\ansi\\ansicpg1252\\uc1";
        WriteTables();
        for (const auto& paragraph : m_text.GetParagraphs())
            WriteParagraph(paragraph);
        m_out += "}\n";
        return XString(m_out);
    }

private:
    void Collect()
    {
        for (const auto& paragraph : m_text.GetParagraphs()) {
            for (const auto& run : paragraph.runs)
                Collect(run.format);
            Collect(paragraph.endFormat);
        }
    }

    void Collect(const tagXCharFormat& format)
    {
        if (!format.face.empty()) {
            const int next = kFirstFont + static_cast<int>(m_fonts.size());
            if (m_fonts.try_emplace(format.face, next).second) m_faces.push_back(format.face);
        }
        if (format.colour) {
            const int next = 1 + static_cast<int>(m_colours.size());
            if (m_colours.try_emplace(format.colour, next).second)
                m_palette.push_back(format.colour);
        }
    }

    void WriteTables()
    {
        if (!m_faces.empty()) {
            m_out += "{\\fonttbl";
            m_isInTable = true;
            for (const std::string& face : m_faces)
                WriteFont(face);
            m_isInTable = false;
            m_out += "}\n";
        }
        if (m_palette.empty()) return;
        m_out += "{\\colortbl ;";
        for (const tagXColor colour : m_palette) {
            WriteWord("red", static_cast<int>(XfnGetRed(colour)));
            WriteWord("green", static_cast<int>(XfnGetGreen(colour)));
            WriteWord("blue", static_cast<int>(XfnGetBlue(colour)));
            m_out += ';';
        }
        m_out += "}\n";
    }

    void WriteFont(const std::string& face)
    {
        m_out += '{';
        WriteWord("f", m_fonts[face]);
        m_out += "\\fnil";
        const XString utf8{std::string_view(face)};
        const XString korean = XfnUtf8ToCodePage(kXCodePageKorean, utf8);
        if (IsAscii(face)) {
            m_out += "\\fcharset0 ";
            WriteText(face);
        } else if (XfnCodePageToUtf8(kXCodePageKorean, korean) == utf8) {
            m_out += "\\fcharset129 ";
            for (int i = 0; i < korean.GetLength(); ++i)
                WriteHex(korean[i]);
        } else {
            m_out += "\\fcharset1 ";
            WriteText(face);
        }
        m_out += ";}";
    }

    void WriteParagraph(const XRichText::tagParagraph& paragraph)
    {
        static constexpr const char* kAligns[] = {"\\ql", "\\qc", "\\qr", "\\qj"};
        m_out += "\\pard";
        m_out += kAligns[static_cast<int>(paragraph.align)];
        m_isWordOpen = true;
        for (const auto& run : paragraph.runs) {
            WriteFormat(run.format);
            WriteText(run.text);
        }
        WriteFormat(paragraph.endFormat);
        m_out += "\\par\n";
        m_isWordOpen = false;
    }

    void WriteFormat(const tagXCharFormat& format)
    {
        if (m_hasFormat && format == m_format) return;
        m_hasFormat = true;
        m_format = format;
        m_out += "\\plain";
        if (!format.face.empty()) WriteWord("f", m_fonts[format.face]);
        WriteWord("fs", format.halfPoints);
        if (format.colour) WriteWord("cf", m_colours[format.colour]);
        if (format.isBold) m_out += "\\b";
        if (format.isItalic) m_out += "\\i";
        if (format.isUnderline) m_out += "\\ul";
        if (format.isStrikeOut) m_out += "\\strike";
        m_isWordOpen = true;
    }

    void WriteWord(const char* word, int value)
    {
        m_out += '\\';
        m_out += word;
        m_out += std::to_string(value);
    }

    void WriteHex(char ch)
    {
        const auto byte = static_cast<unsigned char>(ch);
        m_out += "\\'";
        m_out += kHexDigits[byte >> 4];
        m_out += kHexDigits[byte & 15];
    }

    void WriteAscii(char ch)
    {
        if (ch == ';' && m_isInTable) return WriteHex(ch); // a plain one ends the name
        if (ch == '\\' || ch == '{' || ch == '}') m_out += '\\';
        m_out += ch;
    }

    void WriteUnit(std::uint32_t unit)
    {
        WriteWord("u", unit < 0x8000 ? static_cast<int>(unit) : static_cast<int>(unit) - 0x10000);
        m_out += '?';
    }

    // The text of the model is UTF-8 without faults.
    void WriteText(std::string_view text)
    {
        for (std::size_t i = 0; i < text.size();) {
            const auto lead = static_cast<unsigned char>(text[i]);
            if (lead == '\t') {
                m_out += "\\tab ";
                m_isWordOpen = false;
                ++i;
                continue;
            }
            if (lead < 0x80) {
                if (m_isWordOpen && lead != '\\' && lead != '{' && lead != '}') m_out += ' ';
                m_isWordOpen = false;
                WriteAscii(text[i++]);
                continue;
            }
            const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
            std::uint32_t code = lead & (0x7Fu >> length);
            for (int k = 1; k < length; ++k)
                code = code << 6 |
                       (static_cast<unsigned char>(text[i + static_cast<std::size_t>(k)]) & 0x3Fu);
            i += static_cast<std::size_t>(length);
            m_isWordOpen = false;
            if (code == 0x2028) {
                m_out += "\\line ";
            } else if (code >= 0x10000) {
                WriteUnit(0xD800 + ((code - 0x10000) >> 10));
                WriteUnit(0xDC00 + ((code - 0x10000) & 0x3FF));
            } else {
                WriteUnit(code);
            }
        }
    }

    const XRichText& m_text;
    std::map<std::string, int> m_fonts;
    std::vector<std::string> m_faces;
    std::map<tagXColor, int> m_colours;
    std::vector<tagXColor> m_palette;
    std::string m_out;
    tagXCharFormat m_format;
    bool m_hasFormat = false;
    bool m_isInTable = false;
    bool m_isWordOpen = false; // a letter now would be taken for part of a control word
};

} // namespace

XString XfnWriteRtf(const XRichText& text)
{
    return Writer(text).Write();
}
