#include "foundation/base/XMapWordToOb.h"

X_IMPLEMENT_CLASS(XMapWordToOb, XObject)
