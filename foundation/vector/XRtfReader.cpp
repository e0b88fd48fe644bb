#include "foundation/vector/XRtfReader.h"

#include "foundation/base/XCodePage.h"
#include "foundation/base/XString.h"
#include "foundation/vector/XRichText.h"
#include "foundation/vector/XRtfWords.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

constexpr int kWestern = 1252;
constexpr int kFirstHalfPoints = 24;
constexpr int kMaxStandIns = 64;
constexpr int kMaxNumber = 1 << 30;
constexpr std::size_t kMaxTable = 1 << 16; // faces and colours
constexpr std::size_t kMaxPending = 4096;  // bytes that are kept back for decoding together
constexpr const char* kSignature = "{\\rtf";

enum class Place : unsigned char { Text, Faces, Colours, Alternative, Nowhere };

// What a group inherits and gives back.
struct tagState
{
    Place place = Place::Text;
    bool isBold = false;
    bool isItalic = false;
    bool isUnderline = false;
    bool isStrikeOut = false;
    bool isHidden = false;
    XParagraphAlign align = XParagraphAlign::Left;
    int face = -1; // number in the table
    int halfPoints = kFirstHalfPoints;
    int colour = 0; // index in the table
    int standIns = 1;
};

struct tagFace
{
    std::string name;
    int charSet = 1;
    int codePage = 0; // 0: that of the character set
};

int ToDigit(unsigned char ch)
{
    if (ch >= '0' && ch <= '9') return ch - '0';
    if (ch >= 'a' && ch <= 'f') return ch - 'a' + 10;
    if (ch >= 'A' && ch <= 'F') return ch - 'A' + 10;
    return -1;
}

