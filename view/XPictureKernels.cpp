#include "view/XPictureKernels.h"

void XfnGatherRow(const std::uint32_t* from, const int* columns, std::size_t count,
                  std::uint32_t* to)
{
    for (std::size_t i = 0; i < count; ++i)
        to[i] = from[columns[i]];
}
