#pragma once

#include <cstddef>
#include <cstdint>

/// The plain pass: for each sample one increment of a table of 256 entries, by the low byte, which
/// spreads over the table and so waits least for the increment before it.
void XfnPlainTablePass(const std::uint16_t* samples, std::size_t count, long long* table);
