#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"

#include <QBrush>

struct tagXFillStyle;

/// The brush of a fill style: set bits in the fore colour, clear bits in the back colour; the top
/// byte of each is its opacity. No brush when nothing of it would be seen.
XAPI QBrush XfnGetFillBrush(const tagXFillStyle& style, tagXColor foreColour, tagXColor backColour);
