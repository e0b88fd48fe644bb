#pragma once

/// Marks a function that is compiled for registers of four doubles (AVX2), to be called only when
/// XfnHasWideRegisters says so. Fused multiply-add stays off in it: results keep their bits.
#if defined(__x86_64__) && defined(__GNUC__)
#define X_WIDE __attribute__((target("avx2")))

inline bool XfnHasWideRegisters()
{
    static const bool kHasThem = __builtin_cpu_supports("avx2") != 0;
    return kHasThem;
}
#else
#define X_WIDE

inline bool XfnHasWideRegisters()
{
    return false;
}
#endif
