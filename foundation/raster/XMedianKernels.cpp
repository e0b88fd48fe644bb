#include "foundation/raster/XMedianKernels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

namespace {

constexpr int kBlockSide = 128;
constexpr int kMaxRadius = 5;
constexpr int kMaxSamples = (kBlockSide + 2 * kMaxRadius) * (kBlockSide + 2 * kMaxRadius);
constexpr std::uint16_t kNoRank = 0xFFFF;
static_assert(kMaxSamples < kNoRank);

template <class R>
void Exchange(R& a, R& b)
{
    const R low = b < a ? b : a;
    b = b < a ? a : b;
    a = low;
}

// The middle of nine: columns are sorted, then the largest of the least, the middle of the middle
// and the least of the largest hold it in their middle.
template <class R>
void Median3Row(const R* up, const R* at, const R* down, int width, R* __restrict dst)
{
    for (int x = 0; x < width; ++x) {
        R a[3], b[3], c[3];
        for (int k = 0; k < 3; ++k) {
            a[k] = up[x + k - 1];
            b[k] = at[x + k - 1];
            c[k] = down[x + k - 1];
            Exchange(a[k], b[k]);
            Exchange(b[k], c[k]);
            Exchange(a[k], b[k]);
        }
        Exchange(a[0], a[1]);
        Exchange(a[1], a[2]); // a[2]: largest of the least
        Exchange(c[1], c[2]);
        Exchange(c[0], c[1]); // c[0]: least of the largest
        Exchange(b[0], b[1]);
        Exchange(b[1], b[2]);
        Exchange(b[0], b[1]); // b[1]: middle of the middle
        Exchange(a[2], b[1]);
        Exchange(b[1], c[0]);
        Exchange(a[2], b[1]);
        dst[x] = b[1];
    }
}

// Counts of ranks, with the lower median of them always at hand.
class XRankHistogram
{
public:
    void Reset()
    {
        m_median = 0;
        m_below = 0;
        m_count = 0;
    }
    void Add(std::uint16_t rank)
    {
        if (rank == kNoRank) return;
        if (m_counts[rank]++ == 0) {
            m_words[rank >> 6] |= std::uint64_t(1) << (rank & 63);
            m_tops[rank >> 12] |= std::uint64_t(1) << (rank >> 6 & 63);
        }
        m_below += rank < m_median;
        ++m_count;
    }
    void Remove(std::uint16_t rank)
    {
        if (rank == kNoRank) return;
        if (--m_counts[rank] == 0) {
            m_words[rank >> 6] &= ~(std::uint64_t(1) << (rank & 63));
            if (m_words[rank >> 6] == 0)
                m_tops[rank >> 12] &= ~(std::uint64_t(1) << (rank >> 6 & 63));
        }
        m_below -= rank < m_median;
        --m_count;
    }
    int GetCount() const { return m_count; }
    /// There is at least one.
    int GetMedian()
    {
        const int target = (m_count - 1) / 2;
        while (m_below > target) {
            m_median = Before(m_median);
            m_below -= m_counts[static_cast<std::size_t>(m_median)];
        }
        while (m_below + m_counts[static_cast<std::size_t>(m_median)] <= target) {
            m_below += m_counts[static_cast<std::size_t>(m_median)];
            m_median = After(m_median);
        }
        return m_median;
    }

private:
    // the nearest rank that occurs; there is one
    int After(int rank) const
    {
        std::size_t word = static_cast<std::size_t>(rank) >> 6;
        const std::uint64_t rest = (m_words[word] >> (rank & 63)) >> 1;
        if (rest) return rank + 1 + std::countr_zero(rest);
        std::size_t top = word >> 6;
        std::uint64_t tops = (m_tops[top] >> (word & 63)) >> 1;
        if (tops) {
            word += 1 + static_cast<std::size_t>(std::countr_zero(tops));
        } else {
            while (m_tops[++top] == 0) {
            }
            word = (top << 6) + static_cast<std::size_t>(std::countr_zero(m_tops[top]));
        }
        return static_cast<int>(word << 6) + std::countr_zero(m_words[word]);
    }
    int Before(int rank) const
    {
        std::size_t word = static_cast<std::size_t>(rank) >> 6;
        const std::uint64_t rest = (m_words[word] << (63 - (rank & 63))) << 1;
        if (rest) return rank - 1 - std::countl_zero(rest);
        std::size_t top = word >> 6;
        std::uint64_t tops = (m_tops[top] << (63 - (word & 63))) << 1;
        if (tops) {
            word -= 1 + static_cast<std::size_t>(std::countl_zero(tops));
        } else {
            while (m_tops[--top] == 0) {
            }
            word = (top << 6) + 63 - static_cast<std::size_t>(std::countl_zero(m_tops[top]));
        }
        return static_cast<int>(word << 6) + 63 - std::countl_zero(m_words[word]);
    }

