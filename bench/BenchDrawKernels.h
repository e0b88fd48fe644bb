#pragma once

#include <cstddef>
#include <cstdint>

// The straightforward loops that drawing is measured against.

void XfnPlainRgb8(const std::uint8_t* const src[3], const std::uint8_t* const tables[3],
                  std::size_t count, std::uint32_t* out);
void XfnPlainRgb16(const std::uint16_t* const src[3], const std::uint8_t* const tables[3],
                   std::size_t count, std::uint32_t* out);
/// Cut range, table, gray word; NaN becomes 0.
void XfnPlainGrayFloat(const float* src, float low, float scale, const std::uint8_t* table,
                       std::size_t count, std::uint32_t* out);
