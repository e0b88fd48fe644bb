#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"
#include "foundation/base/XVector3.h"
#include "foundation/vector/XVectorRange.h"

#include <cstdint>
#include <vector>

class XVertBuffer;
class XWarp2D;
struct XVectorPaint;

/// What a symbol looks like: parts within a square of -50 to 50 on both axes, y upwards, told by a
/// text.
///
/// The text is a list of parts with ';' between them; a part is a role, a shape and numbers:
///
/// | role | drawn as                                              |
/// |------|-------------------------------------------------------|
/// | s    | stroke in the line colour                             |
/// | f    | filled by the fill style, outlined in the line colour |
/// | b    | filled in the back colour, outlined                   |
/// | k    | filled in the line colour                             |
///
/// | shape | numbers                                                             |
/// |-------|---------------------------------------------------------------------|
/// | L     | x y of two or more vertices of an open line                         |
/// | P     | x y of three or more vertices of a ring                             |
/// | C     | x y radius, of a circle                                             |
/// | E     | x y radius on x, radius on y, of an ellipse                         |
/// | A     | x y radius, begin and sweep in degrees, counter-clockwise, of an arc|
///
/// "bC 0 0 45;sL -45 0 45 0" is a disc with a bar. Blanks or commas stand between numbers.
/// Parts are drawn in their order. A value; reading from any thread.
class XAPI XSymbolOutline
{
public:
    static constexpr double kHalfSide = 50.0;
    static constexpr int kMaxTextLength = 65536;

    /// @return 0 with a sentence in `error` for a text that is not of this form, longer than
    ///         kMaxTextLength, or with a number beyond a thousand; then nothing has changed
    int Set(const XString& text, XString& error);
    const XString& GetText() const { return m_text; }
    int IsEmpty() const { return m_parts.empty() ? 1 : 0; }

    /// Records the parts: vertices divided by 100, so that the square has a side of 1, then through
    /// `place`, then through `warp`, which may be null.
    void Record(XVertBuffer* buffer, const XWarp2D& place, const XWarp2D* warp,
                const XVectorPaint& paint) const;

    /// The extent, in units of the square's side.
    const tagXVectorRange& GetRange() const { return m_range; }

private:
    struct tagPart
    {
        char role;
        bool isClosed;
        std::uint32_t first;
        std::uint32_t count;
    };

    XString m_text;
    std::vector<tagPart> m_parts;
    std::vector<tagXVector3> m_vertices; // sides of 1; curves as chords
    tagXVectorRange m_range;
};
