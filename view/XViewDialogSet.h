#pragma once

#include "view/XViewDialogs.h"
#include "view/XViewMapping.h"

class XTQSpaceView;

/// The windows open on one view, and what opening, closing and hearing them does to it.
///
/// Threads: user interface only.
class XAPI XViewDialogSet
{
public:
    explicit XViewDialogSet(XTQSpaceView& view) : m_view(view) {}
    ~XViewDialogSet() { ReleaseAll(); }
    XViewDialogSet(const XViewDialogSet&) = delete;
    XViewDialogSet& operator=(const XViewDialogSet&) = delete;

    void CreateButtonPanel();
    void ReleaseAll(); ///< before the view's own members go

    void ShowStretch(int show);
    void ShowPalette(int show);
    void ShowMeasure(int show);
    void ShowThumb(int show);
    void RunMapGridProperty(QWidget* parent);
    void ClearMapGrid() { m_mapGrid.reset(); }

    // The windows told that they close.
    void StretchClosed() { m_stretch.reset(); }
    void PaletteClosed() { m_palette.reset(); }
    void MeasureClosed(); ///< it destroys itself
    void ThumbClosed() { m_thumb.reset(); }

    int IsMapGridShown() const { return m_mapGrid && m_mapGrid->IsShown(); }
    void RepaintButtonPanel();                 ///< soon, when it has a window
    void DrawMapGrid(XBackBuffer* buffer);     ///< when there is one and it is shown
    void CompositeRemoved(XDMComposite& gone); ///< windows that work on it let go of it
    /// Tells an open palette dialog the value range of the first gray composite, and an open thumb
    /// view what the view shows; a palette dialog without a gray composite ends both.
    void TellDrawn(const tagXWorldBox& visible);

    XViewStretchDlg* GetStretch() const { return m_stretch.get(); }
    XViewPaletteDlg* GetPalette() const { return m_palette.get(); }
    XViewMeasureDlg* GetMeasure() const { return m_measure.get(); }
    XViewThumbDlg* GetThumb() const { return m_thumb.get(); }
    XViewMapGrid* GetMapGrid() const { return m_mapGrid.get(); }
    XViewButtonPanel* GetButtonPanel() const { return m_buttonPanel.get(); }

private:
    int HasComposite() const;
    void RedrawMain();

    XTQSpaceView& m_view;
    XViewWindowPtr<XViewStretchDlg> m_stretch;
    XViewWindowPtr<XViewPaletteDlg> m_palette;
    XViewWindowPtr<XViewMeasureDlg> m_measure;
    XViewWindowPtr<XViewThumbDlg> m_thumb;
    XViewWindowPtr<XViewMapGrid> m_mapGrid;
    XViewWindowPtr<XViewButtonPanel> m_buttonPanel;
    int m_thumbFirstShow = 1;
};
