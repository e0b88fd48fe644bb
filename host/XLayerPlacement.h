#pragma once

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
