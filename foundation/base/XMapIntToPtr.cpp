#include "foundation/base/XMapIntToPtr.h"

X_IMPLEMENT_CLASS(XMapIntToPtr, XObject)
