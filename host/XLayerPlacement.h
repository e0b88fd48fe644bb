#pragma once

#include <QString>

/// A miss that large, in pixels, deserves a box of its own; so does a layer that was not carried over
/// into the view's reference.
constexpr double kGrossMiss = 50;
inline bool XfnIsGrossMiss(double miss)
{
    return miss < 0 || miss > kGrossMiss;
}

/// What to say of XDMComposite::GetPlacementMiss: nothing up to a pixel.
QString XfnPlacementText(double miss);
