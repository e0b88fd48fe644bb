#pragma once

#include "view/XObjectDialogs.h"

#include <memory>

/// Whether an object is of the class that a dialog edits; all are for Object and Group.
XAPI int XfnIsObjectFor(XObjectDialog dialog, const XvcObj& object);

/// A copy to edit, in no layer. An object of a class that cannot be made anew comes as one that has
/// its attributes and nothing to draw.
XAPI std::unique_ptr<XvcObj> XfnMakeDraft(XObjectDialog dialog, const XvcObj& object);
