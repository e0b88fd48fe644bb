#pragma once

#include <cstddef>
#include <cstdint>

struct tagXMoments;

/// Loops over blocks of samples as doubles, short enough for the nearest cache. Every sum is kept in
/// eight partial sums that are joined in one order, so that results do not depend on how wide the
/// processor's registers are.

/// Samples of one block.
inline constexpr std::size_t kXBlock = 512;

/// Bins of one histogram in four tables side by side: neighbouring pixels often have the same bin,
/// and an increment must not wait for the one before it.
struct tagXBinTables
{
    static constexpr int kTables = 4;
    std::uint32_t counts[kTables][256] = {};

    /// Adds the counts to 256 bins and clears them.
    void MoveTo(long long* histogram);
};

/// Packs the samples whose flag is not 0 to the front. @return how many
std::size_t XfnPackBlock(const double* v, const unsigned char* valid, std::size_t n, double* out);

/// Clears the flags of samples that equal `value`. @return how many flags are left
std::size_t XfnExcludeValue(const double* v, std::size_t n, double value, unsigned char* valid);

/// Smallest and largest of at least one sample.
void XfnBlockRange(const double* v, std::size_t n, double& low, double& high);

/// Moves the samples about their mean in place.
/// @return the mean; exactly the value of a block of equal samples
double XfnCentreBlock(double* v, std::size_t n);

/// Sum of products of two blocks.
double XfnBlockProduct(const double* a, const double* b, std::size_t n);

/// Sums of products of every pair of `bands` blocks that lie `stride` apart, bands x bands values,
/// row-major and symmetric.
void XfnBlockProducts(const double* blocks, std::size_t stride, int bands, std::size_t n,
                      double* products);

/// The moments of a block, whose samples are centred in place.
tagXMoments XfnBlockMoments(double* v, std::size_t n);

/// Where a histogram's bins lie.
struct tagXBinScale
{
    double unit; ///< 1; less for a range wider than the doubles hold, which is measured in halves
    double low;
    double range;

    tagXBinScale(double min, double max);
    /// trunc((v - min) * 255 / (max - min)), cut to 0..255; 0 when max is not above min.
    int GetBin(double v) const
    {
        double t = range > 0.0 ? (v * unit - low) * 255.0 / range : 0.0;
        t = t > 0.0 ? t : 0.0;
        return static_cast<int>(t < 255.0 ? t : 255.0);
    }
};

/// Counts samples in their bins. `n` at most kXBlock.
void XfnBlockBins(const double* v, std::size_t n, const tagXBinScale& scale, tagXBinTables& tables);

/// The same for whole samples of at most 16 bits, by a table over those bits: a look-up costs less
/// than a division.
void XfnTableBins(const double* v, std::size_t n, const std::uint8_t* table, tagXBinTables& tables);
