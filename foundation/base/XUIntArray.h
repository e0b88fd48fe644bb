#pragma once

#include "foundation/base/XArray.h"

/// A growable array of unsigned integers. See XArray.
class XAPI XUIntArray : public XArray<unsigned int, unsigned int>
{
    X_DECLARE_CLASS(XUIntArray)
};
