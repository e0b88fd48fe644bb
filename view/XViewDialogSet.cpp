#include "view/XViewDialogSet.h"

#include "foundation/platform/XPrompts.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XRasterTypes.h"
#include "view/XCompositeStack.h"
#include "view/XLookupRange.h"
#include "view/XTQSpaceView.h"

namespace {

constexpr int kGrayMode = 0;
constexpr int kThumbGap = 30;

template <class T>
XViewWindowPtr<T> Make(const std::function<XViewWindowPtr<T>()>& factory)
{
    return factory ? factory() : nullptr;
}

// The range of the composite's stretch table; nothing is told of a composite without a band.
void TellValueRange(XViewPaletteDlg& dialog, XDMComposite& composite)
{
    const XDMBand* band = composite.GetBand(0);
    if (!band) return;
    double low = 0, high = 0;
    composite.UpdateLUT(0); // nothing need have drawn with the stretch of the moment
    const int type = band->GetDataType();
    const bool isIndexed = type == kXUInt8 || type == kXInt8; // no statistics of it are needed
    XfnLookupRange(composite.GetLUT(0), type, isIndexed ? 0.0 : band->GetBandMin(),
                   isIndexed ? 0.0 : band->GetBandMax(), low, high);
    dialog.SetValueRange(low, high, band->GetDataType());
}

} // namespace

int XViewDialogSet::HasComposite() const
{
    XDMCompManager* manager = m_view.GetXDMCompManager();
    return manager && manager->GetNumberOfXDMComposite() > 0;
}

void XViewDialogSet::RedrawMain()
{
    m_view.GetOverlay().Raise({XViewBuffer::MainBack});
    m_view.InvalidateControl(1);
}

void XViewDialogSet::CreateButtonPanel()
{
    m_buttonPanel = Make(XViewDialogFactories::Get().buttonPanel);
    if (m_buttonPanel) m_buttonPanel->Create(&m_view, m_view.GetHWND());
}

void XViewDialogSet::ReleaseAll()
{
    m_stretch.reset();
    m_palette.reset();
    m_measure.reset();
    m_thumb.reset();
    m_mapGrid.reset();
    m_buttonPanel.reset();
}

void XViewDialogSet::ShowStretch(int show)
{
    if (!show) {
        if (m_stretch) m_stretch->DestroyWindow(); // answered by the close message
        return;
    }
    if (!HasComposite()) return;
    m_stretch.reset();
    m_stretch = Make(XViewDialogFactories::Get().stretch);
    if (!m_stretch) return;
    m_stretch->SetXDMCompManager(m_view.GetXDMCompManager());
    m_stretch->SetCurXDMComposite(m_view.GetXDMCompManager()->GetXDMCompositeAt(0));
    m_stretch->Create(&m_view, m_view.GetHWND());
    m_stretch->Show();
    m_stretch->Update();
    m_stretch->ClearFirstShow();
}

void XViewDialogSet::ShowPalette(int show)
{
    XDMCompManager* manager = m_view.GetXDMCompManager();
    if (m_palette) m_palette->DestroyWindow();
    if (!show || !manager || !XViewDialogFactories::Get().palette) return;

    XDMComposite* composite = nullptr;
    // without any gray composite the walk ends on the last one, and that one is coloured
    for (XDMComposite* next : XfnListComposites(manager)) {
        composite = next;
        if (composite->GetMode() == kGrayMode) break;
    }
    if (!composite) {
        XPrompts::Get()->Message(m_view.GetHWND(), "There is no Gray Composite");
        return;
    }
    m_palette.reset();
    m_palette = Make(XViewDialogFactories::Get().palette);
    if (!m_palette) return;
    m_palette->SetXDMComposite(composite);
    TellValueRange(*m_palette, *composite);
    const int anchors[256] = {};
    m_palette->SetColorTable(composite->GetCLT(2), composite->GetCLT(1), composite->GetCLT(0),
                             anchors);
    m_palette->Create(&m_view, m_view.GetHWND());
    m_palette->Show();
}

void XViewDialogSet::ShowMeasure(int show)
{
    if (!show && !m_measure) return;
    if (!show) {
        m_measure.reset();
        m_view.GetOverlay().Raise({XViewBuffer::Measure});
        m_view.InvalidateControl(1);
        return;
    }
    if (!HasComposite()) return;
    m_measure.reset();
    m_measure = Make(XViewDialogFactories::Get().measure);
    if (!m_measure) return;
    m_measure->Create(&m_view, m_view.GetHWND());
    m_measure->SetSR(m_view.GetXDMCompManager()->GetSR());
    m_measure->Show();
}

void XViewDialogSet::ShowThumb(int show)
{
    m_thumb.reset();
    if (!show) return;
    m_thumb = Make(XViewDialogFactories::Get().thumb);
    if (!m_thumb) return;
    m_thumb->SetXDMCompManager(m_view.GetXDMCompManager());
    m_thumb->Create(&m_view, m_view.GetHWND());
    m_thumb->Show();

    const XBackBuffer& buffer = *m_view.GetBackBuffer();
    double minX = 0, maxY = 0, maxX = buffer.GetWidth() - 1, minY = buffer.GetHeight() - 1;
    buffer.ConvPixelToWorldCoord(minX, maxY);
    buffer.ConvPixelToWorldCoord(maxX, minY);
    m_thumb->SetVisibleBox(minX, minY, maxX, maxY);
    if (m_thumbFirstShow) m_thumb->MoveToCorner(0, kThumbGap);
    m_thumbFirstShow = 0;
}

void XViewDialogSet::RunMapGridProperty(QWidget* parent)
{
    if (!m_mapGrid) m_mapGrid = Make(XViewDialogFactories::Get().mapGrid);
    if (!m_mapGrid) return;
    const XHWND window = m_view.GetHWND();
    m_mapGrid->CalcMapGridProperty(m_view.GetBackBuffer());
    m_mapGrid->RunPropertyDlg(parent);
    if (XfnIsWindow(window)) RedrawMain(); // a modal loop may have ended the view
}

void XViewDialogSet::MeasureClosed()
{
    (void)m_measure.release();
    m_view.GetOverlay().Raise({XViewBuffer::Measure});
    m_view.InvalidateControl(1);
}

void XViewDialogSet::RepaintButtonPanel()
{
    if (m_buttonPanel && m_buttonPanel->HasWindow()) m_buttonPanel->Invalidate();
}

void XViewDialogSet::DrawMapGrid(XBackBuffer* buffer)
{
    XDMCompManager* manager = m_view.GetXDMCompManager();
    if (!IsMapGridShown() || !manager) return;
    m_mapGrid->DrawMapGrid(manager->GetSR()->IsGeographic(), buffer);
}

void XViewDialogSet::CompositeRemoved(XDMComposite& gone)
{
    if (m_palette && m_palette->GetXDMComposite() == &gone) m_palette->SetXDMComposite(nullptr);
    if (m_stretch && m_stretch->GetCurXDMComposite() == &gone)
        m_stretch->SetCurXDMComposite(nullptr);
}

void XViewDialogSet::TellDrawn(const tagXWorldBox& visible)
{
    if (m_palette) {
        XDMComposite* gray = nullptr;
        for (XDMComposite* composite : XfnListComposites(m_view.GetXDMCompManager())) {
            if (!gray && composite->GetMode() == kGrayMode) gray = composite;
        }
        if (!gray) return; // a thumb view is not told either
        TellValueRange(*m_palette, *gray);
    }
    if (m_thumb) m_thumb->SetVisibleBox(visible.minX, visible.minY, visible.maxX, visible.maxY);
}
