#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XTextStyle.h"

#include <QString>

#include <vector>

/// Letters of one style in a row.
struct tagXTextSpan
{
    int length = 0; ///< UTF-16 units
    tagXTextStyle style{};
    double sizePx = 0.0; ///< of the font's em square, above 0
};

/// A part of a line that is drawn in one go: one style, one direction.
struct tagXTextPiece
{
    int start = 0; ///< UTF-16 units of the paragraph
    int length = 0;
    std::size_t span = 0;
    double left = 0.0; ///< pixels from the upper left corner of the paragraph, y down
    double top = 0.0;  ///< of a line of this font, so that all of a line share the base line
    double width = 0.0;
    double height = 0.0; ///< of a line of this font: that of XTextLayout
};

/// A paragraph of several styles, wrapped at a width.
///
/// The measures are those of fonts without hinting, so that lines break at the same places at every
/// magnification. Lines break between words, within a word that is wider than the line, at U+2028,
/// and as the scripts have it; tabs stand every 48 pixels. Scripts that run from right to left do so.
/// Only the first kMaxUnits units are laid out.
/// Threads: one at a time, any thread.
class XAPI XParagraphLayout
{
public:
    static constexpr qsizetype kMaxUnits = 1 << 17;
    static constexpr double kTabPx = 48.0;

    enum class XAlign { Left, Centre, Right, Justify };

    /// @param spans     cover the text; what is left over has the style of the last one. An empty text
    ///                  is as high as a line of the first span. At least one
    /// @param widthPx   of the lines, above 0
    /// @param maxHeight lines that begin lower are left out
    XParagraphLayout(const QString& text, const std::vector<tagXTextSpan>& spans, XAlign align,
                     double widthPx, double maxHeight);

    const std::vector<tagXTextPiece>& GetPieces() const { return m_pieces; }
    double GetHeight() const { return m_height; }
    double GetWidth() const { return m_width; } ///< of the longest line, without blanks at its end

private:
    std::vector<tagXTextPiece> m_pieces;
    double m_height = 0.0;
    double m_width = 0.0;
};
