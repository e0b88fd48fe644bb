#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"

class XBackBuffer;
class XObList;
class XVertBuffer;

/// Records how selected objects are shown: their outline in the selection style and colour, and a
/// square of 7 pixels' span at every control location.
///
/// Objects are only read, so a point of thickness 0 is outlined at its smallest size. Control
/// locations are known for the class XvcPoint; others show their outline only.
/// @param buffer     between Start and End
/// @param selection  vector objects
/// @param target     its mapping sizes the squares
XAPI void XfnRecordSelection(XVertBuffer& buffer, const XObList& selection,
                             const XBackBuffer& target, tagXColor color);
