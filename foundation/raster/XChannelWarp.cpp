#include "foundation/raster/XChannelWarp.h"

#include "foundation/raster/XReferenceWarp.h"

XChannelWarp::XChannelWarp(std::shared_ptr<const XReferenceWarp> placed)
    : m_polynomial(placed ? placed->GetPolynomial() : XWarp2D()), m_placed(std::move(placed))
{}

void XChannelWarp::Warp(double& x, double& y) const
{
    if (m_placed)
        m_placed->Warp(x, y);
    else
        m_polynomial.Warp(x, y);
}
