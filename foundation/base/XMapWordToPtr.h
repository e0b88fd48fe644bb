#pragma once

#include "foundation/base/XMap.h"

#include <cstdint>

/// From 16-bit word to pointer. See XMap.
class XAPI XMapWordToPtr : public XMap<std::uint16_t, std::uint16_t, void*, void*>
{
    X_DECLARE_CLASS(XMapWordToPtr)
public:
    explicit XMapWordToPtr(int blockSize = 10) : XMap(blockSize) {}
};
