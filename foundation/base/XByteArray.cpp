#include "foundation/base/XByteArray.h"

X_IMPLEMENT_CLASS(XByteArray, XObject)
