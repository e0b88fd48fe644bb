#pragma once

#include "foundation/base/XColor.h"
#include "foundation/base/XFillStyle.h"
#include "foundation/base/XLineStyle.h"
#include "foundation/base/XString.h"
#include "foundation/base/XTextStyle.h"
#include "foundation/base/XVector3.h"
#include "foundation/surface/XTextAlign.h"

// What recorded primitives look like. The top byte of every colour is its opacity; 0 leaves that
// part of the primitive out.

/// A line. The thickness is a world length; a negative one is pixels, 0 is one pixel. The style
/// kNone draws nothing.
struct tagXVertLine
{
    tagXColor colour = kXOpaque;
    double thick = 0.0;
    tagXLineStyle style{};
};

/// An area: the set bits of the fill pattern in the fore colour, the others in the back colour.
/// The style kNone draws nothing.
struct tagXVertFill
{
    tagXFillStyle style{};
    tagXColor foreColour = kXOpaque;
    tagXColor backColour = 0;
};

/// A point mark. The size is its width and height as a world length; a negative one is pixels,
/// 0 is 9 pixels.
struct tagXVertPoint
{
    int shape = 5; ///< XPointShape
    double size = 0.0;
    tagXColor lineColour = kXOpaque; ///< plus, cross, dot and the outline of the others
    tagXColor fillColour = 0;        ///< the inside of circle, square and triangle
};

/// A text. Line ends break it; the height is that of one line, a world length, or pixels where the
/// vertex buffer's font size flag is set when it is added.
struct tagXVertText
{
    tagXVector3 position{};
    XString text{};
    tagXTextStyle style{};
    double height = 0.0;
    double angleDeg = 0.0; ///< counterclockwise
    int align = kXTextLeft | kXTextTop;
    tagXColor colour = kXOpaque;
    tagXColor backColour = 0;   ///< behind the text's box
    tagXColor borderColour = 0; ///< a frame around the text's box, one pixel wide
    /// Of the text's box, in the unit of the height: letters are stretched or pressed to it, to
    /// double or half at most. 0: as wide as the font makes it at the size drawn, which hinting changes.
    double width = 0.0;
};
