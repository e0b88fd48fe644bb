#pragma once

#include "foundation/base/XColor.h"
#include "foundation/base/XFillStyle.h"
#include "foundation/base/XLineStyle.h"

#include <optional>

/// Attributes that stand in for an object's own while it is drawn.
///
/// What is not set comes from the object. So a selection is outlined without changing objects that
/// another thread may be reading.
struct tagXDrawAttrs
{
    std::optional<tagXColor> lineColor;
    std::optional<tagXColor> foreColor;
    std::optional<tagXColor> backColor;
    std::optional<tagXLineStyle> lineStyle;
    std::optional<tagXFillStyle> fillStyle;
    std::optional<double> thick; ///< as XvcObj::SetThick
};
