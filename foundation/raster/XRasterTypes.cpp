#include "foundation/raster/XRasterTypes.h"

#include "foundation/base/XSentinels.h"

#include <cstring>

namespace {

struct tagTypeRow
{
    int size;
    const char* label;
};

constexpr tagTypeRow kTypes[] = {
    {0, ""},
    {1, "Unsigned char(1 byte)\r\n"},
    {1, "Signed char(1 byte)\r\n"},
    {2, "Unsigned short(2 bytes)\r\n"},
    {2, "Signed short(2 bytes)\r\n"},
    {4, "Unsigned long(4 bytes)\r\n"},
    {4, "Signed long(4 bytes)\r\n"},
    {4, "Float(4 bytes)\r\n"},
    {8, "Double(8 bytes)\r\n"},
    {2, "Unsigned char complex(2 bytes)\r\n"},
    {2, "Signed char complex(2 bytes)\r\n"},
    {4, "Unsigned short complex(4 bytes)\r\n"},
    {4, "Signed short complex(4 bytes)\r\n"},
    {8, "Unsigned long complex(8 bytes)\r\n"},
    {8, "Signed long complex(8 bytes)\r\n"},
    {8, "Float complex(8 bytes)\r\n"},
    {16, "Double complex(16 bytes)\r\n"},
};

const tagTypeRow& RowOf(int dataType)
{
    return kTypes[dataType >= kXUInt8 && dataType <= kXDoubleComplex ? dataType : 0];
}

} // namespace

int XfnGetDataTypeSize(int dataType)
{
    return RowOf(dataType).size;
}

const char* XfnGetDataTypeLabel(int dataType)
{
    return RowOf(dataType).label;
}

double XfnReadSample(const void* sample, int dataType)
{
    double real = kXNoData;
    double imaginary = 0.0;
    XfnReadComplexSample(sample, dataType, real, imaginary);
    return real;
}

int XfnReadComplexSample(const void* sample, int dataType, double& real, double& imaginary)
{
    real = imaginary = kXNoData;
    return XfnDispatchRealType<int>(XfnGetPartType(dataType), [&]<class T>(const T*) {
        T parts[2] = {};
        std::memcpy(parts, sample, sizeof(T) * (XfnIsComplexType(dataType) ? 2 : 1));
        real = static_cast<double>(parts[0]);
        imaginary = static_cast<double>(parts[1]);
        return 1;
    });
}
