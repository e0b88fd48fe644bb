#include "foundation/base/XPtrArray.h"

X_IMPLEMENT_CLASS(XPtrArray, XObject)
