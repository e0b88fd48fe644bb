#include "enhance/XThreadDlgROIStatistics.h"

#include "foundation/platform/XPrompts.h"

#include <utility>

XThreadDlgROIStatistics::XThreadDlgROIStatistics(QWidget* parent) : XThreadDlg(parent)
{
    SetTitle("Calculate ROI Statistics...");
}

void XThreadDlgROIStatistics::SetInput(const XDMCompManager* manager,
                                       std::vector<tagXROIPolygon> polygons)
{
    m_manager = manager;
    m_polygons = std::move(polygons);
}

int XThreadDlgROIStatistics::ThreadProcess(void* owner, XString& error, XThread* thread)
{
    if (!owner || !m_manager) {
        error = "There is nothing to compute for.";
        return 0;
    }
    return XfnCalcROIStretchStatistics(*m_manager, m_polygons, thread, m_sources);
}

void XThreadDlgROIStatistics::OnCallbackSuccess(void* owner)
{
    static_cast<XStretchModel*>(owner)->SetROIStatistics(m_sources);
}

void XThreadDlgROIStatistics::OnCallbackFail(void*, const XString& text)
{
    const XString reason = text.IsEmpty() ? text : "\n" + text;
    XPrompts::Get()->Message(GetHWND(), "Error In " + GetTitle() + reason, XPrompts::XIcon::Error);
}
