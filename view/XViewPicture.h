#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"
#include "foundation/surface/XBufferMapping.h"
#include "view/XViewMapping.h"

#include <QImage>

#include <memory>
#include <utility>
#include <vector>

class XDC;
class XDMComposite;

/// A whole picture of a view and the mapping that it was drawn at. Never written again once it was
/// handed on, so both threads read it.
struct tagXViewPicture
{
    std::shared_ptr<const QImage> main;    ///< rasters and vectors
    std::shared_ptr<const QImage> overlay; ///< marks on black; null for none
    std::shared_ptr<const QImage> shown;   ///< the overlay laid over the main picture
    XBufferMapping mapping;
    tagXWorldBox box{}; ///< what the window shows of the world at that mapping

    int isMainNew = 0; ///< the main picture was drawn for this one
    /// Composites of the view, and a copy of each with what drawing it worked out.
    std::vector<std::pair<XDMComposite*, std::shared_ptr<XDMComposite>>> results;
};

/// Lays the overlay of a picture over its main one. @return 0 without memory
XAPI int XfnComposePicture(tagXViewPicture& picture, std::shared_ptr<QImage> target);

/// Shows a picture where it lies at another mapping: moved by whole pixels, scaled by the nearest
/// pixel, or turned; what it does not reach becomes `backColor`.
XAPI void XfnShowPicture(XDC& dc, const QImage& picture, const XBufferMapping& drawnAt,
                         const XBufferMapping& now, tagXColor backColor);
