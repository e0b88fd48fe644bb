#include "view/XRichDocument.h"

#include "foundation/surface/XQtColor.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// Calls `visit(begin, end, format)` for each stretch of one format in [begin, end).
template <class Visit>
void VisitStretches(const QTextDocument& document, int begin, int end, Visit visit)
{
    for (QTextBlock block = document.findBlock(begin); block.isValid() && block.position() < end;
         block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment part = it.fragment();
            const int from = std::max(part.position(), begin);
            const int to = std::min(part.position() + part.length(), end);
            if (from < to) visit(from, to, part.charFormat());
        }
    }
}

} // namespace

int XfnToQtAlign(XParagraphAlign align)
{
    switch (align) {
    case XParagraphAlign::Centre:
        return Qt::AlignHCenter;
    case XParagraphAlign::Right:
        return Qt::AlignRight | Qt::AlignAbsolute;
    case XParagraphAlign::Justify:
        return Qt::AlignJustify;
    default:
        return Qt::AlignLeft | Qt::AlignAbsolute;
    }
}

XParagraphAlign XfnFromQtAlign(int alignment)
{
    if (alignment & Qt::AlignHCenter) return XParagraphAlign::Centre;
    if (alignment & Qt::AlignRight) return XParagraphAlign::Right;
    if (alignment & Qt::AlignJustify) return XParagraphAlign::Justify;
    return XParagraphAlign::Left;
}

QTextCharFormat XfnToQtFormat(const tagXCharFormat& format)
{
    QTextCharFormat made;
    if (!format.face.empty()) {
        made.setFontFamilies(
            {QString::fromUtf8(format.face.data(), static_cast<qsizetype>(format.face.size()))});
    }
    made.setFontPointSize(format.halfPoints / 2.0);
    made.setFontWeight(format.isBold ? QFont::Bold : QFont::Normal);
    made.setFontItalic(format.isItalic);
    made.setFontUnderline(format.isUnderline);
    made.setFontStrikeOut(format.isStrikeOut);
    made.setFontHintingPreference(QFont::PreferNoHinting); // as text boxes are laid out
    if (format.colour) made.setForeground(XfnToQColor(format.colour));
    return made;
}

tagXCharFormat XfnFromQtFormat(const QTextCharFormat& format)
{
    tagXCharFormat made;
    const QStringList families = format.fontFamilies().toStringList();
    if (!families.isEmpty()) made.face = families.front().toStdString();
    const double points = format.fontPointSize();
    if (points > 0.0) made.halfPoints = static_cast<int>(std::lround(std::min(points, 1e4) * 2.0));
    made.isBold = format.fontWeight() >= QFont::DemiBold;
    made.isItalic = format.fontItalic();
    made.isUnderline = format.fontUnderline();
    made.isStrikeOut = format.fontStrikeOut();
    if (format.hasProperty(QTextFormat::ForegroundBrush)) {
        made.colour = XfnFromQRgb(format.foreground().color().rgb());
    }
    return XRichText::Hold(made);
}

void XfnInsertRichText(QTextCursor& cursor, const XRichText& text)
{
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    bool isFirst = true;
    for (const XRichText::tagParagraph& paragraph : text.GetParagraphs()) {
        QTextBlockFormat place;
        place.setAlignment(Qt::Alignment(XfnToQtAlign(paragraph.align)));
        const QTextCharFormat end = XfnToQtFormat(paragraph.endFormat);
        if (isFirst) {
            cursor.setBlockFormat(place);
            cursor.setBlockCharFormat(end);
        } else {
            cursor.insertBlock(place, end);
        }
        isFirst = false;
        for (const XRichText::tagRun& run : paragraph.runs) {
            cursor.insertText(
                QString::fromUtf8(run.text.data(), static_cast<qsizetype>(run.text.size())),
                XfnToQtFormat(run.format));
        }
        if (paragraph.runs.empty()) cursor.setCharFormat(end);
    }
    cursor.endEditBlock();
}

XRichText XfnGetRichText(const QTextDocument& document)
{
    XRichText text;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            QString letters = it.fragment().text();
            letters.remove(QChar(QChar::ObjectReplacementCharacter));
            const QByteArray utf8 = letters.toUtf8();
            text.Append(std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size())),
                        XfnFromQtFormat(it.fragment().charFormat()));
        }
        const XParagraphAlign align =
            XfnFromQtAlign(static_cast<int>(block.blockFormat().alignment()));
        const tagXCharFormat end = XfnFromQtFormat(block.charFormat());
        if (!block.next().isValid()) {
            text.EndLast(align, end);
        } else if (!text.BreakParagraph(align, end)) {
            break;
        }
    }
    return text;
}

void XfnFormatSelection(QTextCursor cursor, const tagXCharFormat& format, unsigned mask)
{
    struct tagStretch
    {
        int begin, end;
        QTextCharFormat format;
    };
    std::vector<tagStretch> stretches; // setting one may join it with its neighbour
    VisitStretches(*cursor.document(), cursor.selectionStart(), cursor.selectionEnd(),
                   [&](int begin, int end, const QTextCharFormat& before) {
                       tagXCharFormat merged = XfnFromQtFormat(before);
                       merged.Merge(format, mask);
                       stretches.push_back({begin, end, XfnToQtFormat(merged)});
                   });
    const int first = cursor.selectionStart(), last = cursor.selectionEnd();
    cursor.beginEditBlock();
    for (const tagStretch& stretch : stretches) {
        cursor.setPosition(stretch.begin);
        cursor.setPosition(stretch.end, QTextCursor::KeepAnchor);
        cursor.setCharFormat(stretch.format);
    }
    for (QTextBlock block = cursor.document()->findBlock(first);
         block.isValid() && block.position() + block.length() - 1 <= last; block = block.next()) {
        if (block.position() < first) continue; // its end belongs to letters that stay
        tagXCharFormat merged = XfnFromQtFormat(block.charFormat());
        merged.Merge(format, mask);
        cursor.setPosition(block.position());
        cursor.setBlockCharFormat(XfnToQtFormat(merged));
    }
    cursor.endEditBlock();
}

tagXCharFormat XfnGetSelectionFormat(const QTextCursor& cursor, unsigned& common)
{
    tagXCharFormat first = XfnFromQtFormat(cursor.charFormat());
    bool isFirst = true;
    common = tagXCharFormat::kAll;
    VisitStretches(*cursor.document(), cursor.selectionStart(), cursor.selectionEnd(),
                   [&](int, int, const QTextCharFormat& part) {
                       const tagXCharFormat next = XfnFromQtFormat(part);
                       if (isFirst) first = next;
                       isFirst = false;
                       common &= first.Compare(next);
                   });
    return first;
}
