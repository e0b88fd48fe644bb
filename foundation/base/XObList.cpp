#include "foundation/base/XObList.h"

X_IMPLEMENT_CLASS(XObList, XObject)
