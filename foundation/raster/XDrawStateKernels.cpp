#include "foundation/raster/XDrawKernels.h"

#include "foundation/raster/XRasterTypes.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

namespace {

template <class R>
inline std::uint16_t StateOf(R value, const tagXCut<R>& cut)
{
    R level = (value - cut.low) * cut.scale + cut.offset;
    level = level > R(0) ? level : R(0); // in this order a NaN becomes 0
    level = level < R(255) ? level : R(255);
    const int hasData = (value == value) & (value != cut.null);
    return static_cast<std::uint16_t>(static_cast<int>(level) | hasData << 8 |
                                      (value == cut.transparent) << 9);
}

template <class R>
const tagXCut<R>& CutOf(const tagXDrawCut& cut)
{
    if constexpr (std::is_same_v<R, float>)
        return cut.single;
    else
        return cut.wide;
}

template <class T, class R, bool kIndexed>
void RealRow(const void* src, const int* index, int n, const tagXDrawCut& cut,
             std::uint16_t* __restrict states)
{
    const T* __restrict in = static_cast<const T*>(src);
    const tagXCut<R> own = CutOf<R>(cut);
    for (int i = 0; i < n; ++i)
        states[i] = StateOf<R>(static_cast<R>(in[kIndexed ? index[i] : i]), own);
}

template <class T, class R, bool kIndexed>
void ComplexRow(const void* src, const int* index, int n, const tagXDrawCut& cut,
                std::uint16_t* __restrict states)
{
    const T* __restrict in = static_cast<const T*>(src);
    constexpr R kNone = std::numeric_limits<R>::quiet_NaN();
    tagXCut<R> own = CutOf<R>(cut);
    const R null = own.null; // of the real part, the imaginary one being 0
    own.null = kNone;
    for (int i = 0; i < n; ++i) {
        const std::size_t at = 2 * static_cast<std::size_t>(kIndexed ? index[i] : i);
        const R re = static_cast<R>(in[at]);
        const R im = static_cast<R>(in[at + 1]);
        const R value = std::sqrt(re * re + im * im);
        states[i] = StateOf<R>((re == null) & (im == R(0)) ? kNone : value, own);
    }
}

template <class U, bool kIndexed>
void TableRow(const void* src, const int* index, int n, const tagXDrawCut& cut,
              std::uint16_t* __restrict states)
{
    const U* __restrict in = static_cast<const U*>(src);
    const std::uint16_t* __restrict table = cut.table;
    for (int i = 0; i < n; ++i)
        states[i] = table[in[kIndexed ? index[i] : i]];
}

template <bool kIndexed>
XDrawStateRow GetStateRow(int dataType)
{
    switch (dataType) {
    case kXUInt8:
    case kXInt8:
        return TableRow<std::uint8_t, kIndexed>;
    case kXUInt16:
    case kXInt16:
        return TableRow<std::uint16_t, kIndexed>;
    case kXUInt32:
        return RealRow<std::uint32_t, double, kIndexed>;
    case kXInt32:
        return RealRow<std::int32_t, double, kIndexed>;
    case kXFloat:
        return RealRow<float, float, kIndexed>;
    case kXDouble:
        return RealRow<double, double, kIndexed>;
    case kXUInt8Complex:
        return ComplexRow<std::uint8_t, float, kIndexed>;
    case kXInt8Complex:
        return ComplexRow<std::int8_t, float, kIndexed>;
    case kXUInt16Complex:
        return ComplexRow<std::uint16_t, float, kIndexed>;
    case kXInt16Complex:
        return ComplexRow<std::int16_t, float, kIndexed>;
    case kXUInt32Complex:
        return ComplexRow<std::uint32_t, double, kIndexed>;
    case kXInt32Complex:
        return ComplexRow<std::int32_t, double, kIndexed>;
    case kXFloatComplex:
        return ComplexRow<float, float, kIndexed>;
    case kXDoubleComplex:
        return ComplexRow<double, double, kIndexed>;
    default:
        return nullptr;
    }
}

/// All bit patterns of T, in the order of the unsigned type of its size. Levels only rise or only
/// fall with the value, so that both ends of a table are filled with the levels there, and what
/// lies between needs no clamp.
template <class T>
int FillTable(tagXCut<double> cut, std::uint16_t* __restrict table)
{
    constexpr int kCount = 1 << (8 * sizeof(T));
    constexpr int kMin = std::numeric_limits<T>::min(), kMax = std::numeric_limits<T>::max();
    const double keys[] = {cut.null, cut.transparent};
    cut.null = cut.transparent = std::numeric_limits<double>::quiet_NaN();
    const auto stateOf = [&cut](int value) { return StateOf<double>(value, cut); };
    const auto firstWhere = [](auto isThere) { // kMax when there is none
        int begin = kMin, end = kMax;
        while (begin < end) {
            const int middle = begin + (end - begin) / 2;
            isThere(middle) ? end = middle : begin = middle + 1;
        }
        return begin;
    };
    const std::uint16_t first = stateOf(kMin), last = stateOf(kMax);
    const int begin = firstWhere([&](int value) { return stateOf(value) != first; });
    const int end = firstWhere([&](int value) { return stateOf(value) == last; });
    const auto fill = [&](int from, int to, std::uint16_t* __restrict at) { // at: of the value 0
        const int left = std::clamp(begin, from, to), right = std::clamp(end, left, to);
        std::fill(at + from, at + left, first);
        for (int value = left; value < right; ++value)
            at[value] = static_cast<std::uint16_t>(
                kXStateData | static_cast<int>((value - cut.low) * cut.scale + cut.offset));
        std::fill(at + right, at + to, last);
    };
    fill(0, kMax + 1, table);
    if constexpr (kMin < 0) fill(kMin, 0, table + kCount);
    int isEveryData = 1;
    for (const double& key : keys) {
        if (!(key >= kMin && key <= kMax) || key != static_cast<int>(key)) continue;
        std::uint16_t& state = table[static_cast<int>(key) & (kCount - 1)];
        if (&key == keys)
            state &= static_cast<std::uint16_t>(~kXStateData);
        else
            state |= kXStateTransparent;
        isEveryData = 0;
    }
    return isEveryData;
}

template <class T, class R>
void LoadRow(const void* src, int n, const tagXDrawCut& cut, void* reals)
{
    const T* __restrict in = static_cast<const T*>(src);
    R* __restrict out = static_cast<R*>(reals);
    const R null = CutOf<R>(cut).null;
    constexpr R kNone = std::numeric_limits<R>::quiet_NaN();
    for (int i = 0; i < n; ++i) {
        const R value = static_cast<R>(in[i]);
        out[i] = value == null ? kNone : value;
    }
}

template <class T, class R>
void LoadComplexRow(const void* src, int n, const tagXDrawCut& cut, void* reals)
{
    const T* __restrict in = static_cast<const T*>(src);
    R* __restrict out = static_cast<R*>(reals);
    const R null = CutOf<R>(cut).null;
    constexpr R kNone = std::numeric_limits<R>::quiet_NaN();
    for (int i = 0; i < n; ++i) {
        const R re = static_cast<R>(in[2 * static_cast<std::size_t>(i)]);
        const R im = static_cast<R>(in[2 * static_cast<std::size_t>(i) + 1]);
        const R value = std::sqrt(re * re + im * im);
        out[i] = (re == null) & (im == R(0)) ? kNone : value;
    }
}

} // namespace

