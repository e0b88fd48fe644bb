#pragma once

#include "foundation/base/XArray.h"

/// A growable array of objects that it does not own. See XArray.
class XAPI XObArray : public XArray<XObject*, XObject*>
{
    X_DECLARE_CLASS(XObArray)
};
