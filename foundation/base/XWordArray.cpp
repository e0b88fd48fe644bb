#include "foundation/base/XWordArray.h"

X_IMPLEMENT_CLASS(XWordArray, XObject)
