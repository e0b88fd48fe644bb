#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "view/XTQSpaceView.h"

#include <algorithm>

// The size of marks on the screen, bookmark and control points, follows the world length of a
// pixel.
void XTQSpaceView::RaiseMapping()
{
    m_overlay.Raise({XViewBuffer::BookMark, XViewBuffer::TempVertex, XViewBuffer::MainBack,
                     XViewBuffer::TempBack});
}

void XTQSpaceView::ZoomFit()
{
    if (!m_compManager) return;
    tagXWorldBox box = {0, 0, 0, 0};
    if (m_compManager->IsRangeValid()) {
        if (m_compManager->CalcTotalRange(box.minX, box.minY, box.maxX, box.maxY))
            m_mapping.ZoomFit(box);
    } else {
        m_mapping.StartAlike(m_mapping.GetWidth(), m_mapping.GetHeight());
    }
    m_mapping.SetVisibleBox(m_mapping.GetDiagonal());
    RaiseMapping();
    Repaint(Reason::ZoomFit);
    m_reports.Send(XViewReport::ZoomFit);
}

void XTQSpaceView::ZoomFitRect(double minX, double minY, double maxX, double maxY)
{
    m_mapping.ZoomFit({minX, minY, maxX, maxY});
    RaiseMapping();
    Repaint(Reason::ZoomFitRect);
    const XHWND window = GetHWND();
    m_reports.Send(XViewReport::ZoomFit);
    if (XfnIsWindow(window)) m_mapping.SetVisibleBox(m_mapping.GetDiagonal());
}

void XTQSpaceView::ZoomIn()
{
    m_mapping.ZoomIn(1.0);
    RaiseMapping();
    Repaint(Reason::ZoomIn);
    m_reports.Send(XViewReport::ZoomIn);
}

void XTQSpaceView::ZoomOut()
{
    m_mapping.ZoomOut(1.0);
    RaiseMapping();
    Repaint(Reason::ZoomOut);
    m_reports.Send(XViewReport::ZoomOut);
}

void XTQSpaceView::ZoomOneToOne()
{
    if (!m_compManager) return;
    double x = 0, y = 0, lengthX = 1, lengthY = 1;
    GetBackBuffer()->GetWorldToCenter(x, y);
    if (m_compManager->GetNumberOfXDMComposite() > 0) {
        const XDMComposite* top = m_compManager->GetXDMCompositeAt(0);
        const XDMBand* band = nullptr;
        for (int ch = 0; ch < 3 && !band; ++ch)
            band = top->GetBand(ch);
        if (!band) return;
        tagXWorldBox range = {x, y, x, y};
        m_compManager->CalcTotalRange(range.minX, range.minY, range.maxX, range.maxY);
        lengthX = band->GetXPixelSize();
        lengthY = band->GetYPixelSize();
        x = std::min(range.maxX, std::max(range.minX, x));
        y = std::min(range.maxY, std::max(range.minY, y));
    }
    m_mapping.SetWorldToCenter(x, y);
    m_mapping.SetWorldPerPixel(lengthX, lengthY);
    RaiseMapping();
    Repaint(Reason::ZoomOneToOne);
    m_reports.Send(XViewReport::ZoomOneToOne);
}

void XTQSpaceView::ZoomRect()
{
    SetMode(XGVMessageManager::kModeZoomRect);
}

void XTQSpaceView::GetBound(double& minX, double& maxX, double& minY, double& maxY) const
{
    const tagXWorldBox box = m_mapping.GetBound();
    minX = box.minX;
    maxX = box.maxX;
    minY = box.minY;
    maxY = box.maxY;
}

int XTQSpaceView::UpdateComposites()
{
    if (!m_compManager || !m_compManager->IsRangeValid()) return 0;
    if (m_compManager->GetNumberOfXDMComposite() > 0) ZoomFit();
    return 1;
}

void XTQSpaceView::PanBy(int dx, int dy)
{
    m_mapping.PanPixel(dx, dy);
    PlaceTextEditors(); // no mark changes, so the overlay is not recorded, which would do it
    m_overlay.Raise({XViewBuffer::MainBack, XViewBuffer::TempBack});
    Repaint(Reason::Pan);
}

void XTQSpaceView::PanByPart(int partsX, int partsY)
{
    PanBy(-partsX * std::max(1, m_mapping.GetWidth() / 8),
          -partsY * std::max(1, m_mapping.GetHeight() / 8));
}

void XTQSpaceView::ZoomByKey(int in)
{
    if (in)
        ZoomIn();
    else
        ZoomOut();
}

void XTQSpaceView::ZoomByPinch(int x, int y, double step)
{
    m_mapping.ZoomAbout(x, y, step);
    RaiseMapping();
    Repaint(Reason::MouseWheel);
    m_reports.Send(step > 0 ? XViewReport::ZoomIn : XViewReport::ZoomOut);
}
