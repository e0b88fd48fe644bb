#pragma once

#include "edit/XCommandManager.h"
#include "foundation/base/XObList.h"
#include "foundation/surface/XBackBuffer.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "view/XGVMessageManager.h"
#include "view/XGVObjectManager.h"
#include "view/XGVRubberBand.h"
#include "view/XGVSelectedObjs.h"
#include "view/XToolState.h"
#include "view/XViewMapping.h"
#include "view/tools/XViewTool.h"

#include <algorithm>
#include <functional>
#include <vector>

/// A view of 400 x 200 pixels for a tool, without a window: world x is the pixel's, y its negative.
/// Its inner base has one layer, the edit layer.
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
        layer = new XvcLayer; // the base owns it
        base.AddTail(layer);
        innerBases.AddTail(&base);
        editLayer = layer;
    }

    tagXToolState& GetToolState() override { return state; }
    XGVMessageManager& GetMessageManager() override { return messages; }
    XGVObjectManager& GetObjectManager() override { return objects; }
    XGVSelectedObjs& GetSelection() override { return selection; }
    XvcLayer* GetEditLayer() const override { return editLayer; }
    void UseEditLayer(XvcLayer* used) override
    {
        if (used) editLayer = used;
    }
    XCommandManager& GetCommands() override { return commands; }
    XHWND GetOwnerWindow() const override { return 0; }
    QPoint GetScreenOrigin() const override { return QPoint(1000, 500); }
    void RotateBy(double angleDeg) override { rotation += angleDeg; }
    XObList* GetInnBaseList() override { return &innerBases; }
    XObList* GetExtBaseList() override { return &externalBases; }
    XViewMapping& GetViewMapping() override { return mapping; }
    XGVRubberBand& GetRubberBand() override { return band; }
    void RaiseFlags(std::initializer_list<XViewBuffer> buffers) override
    {
        raised.insert(raised.end(), buffers);
    }
    void ShowMoved(XViewReason reason) override { ShowAll(reason); }
    void RepaintFor(XViewReason reason) override { log.push_back(static_cast<int>(reason)); }
    void RubberBandChanged() override { ++bandChanges; }
    void Report(XViewReport code, const void* parameter) override
    {
        log.push_back(static_cast<int>(code));
        if (code == XViewReport::ObjectHit) hit = *static_cast<const tagXHitReport*>(parameter);
        if (code == XViewReport::ToolFinished)
            created = *static_cast<const tagXCreatedReport*>(parameter);
        if (onReport) onReport(code);
    }

    /// The reports alone.
    std::vector<int> GetReports() const
    {
        std::vector<int> reports;
        for (int entry : log)
            if (entry > 40000) reports.push_back(entry);
        return reports;
    }
    int IsRaised(XViewBuffer buffer) const
    {
        return std::find(raised.begin(), raised.end(), buffer) != raised.end();
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
    tagXCreatedReport created{};
    std::function<void(XViewReport)> onReport;
    double rotation = 0.0;
    XvcBase base;
    XvcLayer* layer = nullptr;
    XvcLayer* editLayer = nullptr;
    XCommandManager commands;
};
