#include "foundation/vector/XRichText.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr std::string_view kLineBreak = "\xE2\x80\xA8";   // U+2028
constexpr std::string_view kReplacement = "\xEF\xBF\xBD"; // U+FFFD

// The character at the front of `text`, taken off it; 0xFFFD for bytes that are none.
std::uint32_t TakeCharacter(std::string_view& text, std::size_t& length)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    length = 1;
    if (lead < 0x80) return lead;
    const std::size_t wanted = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < wanted) return 0xFFFD;
    std::uint32_t code = lead & (0x7Fu >> wanted);
    for (std::size_t i = 1; i < wanted; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0) != 0x80) return 0xFFFD;
        code = code << 6 | (byte & 0x3Fu);
    }
    constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kSmallest[wanted] || code > 0x10FFFF || isSurrogate) return 0xFFFD;
    length = wanted;
    return code;
}

bool IsControl(std::uint32_t code)
{
    return (code < 0x20 && code != '\t') || (code >= 0x7F && code <= 0x9F);
}

bool IsPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char ch) {
        const auto byte = static_cast<unsigned char>(ch);
        return (byte >= 0x20 && byte < 0x7F) || byte == '\t';
    });
}

std::string CleanFace(std::string_view face)
{
    std::string clean = XRichText::Clean(face);
    std::erase(clean, '\t');
    for (std::size_t at; (at = clean.find(kLineBreak)) != std::string::npos;)
        clean.erase(at, kLineBreak.size());
    if (clean.size() > static_cast<std::size_t>(tagXCharFormat::kMaxFaceBytes)) {
        std::size_t end = tagXCharFormat::kMaxFaceBytes;
        while (end > 0 && (static_cast<unsigned char>(clean[end]) & 0xC0) == 0x80)
            --end;
        clean.resize(end);
    }
    const std::size_t first = clean.find_first_not_of(' ');
    if (first == std::string::npos) return std::string();
    return clean.substr(first, clean.find_last_not_of(' ') - first + 1);
}

} // namespace

XRichText::XRichText(std::string_view utf8, const tagXCharFormat& format, XParagraphAlign align)
    : m_paragraphs(1)
{
    std::size_t begin = 0;
    while (true) {
        const std::size_t end = utf8.find_first_of("\r\n", begin);
        Append(utf8.substr(begin, end - begin), format);
        if (end == std::string_view::npos || !BreakParagraph(align, format)) break;
        begin = end + (utf8.substr(end, 2) == "\r\n" ? 2 : 1);
    }
    EndLast(align, format);
}

std::string XRichText::Clean(std::string_view utf8)
{
    if (IsPlain(utf8)) return std::string(utf8);
    std::string clean;
    clean.reserve(utf8.size());
    while (!utf8.empty()) {
        std::size_t length = 1;
        const std::uint32_t code = TakeCharacter(utf8, length);
        if (code == '\r' && utf8.size() > 1 && utf8[1] == '\n') length = 2;
        if (code == '\n' || code == '\r' || code == 0x2028 || code == 0x2029) {
            clean += kLineBreak;
        } else if (code == 0xFFFD) {
            clean += kReplacement;
        } else if (!IsControl(code)) {
            clean += utf8.substr(0, length);
        }
        utf8.remove_prefix(length);
    }
    return clean;
}

tagXCharFormat XRichText::Hold(const tagXCharFormat& format)
{
    tagXCharFormat held = format;
    if (!IsPlain(held.face) || held.face.size() > tagXCharFormat::kMaxFaceBytes ||
        held.face.find('\t') != std::string::npos || held.face.starts_with(' ') ||
        held.face.ends_with(' ')) {
        held.face = CleanFace(held.face);
    }
    held.halfPoints = std::clamp(held.halfPoints, 1, tagXCharFormat::kMaxHalfPoints);
    if (held.colour) held.colour |= kXOpaque;
    return held;
}

void XRichText::AppendRun(std::vector<tagRun>& runs, std::string_view text,
                          const tagXCharFormat& format)
{
    if (text.empty()) return;
    if (!runs.empty() && runs.back().format == format) {
        runs.back().text += text;
    } else {
        runs.push_back({std::string(text), format});
    }
}

bool XRichText::Append(std::string_view utf8, const tagXCharFormat& format)
{
    const std::string clean = Clean(utf8.substr(0, kMaxBytes + 1));
    if (clean.empty()) return true;
    if (clean.size() > kMaxBytes - m_bytes || m_parts >= kMaxParts) return false;
    std::vector<tagRun>& runs = m_paragraphs.back().runs;
    const std::size_t before = runs.size();
    AppendRun(runs, clean, Hold(format));
    m_parts += runs.size() - before;
    m_bytes += clean.size();
    return true;
}

