#pragma once

#include "foundation/base/XArray.h"

#include <cstdint>

/// A growable array of 16-bit words. See XArray.
class XAPI XWordArray : public XArray<std::uint16_t, std::uint16_t>
{
    X_DECLARE_CLASS(XWordArray)
};
