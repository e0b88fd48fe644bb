#pragma once

#include "foundation/base/XColor.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/surface/XBufferMapping.h"
#include "foundation/surface/XVertRecording.h"
#include "view/XRasterKeeper.h"
#include "view/XRenderTarget.h"
#include "view/XViewMapping.h"
#include "view/XViewReports.h"

#include <memory>
#include <vector>

/// All that a view's picture is drawn from, recorded when it was asked for. The worker owns the
/// copies of the composites and reads the rest; bands are shared, and outlive the drawing.
class XViewScene : public XRenderScene
{
public:
    struct tagComposite
    {
        XDMComposite* own; ///< in the view; a name only, the worker never looks at it
        std::unique_ptr<XDMComposite> drawn;
        int isStale;
    };
    using Recording = std::shared_ptr<const XVertRecording>;

    XBufferMapping mapping;
    tagXWorldBox box{};
    tagXColor backColor = 0;
    std::vector<tagComposite> composites; ///< the top one first
    XRasterKeeper::tagState rasterState;  ///< that of a scene before: they were not changed
    std::vector<Recording> vertices;      ///< over the composites, from bottom to top
    Recording overlay;                    ///< marks that lie over the main picture
    XViewReports reports;                 ///< to the host, of painting
};
