#pragma once

#include "foundation/base/XColor.h"
#include "foundation/base/XLineStyle.h"

#include <string>
#include <string_view>

class XvcObj;

/// For the sources of this folder only: what a feature style string says of an object.
///
/// The grammar is that of GDAL's feature style specification: tools with parameters, such as
/// `PEN(c:#FF0000,w:2px);LABEL(t:"name",s:3g)`. Any bytes may be given; what is not understood is as if
/// it were not there.
struct XOgrStyle
{
    struct Label
    {
        bool isGiven = false;
        std::string text; ///< UTF-8; "{column}" stands for an attribute
        std::string font;
        double size = 0.0; ///< as a thickness
        double angleDeg = 0.0;
        int align = 0; ///< XTextAlign
        bool isBold = false;
        bool isItalic = false;
        bool isUnderlined = false;
        tagXColor color = kXOpaque;
    };

    bool hasPen = false;
    tagXColor penColor = kXOpaque;
    double penWidth = 0.0; ///< world units when positive, pixels when negative
    int penStyle = tagXLineStyle::kSolid;

    bool hasBrush = false;
    tagXColor brushFore = kXOpaque;
    tagXColor brushBack = 0;
    int brushStyle = 0; ///< tagXFillStyle

    bool hasSymbol = false;
    tagXColor symbolColor = kXOpaque;
    double symbolSize = 0.0;
    int symbolShape = -1; ///< of XvcPoint; -1 when none is like it

    Label label;

    static XOgrStyle Parse(std::string_view text);
    /// Gives an object and the members of a group their colours, pens and brushes. An area without a
    /// brush is not filled.
    void Apply(XvcObj& object) const;
};