XDrawStateRow XfnGetStateRow(int dataType, int isIndexed)
{
    return isIndexed ? GetStateRow<true>(dataType) : GetStateRow<false>(dataType);
}

int XfnFillCutTable(int dataType, const tagXCut<double>& cut, std::uint16_t* table)
{
    switch (dataType) {
    case kXUInt8:
        return FillTable<std::uint8_t>(cut, table);
    case kXInt8:
        return FillTable<std::int8_t>(cut, table);
    case kXUInt16:
        return FillTable<std::uint16_t>(cut, table);
    case kXInt16:
        return FillTable<std::int16_t>(cut, table);
    default:
        return 0;
    }
}

void XfnFillComponents(const std::uint16_t* __restrict states, int n,
                       const std::uint8_t* __restrict bytes, std::uint8_t* __restrict components)
{
    constexpr int kBlock = 64; // most of a table lies outside the cut, where all states are one
    for (int at = 0; at < n; at += kBlock) {
        const std::uint16_t state = states[at];
        std::uint16_t difference = 0;
        for (int i = 0; i < kBlock; ++i)
            difference |= states[at + i] ^ state;
        if (difference == 0) {
            std::memset(components + at, bytes[state & 0xFF], kBlock);
            continue;
        }
        for (int i = 0; i < kBlock; ++i)
            components[at + i] = bytes[states[at + i] & 0xFF];
    }
}

int XfnIsWideType(int dataType)
{
    const int part = XfnGetPartType(dataType);
    return part == kXUInt32 || part == kXInt32 || part == kXDouble;
}

XDrawLoadRow XfnGetLoadRow(int dataType)
{
    switch (dataType) {
    case kXUInt8:
        return LoadRow<std::uint8_t, float>;
    case kXInt8:
        return LoadRow<std::int8_t, float>;
    case kXUInt16:
        return LoadRow<std::uint16_t, float>;
    case kXInt16:
        return LoadRow<std::int16_t, float>;
    case kXUInt32:
        return LoadRow<std::uint32_t, double>;
    case kXInt32:
        return LoadRow<std::int32_t, double>;
    case kXFloat:
        return LoadRow<float, float>;
    case kXDouble:
        return LoadRow<double, double>;
    case kXUInt8Complex:
        return LoadComplexRow<std::uint8_t, float>;
    case kXInt8Complex:
        return LoadComplexRow<std::int8_t, float>;
    case kXUInt16Complex:
        return LoadComplexRow<std::uint16_t, float>;
    case kXInt16Complex:
        return LoadComplexRow<std::int16_t, float>;
    case kXUInt32Complex:
        return LoadComplexRow<std::uint32_t, double>;
    case kXInt32Complex:
        return LoadComplexRow<std::int32_t, double>;
    case kXFloatComplex:
        return LoadComplexRow<float, float>;
    case kXDoubleComplex:
        return LoadComplexRow<double, double>;
    default:
        return nullptr;
    }
}
