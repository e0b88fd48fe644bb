#include "view/XModeTable.h"

#include "view/XGVMessageManager.h"
#include "view/XTQSpaceView.h"
#include "view/tools/XArrowTool.h"
#include "view/tools/XBalloonTool.h"
#include "view/tools/XBitmapTool.h"
#include "view/tools/XCurveTool.h"
#include "view/tools/XEllipseTool.h"
#include "view/tools/XLineTool.h"
#include "view/tools/XNoneTool.h"
#include "view/tools/XPointTool.h"
#include "view/tools/XPolygonTool.h"
#include "view/tools/XPolylineTool.h"
#include "view/tools/XRectangleTool.h"
#include "view/tools/XRotateTool.h"
#include "view/tools/XSelectTool.h"
#include "view/tools/XTextBoxTool.h"
#include "view/tools/XTextTool.h"
#include "view/tools/XZoomRectTool.h"

#include <algorithm>

namespace {

template <class Tool>
std::unique_ptr<XViewTool> Make(XToolTarget& target)
{
    return std::make_unique<Tool>(target);
}

constexpr auto kDefault = XModeCursor::Default;
constexpr auto kArrow = XModeCursor::Arrow;
constexpr auto kOwn = XModeCursor::Own;

constexpr tagXModeRow kModes[] = {
    {-1, kDefault, &Make<XNoneTool>, &XTQSpaceView::HandleMouseNoneMessage},
    {0, kArrow, &Make<XSelectTool>, &XTQSpaceView::HandleMouseSelectMessage},
    {101, kOwn, &Make<XPointTool>, &XTQSpaceView::HandleMousePointMessage},
    {102, kOwn, &Make<XLineTool>, &XTQSpaceView::HandleMouseLineMessage},
    {103, kOwn, &Make<XPolylineTool>, &XTQSpaceView::HandleMousePolylineMessage},
    {104, kOwn, &Make<XCurveTool>, &XTQSpaceView::HandleMouseCurveMessage},
    {105, kOwn, &Make<XRectangleTool>, &XTQSpaceView::HandleMouseRectangleMessage},
    {106, kOwn, &Make<XEllipseTool>, &XTQSpaceView::HandleMouseEllipseMessage},
    {107, kOwn, &Make<XPolygonTool>, &XTQSpaceView::HandleMousePolygonMessage},
    {108, kOwn, &Make<XTextTool>, &XTQSpaceView::HandleMouseTextMessage},
    {109, kOwn, &Make<XBitmapTool>, &XTQSpaceView::HandleMouseBitmapMessage},
    {110, kOwn, nullptr, nullptr}, // north arrow
    {111, kOwn, nullptr, nullptr}, // a cursor that no tool goes with
    {112, kOwn, nullptr, nullptr}, // scale bar
    {113, kOwn, &Make<XTextBoxTool>, &XTQSpaceView::HandleMouseTextBoxMessage},
    {115, kArrow, &Make<XArrowTool>, &XTQSpaceView::HandleMouseArrowMessage},
    {120, kOwn, nullptr, nullptr}, // army mark
    {121, kOwn, nullptr, nullptr}, // index map
    {131, kOwn, nullptr, nullptr}, // secret mark
    {201, kOwn, &Make<XZoomRectTool>, &XTQSpaceView::HandleMouseZoomRectMessage},
    {202, kOwn, &Make<XRotateTool>, &XTQSpaceView::HandleMouseRotateMessage},
    {kXBalloonTool, kDefault, &Make<XBalloonTool>, &XTQSpaceView::HandleMouseBalloonMessage},
};

} // namespace

std::span<const tagXModeRow> XfnModeTable()
{
    return kModes;
}

const tagXModeRow* XfnFindMode(int mode)
{
    const auto* row = std::ranges::find(kModes, mode, &tagXModeRow::mode);
    return row == std::end(kModes) ? nullptr : row;
}

XToolSet::XToolSet(XToolTarget& target) : m_target(target), m_tools(std::size(kModes)) {}

XToolSet::~XToolSet() = default;

void XToolSet::Handle(int mode, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    const tagXModeRow* row = XfnFindMode(mode);
    if (!row || !row->make) return;
    auto& tool = m_tools[static_cast<std::size_t>(row - kModes)];
    if (!tool) tool = row->make(m_target);
    tool->Handle(message, wParam, lParam); // a report within may destroy all of this
}

void XToolSet::Cancel()
{
    for (const auto& tool : m_tools)
        if (tool) tool->Cancel();
}
