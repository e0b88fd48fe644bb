#include "foundation/vector/XvcEllipse.h"

X_IMPLEMENT_CLASS(XvcEllipse, XvcEllipseObj)
