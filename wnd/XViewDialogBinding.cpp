#include "wnd/XViewDialogBinding.h"

#include "dialogs/CButtonDlg.h"
#include "enhance/XPaletteDlg.h"
#include "view/XViewDialogs.h"

namespace {

template <class Window, class Interface>
XViewWindowPtr<Interface> Make()
{
    return XViewWindowPtr<Interface>(new Window);
}

} // namespace

void XfnBindViewDialogs()
{
    XViewDialogFactories& factories = XViewDialogFactories::Get();
    factories.palette = &Make<XPaletteDlg, XViewPaletteDlg>;
    factories.buttonPanel = &Make<CButtonDlg, XViewButtonPanel>;
}
