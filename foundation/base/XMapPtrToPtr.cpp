#include "foundation/base/XMapPtrToPtr.h"

X_IMPLEMENT_CLASS(XMapPtrToPtr, XObject)
