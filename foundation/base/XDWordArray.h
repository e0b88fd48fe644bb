#pragma once

#include "foundation/base/XArray.h"

#include <cstdint>

/// A growable array of 32-bit words. See XArray.
class XAPI XDWordArray : public XArray<std::uint32_t, std::uint32_t>
{
    X_DECLARE_CLASS(XDWordArray)
};
