#pragma once

#include "foundation/base/XMap.h"

#include <cstdint>

/// From pointer to 16-bit word. See XMap.
class XAPI XMapPtrToWord : public XMap<void*, void*, std::uint16_t, std::uint16_t>
{
    X_DECLARE_CLASS(XMapPtrToWord)
public:
    explicit XMapPtrToWord(int blockSize = 10) : XMap(blockSize) {}
};
