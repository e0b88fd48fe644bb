#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XVector3.h"

#include <vector>

/// The styles of north arrows. The numbers are stored in files and never change their meaning.
///
/// | number | style                                                                       |
/// |--------|-----------------------------------------------------------------------------|
/// | 0      | arrow with a shaft, filled; N above                                         |
/// | 1      | arrow head of two halves, fore and back colour; N above                     |
/// | 2      | compass rose of 4 points, halved; N above                                   |
/// | 3      | compass rose of 16 points in a ring; N, E, S and W around it                |
/// | 4      | disc with the letter N and a point on it                                    |
/// | 5      | ornamental: star of 8 points with the N, graduated ring, lily above         |
/// | 6      | thin survey arrow with one barb, its shaft through the N                    |
/// | 7      | compass needle in a ring, north half and south half; N above                |
/// | 8      | navigation arrow with a hollow back; N below                                |
/// | 9      | meridian line with heads at both ends and a cross bar; N and S              |
enum XNorthArrowStyle {
    kXNorthArrowPlain,
    kXNorthArrowHalves,
    kXNorthArrowRose4,
    kXNorthArrowRose16,
    kXNorthArrowDisc,
    kXNorthArrowOrnament,
    kXNorthArrowSurvey,
    kXNorthArrowNeedle,
    kXNorthArrowNavigation,
    kXNorthArrowMeridian,
    kXNorthArrowCount ///< one past the last style
};

/// The English name of a style for lists; null for one that there is not.
XAPI const char* XfnGetNorthArrowName(int style);

/// A part of a north arrow: vertices with y to the north, and what they are drawn with.
struct tagXNorthArrowPart
{
    enum class XRole {
        Stroke,  ///< a line in the line colour
        Outline, ///< the same, closed
        Fore,    ///< filled by the fill style, outlined
        Back,    ///< filled in the back colour, outlined
        Line     ///< filled in the line colour
    };
    XRole role;
    std::vector<tagXVector3> vertices;
};

/// The parts of a style, in the order to draw them, about the origin; the longer side of their
/// extent is 1 or nearly.
/// @param resolution  chords of a whole turn
/// @return nothing for a style that there is not
XAPI std::vector<tagXNorthArrowPart> XfnMakeNorthArrow(int style, int resolution);
