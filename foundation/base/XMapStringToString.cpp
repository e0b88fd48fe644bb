#include "foundation/base/XMapStringToString.h"

X_IMPLEMENT_CLASS(XMapStringToString, XObject)
