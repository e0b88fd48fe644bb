#pragma once

#include "dialogs/XThreadDlgOpen.h"

/// Opens the file of a layer and works out its first stretch, so that showing the layer has not to
/// wait for it. Files that come soon show no window.
class XOpeningDlg : public XThreadDlgOpen
{
public:
    explicit XOpeningDlg(QWidget* parent = nullptr);

protected:
    int ThreadProcess(void* owner, XString& error, XThread* thread) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
};
