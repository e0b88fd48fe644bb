#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XWarp2D.h"

#include <memory>

class XReferenceWarp;

/// The way from the world to a channel's band pixels, or back.
///
/// A polynomial alone, or, for a band that is shown in another reference, one that is held to the
/// exact way through both references. The second kind answers NaN where a point has no place in the
/// other plane.
///
/// A plain value: copies share what is heavy and never change it. Threads: read from any thread.
class XAPI XChannelWarp
{
public:
    XChannelWarp() = default; ///< not valid; leaves points as they are
    XChannelWarp(const XWarp2D& polynomial) : m_polynomial(polynomial) {}
    explicit XChannelWarp(std::shared_ptr<const XReferenceWarp> placed);

    int IsValid() const { return m_polynomial.IsValid(); }
    int IsAffine() const { return !m_placed && m_polynomial.IsAffine(); }
    void GetAffine(double (&a)[6]) const { m_polynomial.GetAffine(a); }
    /// All of the warp, or the best polynomial of one that is held to the exact way.
    const XWarp2D& GetPolynomial() const { return m_polynomial; }
    /// Null for a polynomial alone.
    const std::shared_ptr<const XReferenceWarp>& GetPlaced() const { return m_placed; }

    void Warp(double& x, double& y) const; ///< in place

private:
    XWarp2D m_polynomial;
    std::shared_ptr<const XReferenceWarp> m_placed;
};
