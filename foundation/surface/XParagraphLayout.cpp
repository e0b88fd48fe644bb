#include "foundation/surface/XParagraphLayout.h"

#include "foundation/surface/XFont.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QRawFont>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr double kMeasuredPx = 256.0; // em of the largest font: fine steps, yet cheap to measure
constexpr double kMaxMagnified = 1e7; // of a length, in what the toolkit's lines can hold
constexpr double kMaxSizePx = 20000.0;

struct tagFont
{
    QFont font;
    double ascent = 0.0;
    double height = 0.0;
    bool hasLine = false; // blanks show
};

Qt::Alignment ToQt(XParagraphLayout::XAlign align)
{
    switch (align) {
    case XParagraphLayout::XAlign::Centre:
        return Qt::AlignHCenter;
    case XParagraphLayout::XAlign::Right:
        return Qt::AlignRight | Qt::AlignAbsolute;
    case XParagraphLayout::XAlign::Justify:
        return Qt::AlignJustify;
    default:
        return Qt::AlignLeft | Qt::AlignAbsolute;
    }
}

enum class XReading { Forward, Backward, Neutral };

XReading GetReading(QChar ch)
{
    switch (ch.direction()) {
    case QChar::DirR:
    case QChar::DirAL:
        return XReading::Backward;
    case QChar::DirL:
    case QChar::DirEN:
    case QChar::DirAN:
        return XReading::Forward;
    case QChar::DirNSM: // goes with its letter
        return ch.script() == QChar::Script_Hebrew || ch.script() == QChar::Script_Arabic
                   ? XReading::Backward
                   : XReading::Forward;
    default:
        return ch.isSurrogate() ? XReading::Forward : XReading::Neutral;
    }
}

bool HasBackward(const QString& text)
{
    return std::ranges::any_of(text, [](QChar ch) { return GetReading(ch) == XReading::Backward; });
}

// The left and right of letters in a line. Where directions meet, a cursor has two places; glyphs
// have one.
std::pair<double, double> GetExtent(const QTextLine& line, int at, int length, bool isMixed)
{
    if (!isMixed) {
        return {line.cursorToX(at, QTextLine::Leading),
                line.cursorToX(at + length - 1, QTextLine::Trailing)};
    }
    double left = std::numeric_limits<double>::infinity(), right = -left;
    const QList<QGlyphRun> runs = line.glyphRuns(at, length);
    for (const QGlyphRun& run : runs) {
        const QList<QPointF> places = run.positions();
        const QList<QPointF> steps = run.rawFont().advancesForGlyphIndexes(run.glyphIndexes());
        for (qsizetype i = 0; i < std::min(places.size(), steps.size()); ++i) {
            left = std::min(left, places[i].x());
            right = std::max(right, places[i].x() + steps[i].x());
        }
    }
    return left < right ? std::pair(left, right) : std::pair(0.0, 0.0);
}

bool IsBlank(QChar ch)
{
    return ch == u' ' || ch == u'\t' || ch == QChar(QChar::LineSeparator);
}

} // namespace

XParagraphLayout::XParagraphLayout(const QString& text, const std::vector<tagXTextSpan>& spans,
                                   XAlign align, double widthPx, double maxHeight)
{
    const QString shown = text.left(kMaxUnits);
    const int length = static_cast<int>(shown.size());
    double largest = 1.0;
    for (const tagXTextSpan& span : spans)
        largest = std::max(largest, std::min(span.sizePx, kMaxSizePx));
    const double scale = std::max(kMeasuredPx / largest, 1.0);
    const auto magnify = [&](double size) { return std::min(size * scale, kMaxMagnified); };

    std::vector<tagFont> fonts;
    QList<QTextLayout::FormatRange> formats;
    std::vector<int> ends;
    int start = 0;
    for (const tagXTextSpan& span : spans) {
        tagFont entry;
        entry.font = XfnGetFont(span.style);
        entry.font.setHintingPreference(QFont::PreferNoHinting);
        entry.font.setPixelSize(
            std::max(1, static_cast<int>(std::lround(magnify(std::min(span.sizePx, kMaxSizePx))))));
        const QFontMetricsF metrics(entry.font);
        entry.ascent = metrics.ascent();
        entry.height = std::max(metrics.height(), 1.0);
        entry.hasLine = span.style.font.underline || span.style.font.strikeOut;
        QTextLayout::FormatRange range;
        range.start = start;
        range.length = std::min(span.length, length - start);
        range.format.setFont(entry.font);
        if (range.length > 0) formats.push_back(range);
        start += std::max(range.length, 0);
        ends.push_back(start);
        fonts.push_back(std::move(entry));
    }
    ends.back() = length;
    if (length == 0) {
        m_height = fonts.front().height / scale;
        return;
    }

    QTextOption option(ToQt(align));
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(shown.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    option.setTabStopDistance(kTabPx * scale);
    QTextLayout layout(shown, fonts.front().font);
    layout.setTextOption(option);
    layout.setFormats(formats);
    const double lineWidth = std::max(magnify(widthPx), 1.0);
    const bool isJustified = align == XAlign::Justify;
    const bool isMixed = HasBackward(shown);
    // of what is drawn in one go no part may be stretched alone or turn about
    const auto belong = [&](QChar a, QChar b) {
        if (a == u'\t' || b == u'\t') return false;
        if (isJustified && IsBlank(a) != IsBlank(b)) return false;
        return !isMixed || GetReading(a) == GetReading(b);
    };
    double y = 0.0;
    std::size_t span = 0;
    layout.beginLayout();
    while (y <= maxHeight * scale) {
        QTextLine line = layout.createLine();
        if (!line.isValid()) break;
        line.setLineWidth(lineWidth);
        const int begin = line.textStart();
        int end = begin + line.textLength();
        while (end > begin && IsBlank(shown[end - 1]) && (end < length || shown[end - 1] != u' '))
            --end; // blanks where a line was broken do not show
        m_width = std::max(m_width, line.naturalTextWidth() / scale);
        for (int at = begin; at < end;) {
            while (span + 1 < ends.size() && at >= ends[span])
                ++span;
            const tagFont& font = fonts[span];
            const int stop = std::min(end, ends[span]);
            int next = at + 1;
            while (next < stop && belong(shown[next - 1], shown[next]))
                ++next;
            const QStringView part = QStringView(shown).mid(at, next - at);
            const bool shows = font.hasLine || !std::ranges::all_of(part, IsBlank);
            const auto [left, right] = GetExtent(line, at, next - at, isMixed);
            if (shows && shown[at] != u'\t' && left < right) {
                m_pieces.push_back({at, next - at, span, left / scale,
                                    (y + line.ascent() - font.ascent) / scale,
                                    (right - left) / scale, font.height / scale});
            }
            at = next;
        }
        y += line.height();
    }
    layout.endLayout();
    m_height = y / scale;
}
