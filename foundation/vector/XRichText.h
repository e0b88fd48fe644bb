#pragma once

#include "foundation/base/XApi.h"
#include "foundation/vector/XCharFormat.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class XString;

/// Where the lines of a paragraph stand between the margins.
enum class XParagraphAlign { Left, Centre, Right, Justify };

/// A text of paragraphs whose letters have formats; plain values, without fonts or widgets.
///
/// Text is UTF-8. A paragraph holds tabs and U+2028, which breaks its line, and no other control
/// character. Neighbouring runs of one format are one; a run is never empty. There is always at
/// least one paragraph.
/// Threads: as any value. Failure: what does not fit the two limits is left out.
class XAPI XRichText
{
public:
    static constexpr std::size_t kMaxBytes = std::size_t{1} << 24; ///< of all its text
    static constexpr std::size_t kMaxParts = std::size_t{1} << 20; ///< paragraphs and runs

    struct tagRun
    {
        std::string text;
        tagXCharFormat format;
        friend bool operator==(const tagRun&, const tagRun&) = default;
    };
    struct tagParagraph
    {
        XParagraphAlign align = XParagraphAlign::Left;
        std::vector<tagRun> runs{};
        tagXCharFormat
            endFormat{}; ///< of its end: the height of an empty one, and what is typed there
        friend bool operator==(const tagParagraph&, const tagParagraph&) = default;
    };

    XRichText() : m_paragraphs(1) {}
    /// Line ends (CR LF, CR, LF) part the paragraphs.
    XRichText(std::string_view utf8, const tagXCharFormat& format,
              XParagraphAlign align = XParagraphAlign::Left);

    const std::vector<tagParagraph>& GetParagraphs() const { return m_paragraphs; }
    bool IsEmpty() const { return m_bytes == 0 && m_paragraphs.size() == 1; }
    std::size_t GetByteCount() const { return m_bytes; }

    /// Appends to the last paragraph; bad UTF-8 becomes U+FFFD, line ends U+2028, and control
    /// characters other than tabs are left out. @return false when it does not fit
    bool Append(std::string_view utf8, const tagXCharFormat& format);
    /// Ends the last paragraph and begins a new one. @return false when there are too many
    bool BreakParagraph(XParagraphAlign align, const tagXCharFormat& endFormat);
    /// Sets what only the last paragraph's end knows.
    void EndLast(XParagraphAlign align, const tagXCharFormat& endFormat);
    /// Takes the last paragraph away when it is empty and not the only one.
    void DropEmptyLast();

    /// Paragraphs are joined by "\n", and U+2028 is "\n" too.
    std::string GetPlainText() const;
    void SetAlign(XParagraphAlign align); ///< of all paragraphs
    /// Sets parts of the format of all letters and ends. Values out of range are held in it.
    void SetFormat(const tagXCharFormat& format, unsigned mask);
    /// The format of the first letter (or end), and in `common` the parts that all share.
    tagXCharFormat GetFormat(unsigned& common) const;
    /// 1 when all paragraphs stand so.
    int IsAlign(XParagraphAlign align) const;
    /// Puts `to` for each `from` within a paragraph, in the format of its first letter.
    /// @return how many there were
    int Replace(std::string_view from, std::string_view to);

    friend bool operator==(const XRichText&, const XRichText&) = default;

    /// `format` with its values held in their ranges.
    static tagXCharFormat Hold(const tagXCharFormat& format);
    /// UTF-8 as Append keeps it.
    static std::string Clean(std::string_view utf8);

private:
    static void AppendRun(std::vector<tagRun>& runs, std::string_view text,
                          const tagXCharFormat& format);

    std::vector<tagParagraph> m_paragraphs;
    std::size_t m_bytes = 0;
    std::size_t m_parts = 1;
};
