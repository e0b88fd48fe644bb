#pragma once

#include "foundation/base/XObList.h"
#include "foundation/surface/XBackBuffer.h"
#include "view/XGVMessageManager.h"
#include "view/XGVObjectManager.h"
#include "view/XGVRubberBand.h"
#include "view/XGVSelectedObjs.h"
#include "view/XToolState.h"
#include "view/XViewMapping.h"
#include "view/tools/XViewTool.h"

#include <vector>

/// A view of 400 x 200 pixels for a tool, without a window: world x is the pixel's, y its negative.
class XFakeToolTarget : public XToolTarget
{
public:
    XFakeToolTarget()
    {
        for (XBackBuffer* buffer : {&main, &temporary}) {
            buffer->Create(nullptr, 2);
            buffer->Resize(nullptr, 400, 200);
        }
        mapping.SetWorldToCenter(200, -100);
        mapping.SetWorldPerPixelBase(1, 1);
        mapping.SetWorldPerPixel(1, 1);
    }

    tagXToolState& GetToolState() override { return state; }
    XGVMessageManager& GetMessageManager() override { return messages; }
    XGVObjectManager& GetObjectManager() override { return objects; }
    XGVSelectedObjs& GetSelection() override { return selection; }
    XvcLayer* GetEditLayer() const override { return nullptr; }
    XObList* GetInnBaseList() override { return &innerBases; }
    XObList* GetExtBaseList() override { return &externalBases; }
    XViewMapping& GetViewMapping() override { return mapping; }
    XGVRubberBand& GetRubberBand() override { return band; }
    void RaiseFlags(std::initializer_list<XViewBuffer> buffers) override
    {
        raised.insert(raised.end(), buffers);
    }
    void RepaintFor(XViewReason reason) override { log.push_back(static_cast<int>(reason)); }
    void RubberBandChanged() override { ++bandChanges; }
    void Report(XViewReport code, const void* parameter) override
    {
        log.push_back(static_cast<int>(code));
        if (code == XViewReport::ObjectHit) hit = *static_cast<const tagXHitReport*>(parameter);
    }

    XBackBuffer main;
    XBackBuffer temporary;
    XViewMapping mapping{main, temporary};
    tagXToolState state;
    XGVMessageManager messages;
    XGVObjectManager objects;
    XGVSelectedObjs selection;
    XGVRubberBand band;
    XObList innerBases{10};
    XObList externalBases{10};
    std::vector<XViewBuffer> raised;
    std::vector<int> log; ///< reasons and report codes in their order
    int bandChanges = 0;
    tagXHitReport hit{};
};
