#include "foundation/base/XMapWordToPtr.h"

X_IMPLEMENT_CLASS(XMapWordToPtr, XObject)
