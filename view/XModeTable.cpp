#include "view/XModeTable.h"

#include "view/XGVMessageManager.h"
#include "view/XTQSpaceView.h"
#include "view/tools/XNoneTool.h"
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
    {0, kArrow, nullptr, nullptr},   // selection
    {101, kOwn, nullptr, nullptr},   // point
    {102, kOwn, nullptr, nullptr},   // line
    {103, kOwn, nullptr, nullptr},   // polyline
    {104, kOwn, nullptr, nullptr},   // curve
    {105, kOwn, nullptr, nullptr},   // rectangle
    {106, kOwn, nullptr, nullptr},   // ellipse
    {107, kOwn, nullptr, nullptr},   // polygon
    {108, kOwn, nullptr, nullptr},   // text
    {109, kOwn, nullptr, nullptr},   // bitmap
    {110, kOwn, nullptr, nullptr},   // north arrow
    {111, kOwn, nullptr, nullptr},   // a cursor that no tool goes with
    {112, kOwn, nullptr, nullptr},   // scale bar
    {113, kOwn, nullptr, nullptr},   // text box
    {115, kArrow, nullptr, nullptr}, // arrow
    {120, kOwn, nullptr, nullptr},   // army mark
    {121, kOwn, nullptr, nullptr},   // index map
    {131, kOwn, nullptr, nullptr},   // secret mark
    {201, kOwn, &Make<XZoomRectTool>, &XTQSpaceView::HandleMouseZoomRectMessage},
    {202, kOwn, nullptr, nullptr}, // rotate
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
