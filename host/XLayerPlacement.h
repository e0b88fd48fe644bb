#pragma once

#include <QString>

class XDMComposite;
class XSpatialReference;

/// Lets a composite draw in a reference that is not its bands' own.
///
/// Each channel whose band has a map reference other than `target` gets a warp from world
/// coordinates of `target` to pixels of the band: a cubic polynomial, fitted by least squares to
/// 21 x 21 points spread over the band and carried over by the coordinate library. Between
/// neighbouring projections of one scene it stays well below a tenth of a pixel; over a continent
/// it may miss by pixels, which the result tells. Where no operation joins the references, or the
/// target is not a map, the band's own warp stays.
/// @return the largest miss at those points in pixels of the band; 0 when nothing had to be done,
///         -1 when a channel could not be carried over
double XfnPlaceInReference(XDMComposite& composite, const XSpatialReference& target);

/// A miss that large, in pixels, deserves a box of its own; so does a layer that was not carried over.
constexpr double kGrossMiss = 50;
inline bool XfnIsGrossMiss(double miss)
{
    return miss < 0 || miss > kGrossMiss;
}

/// What to say of a result of XfnPlaceInReference: nothing up to a pixel.
QString XfnPlacementText(double miss);
