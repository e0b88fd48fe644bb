#pragma once

#include "foundation/base/XApi.h"

#include <cstddef>
#include <cstdint>

/// The data type codes of a band. The numbers are stored in projects and shown in reports.
enum XDataType : int {
    kXTypeNone = 0,
    kXUInt8 = 1,
    kXInt8 = 2,
    kXUInt16 = 3,
    kXInt16 = 4,
    kXUInt32 = 5,
    kXInt32 = 6,
    kXFloat = 7,
    kXDouble = 8,
    kXUInt8Complex = 9,
    kXInt8Complex = 10,
    kXUInt16Complex = 11,
    kXInt16Complex = 12,
    kXUInt32Complex = 13,
    kXInt32Complex = 14,
    kXFloatComplex = 15,
    kXDoubleComplex = 16
};

/// Bytes of one sample; 0 for a code that is none. A complex sample is its real part followed by
/// its imaginary part.
XAPI int XfnGetDataTypeSize(int dataType);

/// The label of the file information report with its line end, "Float(4 bytes)\r\n"; empty for a
/// code that is none.
XAPI const char* XfnGetDataTypeLabel(int dataType);

/// 1 for the codes 1 to 8.
constexpr int XfnIsRealType(int dataType)
{
    return dataType >= kXUInt8 && dataType <= kXDouble ? 1 : 0;
}

/// 1 for the codes 9 to 16.
constexpr int XfnIsComplexType(int dataType)
{
    return dataType >= kXUInt8Complex && dataType <= kXDoubleComplex ? 1 : 0;
}

/// The type of the parts of a complex type; a real type itself.
constexpr int XfnGetPartType(int dataType)
{
    return XfnIsComplexType(dataType) ? dataType - 8 : dataType;
}

/// One sample as a double; `sample` needs no alignment. A complex sample gives its real part, a
/// code that is none gives kXNoData.
XAPI double XfnReadSample(const void* sample, int dataType);

/// Both parts of a sample; the imaginary part of a real one is 0.
/// @return 0 for a code that is none; then both are kXNoData.
XAPI int XfnReadComplexSample(const void* sample, int dataType, double& real, double& imaginary);

/// Calls `f` with a null pointer of the C++ type of a real data type code, so that a template is
/// chosen once and not for every pixel. @return what `f` returns; R() for a code that is not real.
template <class R, class F>
R XfnDispatchRealType(int dataType, F&& f)
{
    switch (dataType) {
    case kXUInt8:
        return f(static_cast<const std::uint8_t*>(nullptr));
    case kXInt8:
        return f(static_cast<const std::int8_t*>(nullptr));
    case kXUInt16:
        return f(static_cast<const std::uint16_t*>(nullptr));
    case kXInt16:
        return f(static_cast<const std::int16_t*>(nullptr));
    case kXUInt32:
        return f(static_cast<const std::uint32_t*>(nullptr));
    case kXInt32:
        return f(static_cast<const std::int32_t*>(nullptr));
    case kXFloat:
        return f(static_cast<const float*>(nullptr));
    case kXDouble:
        return f(static_cast<const double*>(nullptr));
    default:
        return R();
    }
}
