#include "foundation/base/XStringArray.h"

X_IMPLEMENT_CLASS(XStringArray, XObject)
