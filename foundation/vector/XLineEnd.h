#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XVector3.h"

#include <vector>

class XVertBuffer;
class XWarp2D;
struct tagXVertLine;

/// The shape at an end of a line. The ids are stored in files.
///
/// | id | shape         | tip at the end of the line          | drawn with              |
/// |----|---------------|-------------------------------------|-------------------------|
/// | 0  | none          |                                     |                         |
/// | 1  | filled arrow  | yes                                 | filled, line colour     |
/// | 2  | open arrow    | yes                                 | two strokes             |
/// | 3  | barbed arrow  | yes, its back is notched            | filled, line colour     |
/// | 4  | diamond       | centred on the end                  | filled, line colour     |
/// | 5  | filled circle | centred on the end                  | filled, line colour     |
/// | 6  | circle        | centred on the end                  | outline                 |
/// | 7  | square        | centred on the end                  | filled, line colour     |
/// | 8  | bar           | centred on the end, across the line | one stroke              |
/// | 9  | double arrow  | yes, a second one behind the first  | filled, line colour     |
/// | 10 | slash         | centred on the end, at 45 degrees   | one stroke              |
enum XLineEndShape {
    kXLineEndNone,
    kXLineEndFilledArrow,
    kXLineEndOpenArrow,
    kXLineEndBarbedArrow,
    kXLineEndDiamond,
    kXLineEndFilledCircle,
    kXLineEndCircle,
    kXLineEndSquare,
    kXLineEndBar,
    kXLineEndDoubleArrow,
    kXLineEndSlash,
    kXLineEndCount ///< one past the last id
};

/// Length of a shape whose size is 0, in pixels.
constexpr double kXLineEndPixels = 12.0;

/// The English name of a shape for lists; null for an id that there is not.
XAPI const char* XfnGetLineEndName(int shape);

/// A part of a line end, in the coordinates of the line.
struct tagXLineEndPart
{
    std::vector<tagXVector3> vertices;
    bool isFilled; ///< a filled area; otherwise a stroke
};

/// The outline of a shape at `tip`, the line coming from `from`.
/// @param size   length of the shape along the line, and its width across, in units of the line
/// @param inset  out: how far from the tip the line itself is to end, so that it shows neither
///               before a tip nor inside an outline
/// @return nothing for shape 0, an unknown one, a size that is not above 0, or a line without
///         length
XAPI std::vector<tagXLineEndPart> XfnMakeLineEnd(int shape, const tagXVector3& from,
                                                 const tagXVector3& tip, double size,
                                                 double& inset);

/// The length of a shape in the world, from the size that was asked for: a world length; pixels when
/// negative; 0 for four times the thickness, 12 pixels at least where that is in pixels. Pixels in a
/// world whose pixel length is not known (0) are a tenth of the line. Never longer than the line.
/// @param thick  of the line, as XvcObj::SetThick
XAPI double XfnGetLineEndSize(double size, double thick, double worldPerPixel, double lineLength);

/// Records the parts, carried through `warp`, which may be null, as part of a line drawn with `line`;
/// nothing where that draws nothing.
XAPI void XfnRecordLineEnds(XVertBuffer& buffer, std::vector<tagXLineEndPart> parts,
                            const XWarp2D* warp, const tagXVertLine& line);
