#pragma once

#include "foundation/base/XArray.h"

/// A growable array of untyped pointers. See XArray.
class XAPI XPtrArray : public XArray<void*, void*>
{
    X_DECLARE_CLASS(XPtrArray)
};