bool XRichText::BreakParagraph(XParagraphAlign align, const tagXCharFormat& endFormat)
{
    if (m_parts >= kMaxParts) return false;
    EndLast(align, endFormat);
    tagParagraph next;
    next.align = align;
    next.endFormat = m_paragraphs.back().endFormat;
    m_paragraphs.push_back(std::move(next));
    ++m_parts;
    return true;
}

void XRichText::EndLast(XParagraphAlign align, const tagXCharFormat& endFormat)
{
    m_paragraphs.back().align = align;
    m_paragraphs.back().endFormat = Hold(endFormat);
}

void XRichText::DropEmptyLast()
{
    if (m_paragraphs.size() < 2 || !m_paragraphs.back().runs.empty()) return;
    m_paragraphs.pop_back();
    --m_parts;
}

std::string XRichText::GetPlainText() const
{
    std::string text;
    text.reserve(m_bytes + m_paragraphs.size());
    for (std::size_t i = 0; i < m_paragraphs.size(); ++i) {
        if (i > 0) text += '\n';
        for (const tagRun& run : m_paragraphs[i].runs) {
            std::size_t begin = 0;
            for (std::size_t at; (at = run.text.find(kLineBreak, begin)) != std::string::npos;) {
                text.append(run.text, begin, at - begin) += '\n';
                begin = at + kLineBreak.size();
            }
            text.append(run.text, begin, std::string::npos);
        }
    }
    return text;
}

void XRichText::SetAlign(XParagraphAlign align)
{
    for (tagParagraph& paragraph : m_paragraphs)
        paragraph.align = align;
}

void XRichText::SetFormat(const tagXCharFormat& format, unsigned mask)
{
    const tagXCharFormat held = Hold(format);
    for (tagParagraph& paragraph : m_paragraphs) {
        paragraph.endFormat.Merge(held, mask);
        std::vector<tagRun> runs; // those that are alike now become one
        for (tagRun& run : paragraph.runs) {
            run.format.Merge(held, mask);
            if (!runs.empty() && runs.back().format == run.format) {
                runs.back().text += run.text;
                --m_parts;
            } else {
                runs.push_back(std::move(run));
            }
        }
        paragraph.runs = std::move(runs);
    }
}

tagXCharFormat XRichText::GetFormat(unsigned& common) const
{
    const tagXCharFormat* first = nullptr;
    common = tagXCharFormat::kAll;
    for (const tagParagraph& paragraph : m_paragraphs) {
        for (const tagRun& run : paragraph.runs) {
            if (!first) first = &run.format;
            common &= first->Compare(run.format);
        }
    }
    return first ? *first : m_paragraphs.front().endFormat;
}

int XRichText::IsAlign(XParagraphAlign align) const
{
    return std::all_of(m_paragraphs.begin(), m_paragraphs.end(),
                       [&](const tagParagraph& paragraph) { return paragraph.align == align; })
               ? 1
               : 0;
}

int XRichText::Replace(std::string_view from, std::string_view to)
{
    const std::string inserted = Clean(to.substr(0, kMaxBytes + 1));
    if (from.empty()) return 0;
    int count = 0;
    for (tagParagraph& paragraph : m_paragraphs) {
        std::string whole;
        for (const tagRun& run : paragraph.runs)
            whole += run.text;
        if (whole.find(from) == std::string::npos) continue;

        std::vector<tagRun> runs;
        std::size_t run = 0, runBegin = 0; // where `at` lies
        std::size_t at = 0;
        const auto copyTo = [&](std::size_t end) {
            while (at < end) {
                const tagRun& source = paragraph.runs[run];
                const std::size_t runEnd = runBegin + source.text.size();
                const std::size_t stop = std::min(end, runEnd);
                AppendRun(runs, std::string_view(whole).substr(at, stop - at), source.format);
                at = stop;
                if (at < runEnd) continue;
                runBegin = runEnd;
                ++run;
            }
        };
        for (std::size_t hit; (hit = whole.find(from, at)) != std::string::npos;) {
            if (inserted.size() > from.size() &&
                inserted.size() - from.size() > kMaxBytes - m_bytes) {
                break; // no room for more
            }
            copyTo(hit);
            AppendRun(runs, inserted, paragraph.runs[run].format);
            m_bytes = m_bytes - from.size() + inserted.size();
            ++count;
            at = hit + from.size();
            while (run < paragraph.runs.size() && at >= runBegin + paragraph.runs[run].text.size())
                runBegin += paragraph.runs[run++].text.size();
        }
        copyTo(whole.size());
        m_parts = m_parts - paragraph.runs.size() + runs.size();
        paragraph.runs = std::move(runs);
    }
    return count;
}
