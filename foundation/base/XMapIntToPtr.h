#pragma once

#include "foundation/base/XMap.h"

/// From integer to pointer. See XMap.
class XAPI XMapIntToPtr : public XMap<int, int, void*, void*>
{
    X_DECLARE_CLASS(XMapIntToPtr)
public:
    explicit XMapIntToPtr(int blockSize = 10) : XMap(blockSize) {}
};
