#include "foundation/base/XMapStringToPtr.h"

X_IMPLEMENT_CLASS(XMapStringToPtr, XObject)
