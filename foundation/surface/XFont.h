#pragma once

#include "foundation/base/XApi.h"

#include <QFont>

struct tagXTextStyle;

/// The font of a text style.
/// @param heightPx  height of a line of text in pixels; when not above 0 the style's own height is
///                  taken (negative: height of the letters; 0: 16 pixels). Held within 1 to 2000.
XAPI QFont XfnGetFont(const tagXTextStyle& style, double heightPx = 0.0);
