#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"
#include "foundation/base/XVector3.h"

#include <vector>

class XSpatialReference;
struct XMarkFont;

/// A label of a scale bar: where on the bar it stands and where its text begins, both from the left
/// end of the rectangle's lower side.
struct tagXScaleLabel
{
    double at;
    double textLeft;
    XString text;
};

/// How a scale bar lies in its rectangle; lengths are those of the world along the sides.
struct XAPI tagXScaleBarLayout
{
    double length = 0.0;   ///< of the whole bar, in `unit`: 1, 2 or 5 times a power of ten
    double division = 0.0; ///< of one part: 1, 2 or 5 times a power of ten too
    int divisions = 0;     ///< 2, 4 or 5; 1 where there is only room for the ends; 0: no bar fits
    XString unit;          ///< "km", "m", "mi", "ft", "px", "units" or the name of the unit
    double left = 0.0, right = 0.0; ///< of the bar, along the lower side
    double bottom = 0.0, top = 0.0; ///< of the bar, along the left side
    double fontHeight = 0.0;        ///< of the labels; 0 when there is no room for any
    double textBottom = 0.0;        ///< of the labels, along the left side
    std::vector<tagXScaleLabel> labels;
};

/// What a bar is to be fitted into.
struct tagXScaleBarFrame
{
    tagXVector3 origin;         ///< the lower left corner
    tagXVector3 alongX, alongY; ///< unit vectors of the lower and the left side
    double width = 0.0, height = 0.0;
    double fontHeight = 0.0;  ///< wanted; what does not fit is made smaller
    int align = 0;            ///< XTextAlign, as XvcScaleBar::SetTextAlign
    bool hasDivisions = true; ///< otherwise the bar is one part with one label in its middle
};

/// Fits the longest bar of a round length with labels that do not run into each other.
///
/// Length: on map references that are geographic that of the shortest line on their ellipsoid
/// between the ends of the bar (XGeodesy), in metres, or kilometres from 1000 m on; on projected ones
/// plane length in their unit, where metres become kilometres from 1000 and feet become miles from
/// 5280. Elsewhere coordinates: "px" for pixel coordinates, else "units".
/// @return divisions 0 for a frame without area, with a number that is none, off the globe or whose
///         lengths are beyond what numbers hold
XAPI tagXScaleBarLayout XfnLayoutScaleBar(const tagXScaleBarFrame& frame, const XMarkFont& font,
                                          const XSpatialReference& reference);
