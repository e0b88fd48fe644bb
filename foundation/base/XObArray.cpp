#include "foundation/base/XObArray.h"

X_IMPLEMENT_CLASS(XObArray, XObject)
