#pragma once

#include <cstddef>

/// One real number of each of `count` complex samples, `parts` holding re, im, re, im; computed in
/// double. Samples whose real part is `nullValue` and imaginary part 0 (with `hasNull` set), those
/// with a part that is not finite, and results that are not finite become NaN.
/// @param part  XComplexPart
template <class T, class R>
void XfnConvertComplex(int part, const T* parts, std::size_t count, bool hasNull, T nullValue,
                       R* out);
