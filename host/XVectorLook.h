#pragma once

#include "foundation/base/XColor.h"

class XvcLayer;

/// How the objects of a file look that brings no colours of its own.
///
/// The palette is made for imagery: bright, far from each other in hue, none of them the green of
/// selections. Colours are opaque words, red lowest. Threads: any; a layer by one at a time.

constexpr int kXLayerColorCount = 10;
tagXColor XfnGetPaletteColor(int index); ///< any index; they come round again

/// Whether black is hard to see on a colour.
bool XfnIsDarkColor(tagXColor color);

/// Whether some object was given a colour, a thickness or a style by its file.
bool XfnHasOwnLook(const XvcLayer& layer);

/// Lines 2 pixels wide, areas outlined and lightly filled, points as discs with a dark rim.
void XfnGiveLook(XvcLayer& layer, tagXColor color);

/// Black lines, marks and letters become white: drawings are made with the black pen on white paper,
/// and over imagery or on a dark ground it is not seen.
void XfnTurnBlackPens(XvcLayer& layer);

/// Another colour for everything in the layer; what is translucent stays so.
void XfnColorLayer(XvcLayer& layer, tagXColor color);

/// The one colour that all objects have; 0 when there are several, or no objects.
tagXColor XfnGetLayerColor(const XvcLayer& layer);
