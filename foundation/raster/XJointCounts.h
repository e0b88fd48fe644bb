#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XSentinels.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// How one axis of joint counts turns a sample into one of 256 bins.
struct tagXJointAxis
{
    int dataType = 0; ///< a real one
    /// The bin is trunc((value - offset) * gain), of which the low eight bits count, so that a value
    /// beyond the range wraps round. Gain 255 / (max - min) and offset min spread a band's range.
    double offset = 0.0;
    double gain = 1.0;
    double nullValue = kXNotSet; ///< left out; kXNotSet when there is none
};

/// How often each pair of bins of two bands occurs: 256 x 256 counts.
///
/// A pixel is left out when either sample is its axis's null value, NaN, infinite or so far out
/// that its bin is no 53-bit number.
/// Threads: one at a time; Add works on two threads of its own when the block is worth it.
class XAPI XJointCounts
{
public:
    static constexpr int kBins = 256;

    XJointCounts(const tagXJointAxis& x, const tagXJointAxis& y);

    int IsValid() const; ///< 0 when a type is not real or an offset or gain is not finite
    /// Adds `count` pixels, the samples of both bands without gaps and in the same order.
    /// @return 0 when not valid
    int Add(const void* x, const void* y, std::size_t count);

    /// [kBins x kBins], row-major: the count of the bins (x, y) stands at y * kBins + x.
    const std::vector<std::uint64_t>& GetCounts() const { return m_counts; }
    void Clear();

private:
    void CountPiece(const void* x, const void* y, std::size_t start, std::size_t end,
                    std::uint32_t* even) const;

    tagXJointAxis m_x;
    tagXJointAxis m_y;
    std::vector<std::uint32_t> m_columns; // place of a sample of one or two bytes by its bits
    std::vector<std::uint32_t> m_rows;
    std::vector<std::uint64_t> m_counts;
};
