#pragma once

#include "dialogs/XThreadDlg.h"
#include "enhance/XROIStretchStatistics.h"

/// Computes the statistics of regions behind a progress dialog and hands them to a stretch model.
///
///     XThreadDlgROIStatistics dialog(this);
///     dialog.SetProcessOwner(&model);
///     dialog.SetInput(&manager, polygons);
///     if (dialog.DoModal() == XThreadDlg::kOk) ...   // the model has them
///
/// The process owner is an XStretchModel; its selection says which channels take the results
/// (XStretchModel::SetROIStatistics), on the window thread and only on success. After Cancel it is
/// as it was. A failure, as without an owner or a manager, is told in an error box.
/// Ownership: model and manager are lent until DoModal returns; nobody changes the composites
/// meanwhile.
class XAPI XThreadDlgROIStatistics : public XThreadDlg
{
public:
    explicit XThreadDlgROIStatistics(QWidget* parent = nullptr);

    void SetInput(const XDMCompManager* manager, std::vector<tagXROIPolygon> polygons);

protected:
    void OnCallbackFail(void* owner, const XString& text) override;
    void OnCallbackSuccess(void* owner) override;
    int ThreadProcess(void* owner, XString& error, XThread* thread) override;

private:
    const XDMCompManager* m_manager = nullptr;
    std::vector<tagXROIPolygon> m_polygons;
    std::array<tagXStretchSource, XStretchModel::kChannels> m_sources;
};
