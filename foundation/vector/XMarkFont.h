#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"
#include "foundation/base/XString.h"
#include "foundation/base/XTextStyle.h"

class XArchive;
class XSpatialReference;
class XVertBuffer;
class XWarp2D;
struct tagXVertText;

/// The letters of a mark: size, style and colour of its texts.
///
/// The size is the height of a line: a world length when positive, pixels when negative. What pixels
/// are in the world is known to marks that were told the world length of a pixel.
struct XAPI XMarkFont
{
    static constexpr double kFirstPixels = 14.0;

    double size = -kFirstPixels;
    tagXColor colour = 0; ///< 0: the line colour of the mark
    tagXTextStyle style{};

    void SetSize(double height); ///< 0 or no number: ignored
    void Scale(double factor) { SetSize(size > 0.0 ? size * factor : size); } ///< a world length
    /// World length of a line's height, 0 when it is not known.
    double GetHeight(double worldPerPixel) const;
    /// How wide a text is in heights of a line; that of the widest line. Good to a twelfth: fonts
    /// are hinted at the size they are drawn in.
    double GetWidth(const XString& text) const;

    /// Records a text in this font. Position, text, alignment and angle are those of `text`; the
    /// position is carried through `warp`, which may be null, and so are a height in world units
    /// and the angle.
    void Record(XVertBuffer& buffer, const tagXVertText& text, const XWarp2D* warp,
                tagXColor lineColour) const;

    /// The same with letters that are this high in the world, whatever the size and the recording's
    /// font size flag say.
    void RecordInWorld(XVertBuffer& buffer, const tagXVertText& text, double height,
                       const XWarp2D* warp, tagXColor lineColour) const;

    void Store(XArchive& archive) const;
    void Load(XArchive& archive); ///< throws XFileException; then nothing has changed
};

/// A text style as it lies in archives.
XAPI void XfnStoreTextStyle(XArchive& archive, const tagXTextStyle& style);
XAPI tagXTextStyle XfnLoadTextStyle(XArchive& archive);

/// A reference as it lies in archives: its well-known text and the coordinate type. Loading throws
/// XFileException on a text that is no reference.
XAPI void XfnStoreReference(XArchive& archive, const XSpatialReference& reference);
XAPI XSpatialReference XfnLoadReference(XArchive& archive);