    static constexpr std::size_t kWords = (kMaxSamples + 63) / 64;
    std::array<std::uint8_t, kWords * 64> m_counts{}; // at most 121 of one rank
    std::array<std::uint64_t, kWords> m_words{};
    std::array<std::uint64_t, (kWords + 63) / 64> m_tops{};
    int m_median = 0;
    int m_below = 0; // samples whose rank is less
    int m_count = 0;
};

// A block of samples as ranks among themselves.
template <class R>
class XRankBlock
{
public:
    /// Reads (width + 2 radius) x (height + 2 radius) samples from `first` on.
    void Load(const R* first, std::ptrdiff_t stride, int columns, int rows)
    {
        m_columns = columns;
        const std::size_t count =
            static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
        m_ranks.assign(count, kNoRank);
        m_items.clear();
        for (int y = 0; y < rows; ++y) {
            const R* row = first + stride * y;
            for (int x = 0; x < columns; ++x)
                if (row[x] - row[x] == R(0))
                    m_items.push_back({ToKey(row[x]), static_cast<std::uint16_t>(y * columns + x)});
        }
        Sort();
        m_values.clear();
        for (std::size_t i = 0; i < m_items.size(); ++i) {
            if (i == 0 || m_items[i].key != m_items[i - 1].key)
                m_values.push_back(FromKey(m_items[i].key));
            m_ranks[m_items[i].place] = static_cast<std::uint16_t>(m_values.size() - 1);
        }
    }
    const std::uint16_t* GetRow(int y) const
    {
        return m_ranks.data() + static_cast<std::size_t>(m_columns) * static_cast<std::size_t>(y);
    }
    R GetValue(int rank) const { return m_values[static_cast<std::size_t>(rank)]; }

private:
    using Key = std::conditional_t<sizeof(R) == 4, std::uint32_t, std::uint64_t>;
    struct tagItem
    {
        Key key;
        std::uint16_t place;
    };
    static constexpr Key kSign = Key(1) << (8 * sizeof(Key) - 1);

    // the bits of a real in an order in which unsigned integers sort as the reals do
    static Key ToKey(R v)
    {
        const Key bits = std::bit_cast<Key>(v);
        return bits & kSign ? ~bits : bits | kSign;
    }
    static R FromKey(Key key) { return std::bit_cast<R>(key & kSign ? key & ~kSign : ~key); }

    // by digits of 11 bits, the lowest first
    void Sort()
    {
        constexpr int kBits = 11;
        constexpr std::size_t kDigits = std::size_t(1) << kBits;
        m_sorted.resize(m_items.size());
        for (int shift = 0; shift < static_cast<int>(8 * sizeof(Key)); shift += kBits) {
            std::array<std::uint32_t, kDigits> starts{};
            for (const tagItem& item : m_items)
                ++starts[item.key >> shift & (kDigits - 1)];
            // integers leave the low digits of a real at 0
            if (!m_items.empty() &&
                starts[m_items.front().key >> shift & (kDigits - 1)] == m_items.size())
                continue;
            std::uint32_t start = 0;
            for (std::uint32_t& digit : starts) {
                const std::uint32_t n = digit;
                digit = start;
                start += n;
            }
            for (const tagItem& item : m_items)
                m_sorted[starts[item.key >> shift & (kDigits - 1)]++] = item;
            m_items.swap(m_sorted);
        }
    }

    int m_columns = 0;
    std::vector<std::uint16_t> m_ranks;
    std::vector<tagItem> m_items;
    std::vector<tagItem> m_sorted;
    std::vector<R> m_values;
};

// One block of at most kBlockSide x kBlockSide results.
template <class R>
void MedianBlock(XRankBlock<R>& block, XRankHistogram& histogram, int radius, int width, int height,
                 R* dst, std::ptrdiff_t dstStride)
{
    const int side = 2 * radius + 1;
    const std::uint16_t* rows[2 * kMaxRadius + 1];
    for (int y = 0; y < height; ++y) {
        for (int k = 0; k < side; ++k)
            rows[k] = block.GetRow(y + k);
        histogram.Reset();
        for (int k = 0; k < side; ++k)
            for (int x = 0; x < side; ++x)
                histogram.Add(rows[k][x]);
        R* out = dst + dstStride * y;
        for (int x = 0;;) {
            out[x] = rows[radius][x + radius] == kNoRank ? std::numeric_limits<R>::quiet_NaN()
                                                         : block.GetValue(histogram.GetMedian());
            if (++x == width) break;
            for (int k = 0; k < side; ++k) {
                histogram.Remove(rows[k][x - 1]);
                histogram.Add(rows[k][x + side - 1]);
            }
        }
        for (int k = 0; k < side; ++k)
            for (int x = 0; x < side; ++x)
                histogram.Remove(rows[k][width - 1 + x]);
    }
}

} // namespace

template <class R>
void XfnMedianReals(int radius, bool hasGaps, const R* src, std::ptrdiff_t srcStride, int width,
                    int height, R* dst, std::ptrdiff_t dstStride)
{
    if (radius == 1 && !hasGaps) {
        for (int y = 0; y < height; ++y) {
            const R* at = src + srcStride * y;
            Median3Row(at - srcStride, at, at + srcStride, width, dst + dstStride * y);
        }
        return;
    }
    XRankBlock<R> block;
    XRankHistogram histogram;
    for (int y = 0; y < height; y += kBlockSide) {
        for (int x = 0; x < width; x += kBlockSide) {
            const int columns = std::min(kBlockSide, width - x);
            const int rows = std::min(kBlockSide, height - y);
            block.Load(src + srcStride * (y - radius) + x - radius, srcStride, columns + 2 * radius,
                       rows + 2 * radius);
            MedianBlock(block, histogram, radius, columns, rows, dst + dstStride * y + x,
                        dstStride);
        }
    }
}

template void XfnMedianReals(int, bool, const float*, std::ptrdiff_t, int, int, float*,
                             std::ptrdiff_t);
template void XfnMedianReals(int, bool, const double*, std::ptrdiff_t, int, int, double*,
                             std::ptrdiff_t);
