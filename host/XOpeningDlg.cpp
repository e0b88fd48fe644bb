#include "host/XOpeningDlg.h"

#include "foundation/platform/XThread.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XDefaultDisplay.h"
#include "foundation/raster/XRSFile.h"

#include <QApplication>

namespace {

constexpr int kShowDelayMs = 400;

} // namespace

XOpeningDlg::XOpeningDlg(QWidget* parent) : XThreadDlgOpen(parent)
{
    SetShowDelay(kShowDelayMs);
}

int XOpeningDlg::ThreadProcess(void* owner, XString& error, XThread* thread)
{
    if (!XThreadDlgOpen::ThreadProcess(owner, error, thread)) return 0;
    int rgb[3];
    const int mode = XfnDefaultBands(GetXRSFile(), rgb);
    if (mode < 0) return 1;
    XDMComposite scratch(mode); // what it computes is kept by the bands
    const int last = scratch.GetNumberOfChannels() - 1;
    for (int ch = 0; ch <= last; ++ch)
        scratch.SetBand(GetXRSFile()->GetBandAt(rgb[last - ch]), ch); // channel 0 is blue
    for (int ch = 0; ch < scratch.GetNumberOfChannels(); ++ch) // which the layer's report tells
        if (const XDMBand* band = scratch.GetBand(ch)) band->GetStatistics(thread->GetStopFlag());
    XfnDefaultStretch(&scratch, thread->GetStopFlag());
    return 1;
}

// the rest of the program shows that it waits
void XOpeningDlg::showEvent(QShowEvent* event)
{
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    XThreadDlgOpen::showEvent(event);
}

void XOpeningDlg::hideEvent(QHideEvent* event)
{
    QApplication::restoreOverrideCursor();
    XThreadDlgOpen::hideEvent(event);
}
