#pragma once

#include "foundation/base/XApi.h"

#include <memory>
#include <vector>

class XvcObj;

/// A new object of the class of this name, null for a name that is not in the table. Threads: any.
XAPI std::unique_ptr<XvcObj> XfnNewVectorObject(const char* className);

/// A copy with all attributes, in no layer; null for null or a class that is not in the table.
XAPI std::unique_ptr<XvcObj> XfnCloneVectorObject(const XvcObj* object);

/// The names of the table, in its order.
XAPI std::vector<const char*> XfnGetVectorClassNames();
