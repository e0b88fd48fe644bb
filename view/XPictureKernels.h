#pragma once

#include <cstddef>
#include <cstdint>

/// to[i] = from[columns[i]]; the columns lie within the row, which nobody checks.
void XfnGatherRow(const std::uint32_t* from, const int* columns, std::size_t count,
                  std::uint32_t* to);
