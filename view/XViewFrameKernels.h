#pragma once

#include <cstddef>
#include <cstdint>

/// Pixels of a row whose colour, the top byte left out, is not zero.
std::size_t XfnCountMarks(const std::uint32_t* row, std::size_t width);
