#include "foundation/vector/XRichTextFlow.h"

#include "foundation/base/XCodePage.h"
#include "foundation/platform/XQtText.h"
#include "foundation/surface/XParagraphLayout.h"
#include "foundation/vector/XRichText.h"

#include <algorithm>

namespace {

using XAlign = XParagraphLayout::XAlign;

constexpr std::size_t kMaxShownBytes = 1 << 20; // far more than anybody reads in a box
constexpr std::size_t kParagraphBytes = 16;     // that an empty one counts for

XAlign ToLayout(XParagraphAlign align)
{
    switch (align) {
    case XParagraphAlign::Centre:
        return XAlign::Centre;
    case XParagraphAlign::Right:
        return XAlign::Right;
    case XParagraphAlign::Justify:
        return XAlign::Justify;
    default:
        return XAlign::Left;
    }
}

tagXTextSpan MakeSpan(const tagXCharFormat& format, const tagXTextStyle& base, qsizetype length)
{
    return {static_cast<int>(length), XfnGetTextStyle(format, base),
            format.halfPoints / 2.0 * XRichTextFlow::kPixelsPerPoint};
}

} // namespace

tagXTextStyle XfnGetTextStyle(const tagXCharFormat& format, const tagXTextStyle& base)
{
    tagXTextStyle style = base;
    if (!format.face.empty()) {
        style.font.SetFaceName(XfnTextFromUtf8(XString(std::string_view(format.face))));
    }
    style.font.weight = format.isBold ? 700 : 400;
    style.font.italic = format.isItalic ? 1 : 0;
    style.font.underline = format.isUnderline ? 1 : 0;
    style.font.strikeOut = format.isStrikeOut ? 1 : 0;
    return style;
}

XRichTextFlow::XRichTextFlow(const XRichText& text, const tagXTextStyle& base, double widthPx,
                             double maxHeight)
{
    std::size_t bytes = 0;
    for (const XRichText::tagParagraph& paragraph : text.GetParagraphs()) {
        if (height > maxHeight || bytes > kMaxShownBytes) break;
        bytes += kParagraphBytes;
        QString letters;
        std::vector<tagXTextSpan> spans;
        std::vector<tagXColor> colours;
        for (const XRichText::tagRun& run : paragraph.runs) {
            const QString part =
                QString::fromUtf8(run.text.data(), static_cast<int>(run.text.size()));
            spans.push_back(MakeSpan(run.format, base, part.size()));
            colours.push_back(run.format.colour);
            letters += part;
            bytes += run.text.size();
            if (letters.size() > XParagraphLayout::kMaxUnits) break;
        }
        if (spans.empty()) spans.push_back(MakeSpan(paragraph.endFormat, base, 0));
        const XParagraphLayout layout(letters, spans, ToLayout(paragraph.align), widthPx,
                                      maxHeight - height);
        for (const tagXTextPiece& piece : layout.GetPieces()) {
            pieces.push_back({XfnFromQString(letters.mid(piece.start, piece.length)),
                              spans[piece.span].style, colours[piece.span], piece.left,
                              height + piece.top, piece.width, piece.height});
        }
        height += layout.GetHeight();
        width = std::max(width, layout.GetWidth());
    }
}