bool IsLetter(unsigned char ch)
{
    return (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z');
}

bool IsDigit(unsigned char ch)
{
    return ch >= '0' && ch <= '9';
}

void AppendUtf8(std::string& text, std::uint32_t code)
{
    const auto put = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (code < 0x80) return put(code);
    if (code < 0x800) {
        put(0xC0 | code >> 6);
    } else {
        if (code < 0x10000) {
            put(0xE0 | code >> 12);
        } else {
            put(0xF0 | code >> 18);
            put(0x80 | (code >> 12 & 0x3F));
        }
        put(0x80 | (code >> 6 & 0x3F));
    }
    put(0x80 | (code & 0x3F));
}

class Reader
{
public:
    Reader(std::string_view rtf, XRichText& text) : m_rtf(rtf), m_text(text) {}

    bool Read(XString& error)
    {
        while (m_at < m_rtf.size()) {
            const auto ch = static_cast<unsigned char>(m_rtf[m_at++]);
            if (ch == '{') {
                if (m_stack.size() >= static_cast<std::size_t>(kXRtfMaxDepth)) {
                    error = "The rich text nests its groups too deeply.";
                    return false;
                }
                LeaveRun();
                m_stack.push_back(m_state);
            } else if (ch == '}') {
                if (m_stack.size() <= 1) break;
                LeaveRun();
                CloseFace();
                m_state = m_stack.back();
                m_stack.pop_back();
            } else if (ch == '\\') {
                ReadControl();
            } else if (ch != '\r' && ch != '\n' && ch != '\0') {
                PutByte(ch, false);
            }
        }
        Finish();
        return true;
    }

private:
    // A run of bytes and stand-ins ends at a brace.
    void LeaveRun()
    {
        FlushText();
        m_standInsLeft = 0;
        m_isOptional = false;
    }

    void Finish()
    {
        FlushText();
        const auto& last = m_text.GetParagraphs().back();
        if (last.runs.empty() && m_text.GetParagraphs().size() > 1) {
            m_text.DropEmptyLast();
        } else {
            m_text.EndLast(last.runs.empty() ? m_state.align : m_lastAlign, GetFormat());
        }
    }

    // --- tokens

    void ReadControl()
    {
        if (m_at >= m_rtf.size()) return;
        const auto ch = static_cast<unsigned char>(m_rtf[m_at]);
        if (IsLetter(ch)) return ReadWord();
        ++m_at;
        if (ch == '\'') return ReadHex();
        if (SkipsStandIn()) return;
        switch (ch) {
        case '\\':
        case '{':
        case '}':
            PutByte(ch, true);
            break;
        case '*':
            m_isOptional = true;
            break;
        case '~':
            PutCharacter(0xA0);
            break;
        case '_':
            PutCharacter(0x2011);
            break;
        case '\r':
            if (m_at < m_rtf.size() && m_rtf[m_at] == '\n') ++m_at;
            BreakParagraph();
            break;
        case '\n':
            BreakParagraph();
            break;
        case '\t':
            PutCharacter('\t');
            break;
        default: // an optional hyphen, an index mark and what is not known
            break;
        }
    }

    void ReadHex()
    {
        int value = 0;
        for (int i = 0; i < 2; ++i) {
            const int digit =
                m_at < m_rtf.size() ? ToDigit(static_cast<unsigned char>(m_rtf[m_at])) : -1;
            if (digit < 0) {
                SkipsStandIn();
                return;
            }
            value = value * 16 + digit;
            ++m_at;
        }
        PutByte(static_cast<unsigned char>(value), true);
    }

    void ReadWord()
    {
        const std::size_t begin = m_at;
        while (m_at < m_rtf.size() && IsLetter(static_cast<unsigned char>(m_rtf[m_at])))
            ++m_at;
        const std::string_view name = m_rtf.substr(begin, m_at - begin);
        bool isNegative = false;
        if (m_at + 1 < m_rtf.size() && m_rtf[m_at] == '-' &&
            IsDigit(static_cast<unsigned char>(m_rtf[m_at + 1]))) {
            isNegative = true;
            ++m_at;
        }
        bool hasNumber = false;
        int number = 0;
        while (m_at < m_rtf.size() && IsDigit(static_cast<unsigned char>(m_rtf[m_at]))) {
            hasNumber = true;
            if (number < kMaxNumber / 10) number = number * 10 + (m_rtf[m_at] - '0');
            ++m_at;
        }
        if (m_at < m_rtf.size() && m_rtf[m_at] == ' ') ++m_at;
        if (isNegative) number = -number;

        const tagXRtfWord word = XfnFindRtfWord(name);
        if (word.action == XRtfAction::Binary) { // whatever the group is, these are no tokens
            m_at += std::min(m_rtf.size() - m_at, static_cast<std::size_t>(std::max(number, 0)));
            SkipsStandIn();
            return;
        }
        if (SkipsStandIn()) return;
        const bool isOptional = std::exchange(m_isOptional, false);
        if (isOptional && word.action != XRtfAction::AlternativeText) {
            Enter(Place::Nowhere);
            return;
        }
        Do(word, hasNumber, number);
    }

    // --- control words

    void Do(const tagXRtfWord& word, bool hasNumber, int number)
    {
        if (m_state.place == Place::Nowhere) return;
        if (m_state.place == Place::Alternative) {
            if (word.action == XRtfAction::AlternativeText) m_state.place = Place::Text;
            return;
        }
        switch (word.action) {
        case XRtfAction::Skip:
            return Enter(Place::Nowhere);
        case XRtfAction::FaceTable:
            return Enter(Place::Faces);
        case XRtfAction::ColourTable:
            return Enter(Place::Colours);
        case XRtfAction::Alternative:
            return Enter(Place::Alternative);
        case XRtfAction::StandIns:
            m_state.standIns = std::clamp(hasNumber ? number : 1, 0, kMaxStandIns);
            return;
        case XRtfAction::Unicode:
            PutUnicode(number);
            m_standInsLeft = m_state.standIns;
            return;
        case XRtfAction::Character:
            PutCharacter(static_cast<std::uint32_t>(word.value));
            return;
        case XRtfAction::CodePage:
            FlushText();
            m_codePage = word.value;
            return;
        case XRtfAction::CodePageOf:
            FlushText();
            m_codePage = number;
            return;
        default:
            break;
        }
        if (m_state.place == Place::Faces) {
            DoInFaces(word, number);
        } else if (m_state.place == Place::Colours) {
            DoInColours(word, number);
        } else {
            DoInText(word, hasNumber, number);
        }
    }

    void Enter(Place place)
    {
        if (m_state.place == Place::Nowhere) return;
        FlushText();
        CloseFace();
        m_state.place = place;
    }

    void DoInFaces(const tagXRtfWord& word, int number)
    {
        if (word.action == XRtfAction::Face) {
            CloseFace();
            m_newNumber = number;
            m_newFace = tagFace();
        } else if (word.action == XRtfAction::FaceCharSet) {
            FlushBytes();
            m_newFace.charSet = number;
        } else if (word.action == XRtfAction::FaceCodePage) {
            FlushBytes();
            m_newFace.codePage = number;
        }
    }

    void DoInColours(const tagXRtfWord& word, int number)
    {
        const auto part = static_cast<unsigned>(std::clamp(number, 0, 255));
        if (word.action == XRtfAction::Red) {
            m_newColour = (m_newColour & ~0xFFu) | part | kXOpaque;
        } else if (word.action == XRtfAction::Green) {
            m_newColour = (m_newColour & ~0xFF00u) | part << 8 | kXOpaque;
        } else if (word.action == XRtfAction::Blue) {
            m_newColour = (m_newColour & ~0xFF0000u) | part << 16 | kXOpaque;
        }
    }

    void DoInText(const tagXRtfWord& word, bool hasNumber, int number)
    {
        const bool isOn = !hasNumber || number != 0;
        switch (word.action) {
        case XRtfAction::Paragraph:
            return BreakParagraph();
        case XRtfAction::Row:
            return BreakParagraph();
        case XRtfAction::Bold:
            return Set(m_state.isBold, isOn);
        case XRtfAction::Italic:
            return Set(m_state.isItalic, isOn);
        case XRtfAction::Underline:
            return Set(m_state.isUnderline, isOn);
        case XRtfAction::UnderlineOff:
            return Set(m_state.isUnderline, false);
        case XRtfAction::StrikeOut:
            return Set(m_state.isStrikeOut, isOn);
        case XRtfAction::Hidden:
            return Set(m_state.isHidden, isOn);
        case XRtfAction::Face:
            return Set(m_state.face, number);
        case XRtfAction::DefaultFace:
            m_defaultFace = number;
            return Set(m_state.face, number);
        case XRtfAction::Size:
            if (number > 0) Set(m_state.halfPoints, number);
            return;
        case XRtfAction::Colour:
            return Set(m_state.colour, number);
        case XRtfAction::Plain:
            return SetPlain();
        case XRtfAction::ParagraphPlain:
            FlushText();
            m_state.align = XParagraphAlign::Left;
            return;
        case XRtfAction::Align:
            FlushText();
            m_state.align = static_cast<XParagraphAlign>(word.value);
            m_lastAlign = m_state.align; // the last one said in a paragraph holds for all of it
            return;
        default:
            return;
        }
    }

    template <class T>
    void Set(T& member, T value)
    {
        if (member == value) return;
        FlushText();
        member = value;
    }

    void SetPlain()
    {
        FlushText();
        const tagState before = m_state;
        m_state = tagState();
        m_state.place = before.place;
        m_state.align = before.align;
        m_state.standIns = before.standIns;
        m_state.face = m_defaultFace;
    }

    // --- text

    // One unit of what stands for a Unicode character in old readers.
    bool SkipsStandIn()
    {
        if (m_standInsLeft == 0) return false;
        --m_standInsLeft;
        return true;
    }

    bool TakesText() const
    {
        return m_state.place == Place::Faces || (m_state.place == Place::Text && !m_state.isHidden);
    }

    void PutByte(unsigned char byte, bool isEscaped)
    {
        if (SkipsStandIn()) return;
        if (byte == ';' && !isEscaped) {
            if (m_state.place == Place::Faces) return CloseFace();
            if (m_state.place == Place::Colours) return CloseColour();
        }
        if (!TakesText()) return;
        if (m_high) PutUnit(0);
        m_bytes += static_cast<char>(byte);
        if (m_bytes.size() >= kMaxPending && byte < 0x40) FlushBytes(); // no part of a pair
    }

    void PutCharacter(std::uint32_t code)
    {
        if (!TakesText()) return;
        FlushBytes();
        if (m_high) PutUnit(0);
        AppendUtf8(m_utf8, code);
    }

    void PutUnicode(int number)
    {
        if (!TakesText()) return;
        FlushBytes();
        // sixteen bits, negative above 32767; some write the code itself
        PutUnit(static_cast<std::uint32_t>(number < 0 ? number + 0x10000 : number));
    }

    // A code or half of one; 0 when what follows a first half is no second half.
    void PutUnit(std::uint32_t unit)
    {
        const bool isSecond = unit >= 0xDC00 && unit <= 0xDFFF;
        const std::uint32_t high = std::exchange(m_high, 0);
        if (high && isSecond) {
            AppendUtf8(m_utf8, 0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00));
            return;
        }
        if (high) AppendUtf8(m_utf8, 0xFFFD);
        if (unit >= 0xD800 && unit <= 0xDBFF) {
            m_high = unit;
        } else if (isSecond || unit > 0x10FFFF) {
            AppendUtf8(m_utf8, 0xFFFD);
        } else if (unit >= 0xF000 && unit <= 0xF0FF) {
            PutSign(unit & 0xFF); // where fonts of signs have theirs
        } else if (unit) {
            AppendUtf8(m_utf8, unit);
        }
    }

    // A byte of a font of signs: the marks of lists are known, others are taken as they are.
    void PutSign(std::uint32_t byte)
    {
        AppendUtf8(m_utf8, byte == 0xB7 ? 0x2022 : byte == 0xA7 ? 0x25AA : byte);
    }

    void FlushBytes()
    {
        if (m_bytes.empty()) return;
        const std::string bytes = std::exchange(m_bytes, std::string());
        const int page = GetCodePage();
        if (page == kXRtfSymbolPage) {
            for (const char ch : bytes)
                PutSign(static_cast<unsigned char>(ch));
            return;
        }
        if (std::all_of(bytes.begin(), bytes.end(), [](char ch) { return ch >= 0; })) {
            m_utf8 += bytes;
            return;
        }
        const XString raw{std::string_view(bytes)};
        XString decoded = XfnCodePageToUtf8(page, raw);
        // a document of another code page may name its western fonts so
        if (page != kWestern && IsAnsiFace() && decoded.Find("\xEF\xBF\xBD") >= 0) {
            decoded = XfnCodePageToUtf8(kWestern, raw);
        }
        m_utf8 += decoded.View();
    }

    void FlushText()
    {
        FlushBytes();
        if (m_high) PutUnit(0);
        if (m_state.place == Place::Faces) {
            m_newFace.name += m_utf8;
            if (m_newFace.name.size() > kMaxPending) m_newFace.name.resize(kMaxPending);
        } else if (!m_utf8.empty()) {
            m_text.Append(m_utf8, GetFormat());
            m_lastAlign = m_state.align;
        }
        m_utf8.clear();
    }

    void BreakParagraph()
    {
        if (m_state.place != Place::Text) return;
        FlushText();
        m_text.BreakParagraph(m_state.align, GetFormat());
        m_lastAlign = m_state.align;
    }

    const tagFace* FindFace(int number) const
    {
        const auto at = m_faces.find(number);
        return at == m_faces.end() ? nullptr : &at->second;
    }

    const tagFace* GetCurrentFace() const
    {
        return m_state.place == Place::Faces ? &m_newFace : FindFace(m_state.face);
    }

    bool IsAnsiFace() const
    {
        const tagFace* const face = GetCurrentFace();
        return !face || face->charSet <= 1;
    }

    int GetCodePage() const
    {
        const tagFace* const face = GetCurrentFace();
        int page = face && face->codePage > 0 ? face->codePage : 0;
        if (!page && face) page = XfnGetRtfCodePage(face->charSet);
        // the names of fonts of signs are letters
        if (page == kXRtfSymbolPage && m_state.place == Place::Faces) page = 0;
        if (!page) page = m_codePage;
        return page == kXRtfSymbolPage || XfnIsCodePageKnown(page) ? page : kWestern;
    }

    tagXCharFormat GetFormat() const
    {
        tagXCharFormat format;
        if (const tagFace* const face = FindFace(m_state.face)) format.face = face->name;
        format.halfPoints = m_state.halfPoints;
        const auto colour = static_cast<std::size_t>(std::max(m_state.colour, 0));
        if (colour < m_colours.size()) format.colour = m_colours[colour];
        format.isBold = m_state.isBold;
        format.isItalic = m_state.isItalic;
        format.isUnderline = m_state.isUnderline;
        format.isStrikeOut = m_state.isStrikeOut;
        return format;
    }

    // --- tables

    void CloseFace()
    {
        if (m_state.place != Place::Faces) return;
        FlushText();
        if (m_newFace.name.empty() || m_faces.size() >= kMaxTable) return;
        m_newFace.name = XRichText::Hold({.face = m_newFace.name}).face;
        m_faces.insert_or_assign(m_newNumber, m_newFace);
        m_newFace.name.clear();
    }

    void CloseColour()
    {
        if (m_colours.size() < kMaxTable) m_colours.push_back(m_newColour);
        m_newColour = 0;
    }

    const std::string_view m_rtf;
    XRichText& m_text;
    std::size_t m_at = 0;
    tagState m_state;
    std::vector<tagState> m_stack;
    std::string m_bytes; // text that is not decoded yet
    std::string m_utf8;  // text that is not in the paragraph yet
    std::uint32_t m_high = 0;
    int m_standInsLeft = 0;
    bool m_isOptional = false;
    XParagraphAlign m_lastAlign = XParagraphAlign::Left;
    int m_codePage = kWestern;
    int m_defaultFace = -1;
    std::unordered_map<int, tagFace> m_faces;
    int m_newNumber = 0;
    tagFace m_newFace;
    std::vector<tagXColor> m_colours;
    tagXColor m_newColour = 0;
};

} // namespace

int XfnReadRtf(const char* bytes, std::size_t size, XRichText& text, XString& error)
{
    std::string_view rtf(bytes ? bytes : "", bytes ? size : 0);
    if (rtf.size() > kXRtfMaxBytes) {
        error = "The rich text is too long.";
        return 0;
    }
    if (rtf.starts_with("\xEF\xBB\xBF")) rtf.remove_prefix(3);
    rtf.remove_prefix(std::min(rtf.find_first_not_of(" \t\r\n"), rtf.size()));
    if (!rtf.starts_with(kSignature)) {
        error = "The text does not begin as rich text does.";
        return 0;
    }
    XRichText read;
    if (!Reader(rtf, read).Read(error)) return 0;
    text = std::move(read);
    return 1;
}
