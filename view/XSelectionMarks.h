#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"

class XBackBuffer;
class XObList;
class XVertBuffer;
class XvcObj;
class XvcPolygon;
class XvcTextBox;
struct tagXVector3;

/// Makes of `polygon` the square that marks a control location: 3 pixels to each side, at height 0.
/// @param target  its mapping tells how large a pixel is
XAPI void XfnMakeCtrlPoint(const tagXVector3& at, const XBackBuffer& target, XvcPolygon& polygon);

/// Tells a text box where its editor lies: over its range. One without a range stays as it is.
XAPI void XfnPlaceTextEditor(XvcTextBox& box, const XBackBuffer& target);

/// Records the object under construction, as it looks. Black is no mark on an overlay, so what is
/// black in it is recorded in the nearest colour to it; the same holds for marks of selections.
/// @param buffer  between Start and End
XAPI void XfnRecordCurrent(XVertBuffer& buffer, XvcObj& object);

/// Records how selected objects are shown: their outline in the selection style and colour, one
/// pixel wide and without a fill, and a square of 7 pixels' span at every control location.
///
/// Pictures, raster patches, texts and text boxes are outlined by their range, never shown twice:
/// letters laid over themselves could not be told from the ground. The same holds in groups. Which locations an object has is told by its exact class:
///
///     point, symbol                    the vertex
///     multi-point                      each point
///     polygon, polyline                each vertex; of multi ones those of each part
///     line                             both ends; of a multi-line those of each line
///     ellipse, arc                     the centre, and the centre plus either axis length
///     B-spline                         each pole
///     text, bitmap, raster, group      the corners of the range; of a multi-text those of each text
///     rectangle, north arrow, scale bar  the corners of the box from its lower left to its upper
///                                      right one
///     text box, balloon                the corners of the range; the pointer position of a balloon
///
/// Other classes show their outline only. Locations that are no coordinates are left out. Objects
/// are only read, but for this: text boxes and balloons are told where their editor lies
/// (SetEditBound).
/// @param buffer     between Start and End
/// @param selection  vector objects
/// @param target     its mapping sizes the squares and places the editors
XAPI void XfnRecordSelection(XVertBuffer& buffer, const XObList& selection,
                             const XBackBuffer& target, tagXColor color);
/// The same coarsely, for very many: each object by the outline of its range alone, a smaller one than
/// 4 pixels by a square; and of those whose middles lie within the same 4 by 4 pixels one.
XAPI void XfnRecordManySelected(XVertBuffer& buffer, const XObList& selection,
                                const XBackBuffer& target, tagXColor color);
