#pragma once

#include "foundation/base/XApi.h"

/// Three reals x, y, z, laid out as an array of three.
template <class Real>
struct XVector3Of
{
    Real x = 0;
    Real y = 0;
    Real z = 0;

    constexpr XVector3Of() = default;
    constexpr XVector3Of(Real ax, Real ay, Real az = 0) : x(ax), y(ay), z(az) {}

    /// The three reals in order.
    operator Real*() { return &x; }
    operator const Real*() const { return &x; }

    friend constexpr bool operator==(const XVector3Of& a, const XVector3Of& b)
    {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    }
    friend constexpr bool operator!=(const XVector3Of& a, const XVector3Of& b) { return !(a == b); }
    friend constexpr XVector3Of operator*(Real factor, const XVector3Of& v)
    {
        return {factor * v.x, factor * v.y, factor * v.z};
    }
    friend constexpr XVector3Of operator*(const XVector3Of& v, Real factor) { return factor * v; }
    friend constexpr XVector3Of operator+(const XVector3Of& a, const XVector3Of& b)
    {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    friend constexpr XVector3Of operator-(const XVector3Of& a, const XVector3Of& b)
    {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend constexpr XVector3Of operator-(const XVector3Of& v) { return {-v.x, -v.y, -v.z}; }
    constexpr XVector3Of& operator+=(const XVector3Of& v) { return *this = *this + v; }
    constexpr XVector3Of& operator-=(const XVector3Of& v) { return *this = *this - v; }
};

struct tagXVector3f;

/// Three 64-bit reals.
struct tagXVector3 : XVector3Of<double>
{
    using XVector3Of::XVector3Of;
    constexpr tagXVector3(const XVector3Of& v) : XVector3Of(v) {}
    constexpr explicit tagXVector3(const tagXVector3f& v);
};

/// Three 32-bit reals.
struct tagXVector3f : XVector3Of<float>
{
    using XVector3Of::XVector3Of;
    constexpr tagXVector3f(const XVector3Of& v) : XVector3Of(v) {}
    constexpr explicit tagXVector3f(const tagXVector3& v)
        : XVector3Of(static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z))
    {}
};

constexpr tagXVector3::tagXVector3(const tagXVector3f& v) : XVector3Of(v.x, v.y, v.z) {}

static_assert(sizeof(tagXVector3) == 24 && sizeof(tagXVector3f) == 12);
