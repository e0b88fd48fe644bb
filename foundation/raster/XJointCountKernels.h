#pragma once

#include <cstddef>
#include <cstdint>

/// The bin of a sample that is left out.
inline constexpr std::uint16_t kXNoBin = 256;
/// Rows and columns of the tables that are counted in, the one of kXNoBin included.
inline constexpr std::size_t kXJointStride = 257;

/// Bins of samples: the low eight bits of trunc((value - offset) * gain), kXNoBin for a sample that
/// is left out.
template <class T>
struct XJointBinKernels
{
    static void Bin(const T* samples, std::size_t count, bool hasNull, T nullValue, double offset,
                    double gain, std::uint16_t* bins);
};

/// Counts pairs of samples of one or two bytes in two tables of kXJointStride squared that take
/// turns.
/// @param columns  bin of each sample of x, by its bits
/// @param rows     bin of each sample of y times kXJointStride
template <class X, class Y>
void XfnCountSamplePairs(const X* x, const Y* y, std::size_t count, const std::uint32_t* columns,
                         const std::uint32_t* rows, std::uint32_t* even, std::uint32_t* odd);

/// The same for pairs of bins.
void XfnCountPairs(const std::uint16_t* x, const std::uint16_t* y, std::size_t count,
                   std::uint32_t* even, std::uint32_t* odd);
