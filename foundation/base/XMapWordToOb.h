#pragma once

#include "foundation/base/XMap.h"

#include <cstdint>

/// From 16-bit word to an object that it does not own. See XMap.
class XAPI XMapWordToOb : public XMap<std::uint16_t, std::uint16_t, XObject*, XObject*>
{
    X_DECLARE_CLASS(XMapWordToOb)
public:
    explicit XMapWordToOb(int blockSize = 10) : XMap(blockSize) {}
};
