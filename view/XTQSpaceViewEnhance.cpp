#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XStretchPreset.h"
#include "view/XTQSpaceView.h"

void XTQSpaceView::Enhance(long cutType, long stretchType)
{
    if (!m_compManager) return;
    XfnEnhance(*m_compManager, static_cast<int>(cutType), static_cast<int>(stretchType));
    m_overlay.Raise({XViewBuffer::MainBack});
    Repaint(Reason::Enhance);
}

void XTQSpaceView::EnhanceEx(int coverage, int cutType, int stretchType)
{
    if (!m_compManager) return;
    XfnEnhanceEx(*m_compManager, coverage, cutType, stretchType);
    InvalidateControl(1); // which raises the flag of the main surface with all others
}

int XTQSpaceView::CanRunPropButton(int id) const
{
    const int hasComposite = m_compManager && m_compManager->GetNumberOfXDMComposite() > 0;
    switch (id) {
    case kXPropPresets:
    case kXPropVisiblePresets:
        return m_compManager && XfnCanEnhance(*m_compManager);
    case kXPropStretch:
        return hasComposite && CanShowStretchDlg();
    case kXPropThumb:
        return hasComposite && CanShowThumbView();
    case kXPropZoomRect:
    case kXPropOneToOne:
    case kXPropZoomIn:
    case kXPropZoomOut:
    case kXPropFit:
        return 1;
    default:
        return 0;
    }
}

int XTQSpaceView::IsPropButtonOn(int id) const
{
    return id == kXPropZoomRect && GetMode() == XGVMessageManager::kModeZoomRect;
}

void XTQSpaceView::RunPropButton(int id)
{
    if (!CanRunPropButton(id)) return;
    switch (id) {
    case kXPropStretch:
        ShowStretchDlg(1);
        break;
    case kXPropThumb:
        ShowThumbView(1);
        break;
    case kXPropZoomRect:
        if (IsPropButtonOn(id)) {
            SetMode(GetPostMode());
        } else {
            SetPostMode(GetMode()); // the tool of now comes back after the rectangle
            ZoomRect();
        }
        break;
    case kXPropOneToOne:
        ZoomOneToOne();
        break;
    case kXPropZoomIn:
        ZoomIn();
        break;
    case kXPropZoomOut:
        ZoomOut();
        break;
    case kXPropFit:
        ZoomFit();
        break;
    default:
        break; // the popups of the presets are the panel's
    }
}

void XTQSpaceView::RunStretchPreset(int command)
{
    const tagXStretchPreset* preset = XfnFindStretchPreset(command);
    if (!preset) return;
    m_lastPreset = command;
    EnhanceEx(preset->coverage, preset->cutType, preset->stretchType);
}
