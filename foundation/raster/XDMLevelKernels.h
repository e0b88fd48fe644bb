#pragma once

#include <cstddef>
#include <vector>

/// For the sources of this folder only: one axis of a piece of a level that is made of the next
/// finer one. Sample i of the piece covers `count[i]` samples from `first[i]` on, by the shares
/// weight[3 * i], ...; `begin` and `end` bound the samples of the finer level that take part.
struct tagXLevelAxis
{
    std::vector<int> first; ///< counted from `begin`
    std::vector<int> count; ///< 1 to 3
    std::vector<double> weight;
    int begin = 0;
    int end = 0;
};

/// The samples [from, to) of a level of `size` that is made of a finer one of `finerSize`, which is
/// at most twice as large.
tagXLevelAxis XfnMakeLevelAxis(int from, int to, int size, int finerSize);

/// The weighted mean of the valid samples that each sample covers. Null values, NaN and what is not
/// below the sentinels are not valid; where nothing is, the sample in the middle stands, and a mean
/// that is not finite or equals the null value gives way to the valid sample nearest to the middle.
/// @param finer  samples of the window [x.begin, x.end) x [y.begin, y.end), rows without gaps
/// @param out    x.first.size() x y.first.size() samples, rows without gaps
/// @param nullValue  of complex data that of the real part, with an imaginary part of 0
void XfnAverageLevel(const void* finer, int dataType, double nullValue, const tagXLevelAxis& x,
                     const tagXLevelAxis& y, void* out);
