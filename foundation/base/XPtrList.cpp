#include "foundation/base/XPtrList.h"

X_IMPLEMENT_CLASS(XPtrList, XObject)
