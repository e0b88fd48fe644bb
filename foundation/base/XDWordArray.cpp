#include "foundation/base/XDWordArray.h"

X_IMPLEMENT_CLASS(XDWordArray, XObject)
