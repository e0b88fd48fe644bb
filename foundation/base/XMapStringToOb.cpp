#include "foundation/base/XMapStringToOb.h"

X_IMPLEMENT_CLASS(XMapStringToOb, XObject)
