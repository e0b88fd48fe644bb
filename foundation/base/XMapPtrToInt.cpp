#include "foundation/base/XMapPtrToInt.h"

X_IMPLEMENT_CLASS(XMapPtrToInt, XObject)
