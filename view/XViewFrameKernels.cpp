#include "view/XViewFrameKernels.h"

std::size_t XfnCountMarks(const std::uint32_t* row, std::size_t width)
{
    std::uint32_t count = 0; // a row is shorter than that
    for (std::size_t x = 0; x < width; ++x)
        count += (row[x] & 0x00FFFFFFu) != 0 ? 1u : 0u;
    return count;
}
