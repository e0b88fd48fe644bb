#include "foundation/base/XMapPtrToWord.h"

X_IMPLEMENT_CLASS(XMapPtrToWord, XObject)
