#include "foundation/base/XUIntArray.h"

X_IMPLEMENT_CLASS(XUIntArray, XObject)
