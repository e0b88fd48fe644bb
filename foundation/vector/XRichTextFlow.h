#pragma once

#include "foundation/base/XColor.h"
#include "foundation/base/XString.h"
#include "foundation/base/XTextStyle.h"

#include <vector>

class XRichText;
struct tagXCharFormat;

/// A rich text laid out in a column: the pieces of its lines, ready to be recorded.
///
/// Lengths are pixels of 96 to the inch from the upper left corner of the column, y down.
/// Threads: any, one object one thread.
struct XAPI XRichTextFlow
{
    struct tagPiece
    {
        XString text;
        tagXTextStyle style;
        tagXColor colour = 0; ///< 0: that of whatever shows the text
        double left = 0.0, top = 0.0, width = 0.0, height = 0.0;
    };

    static constexpr double kPixelsPerPoint = 96.0 / 72.0;

    /// @param base       the face of letters without one
    /// @param widthPx    of the column, above 0
    /// @param maxHeight  lines that begin lower are left out
    XRichTextFlow(const XRichText& text, const tagXTextStyle& base, double widthPx,
                  double maxHeight);

    std::vector<tagPiece> pieces;
    double width = 0.0; ///< of the longest line
    double height = 0.0;
};

/// The style of letters of a format.
XAPI tagXTextStyle XfnGetTextStyle(const tagXCharFormat& format, const tagXTextStyle& base);
