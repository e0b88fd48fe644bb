#include "vecprop/XvcObjectDialogs.h"

#include "dialogs/XOwnerWidget.h"
#include "foundation/base/XNumber.h"
#include "foundation/base/XObList.h"
#include "foundation/base/XTextStyle.h"
#include "foundation/platform/XUserSettings.h"
#include "vecprop/CNorthArrowDlg.h"
#include "vecprop/CTextInputDlg.h"
#include "vecprop/XObjectDraft.h"
#include "vecprop/XvcArcClosedDlg.h"
#include "vecprop/XvcArcDlg.h"
#include "vecprop/XvcBitmapDlg.h"
#include "vecprop/XvcBsplineDlg.h"
#include "vecprop/XvcEllipseDlg.h"
#include "vecprop/XvcLineDlg.h"
#include "vecprop/XvcObjDlg.h"
#include "vecprop/XvcObjGrpDlg.h"
#include "vecprop/XvcPointDlg.h"
#include "vecprop/XvcPolygonDlg.h"
#include "vecprop/XvcPolylineDlg.h"
#include "vecprop/XvcPolypointDlg.h"
#include "vecprop/XvcRasterDlg.h"
#include "vecprop/XvcRectDlg.h"
#include "vecprop/XvcSymbolDlg.h"
#include "vecprop/XvcTextDlg.h"

#include <QPointer>

namespace {

constexpr int kCancelled = 2;

// The owner may go while the dialog runs, and the dialog goes with it.
template <class Dialog, class Take>
int Run(Dialog* made, const Take& take)
{
    const QPointer<Dialog> dialog(made);
    int result = dialog->DoModal();
    if (!dialog) return kCancelled;
    if (result == 1) take(*dialog);
    delete dialog.data();
    return result;
}

// And so may the objects: what is taken over then is nothing.
template <class Dialog, class Take>
int RunOnObjects(Dialog* made, const tagXObjectDialogCall& call, const Take& take)
{
    made->GetModel().SetThereTest(call.areThere);
    bool areThere = true;
    const int result = Run(made, [&](const Dialog& dialog) {
        areThere = dialog.GetModel().AreObjectsThere();
        if (areThere) take(dialog);
    });
    return areThere ? result : kCancelled;
}

template <class Dialog, class Object>
int Edit(const tagXObjectDialogCall& call)
{
    return RunOnObjects(
        new Dialog(static_cast<Object*>(call.object), XfnFindOwnerWidget(call.owner)), call,
        [](const Dialog&) {});
}

int EditLine(tagXObjectDialogCall& call)
{
    return RunOnObjects(
        new XvcLineDlg(static_cast<XvcLine*>(call.object), XfnFindOwnerWidget(call.owner)), call,
        [&call](const XvcLineDlg& dialog) { call.endShapeID = dialog.GetEndShapeID(); });
}

int EditNorthArrow(const tagXObjectDialogCall& call)
{
    auto* const arrow = static_cast<XvcNorthArrow*>(call.object);
    auto* const made = new CNorthArrowDlg(arrow, XfnFindOwnerWidget(call.owner));
    made->SetAngle(XfnFormat("%.3f", arrow->GetAngle()));
    return RunOnObjects(made, call, [arrow](const CNorthArrowDlg& dialog) {
        arrow->SetStyle(dialog.GetStyle());
        arrow->SetAngle(XfnBoxToDouble(dialog.GetAngle()));
        arrow->SetLineColor(dialog.GetLineColor());
        arrow->SetForeColor(dialog.GetForeColor());
        arrow->SetBackColor(dialog.GetBackColor());
        arrow->CalcRange();
    });
}

int EditGroup(const tagXObjectDialogCall& call)
{
    if (!call.objects || XvcObjGrpDlg::Collect(*call.objects).empty()) return kCancelled;
    return RunOnObjects(new XvcObjGrpDlg(*call.objects, XfnFindOwnerWidget(call.owner)), call,
                        [](const XvcObjGrpDlg&) {});
}

} // namespace

int XvcObjectDialogs::DoModal(tagXObjectDialogCall& call)
{
    if (call.dialog == XObjectDialog::Group) return EditGroup(call);
    if (!call.object || !XfnIsObjectFor(call.dialog, *call.object)) return kCancelled;
    if (call.isNew && !XfnGetAskForNewObject(m_ifNotChosen == XNewObjects::Ask)) return 1;
    switch (call.dialog) {
    case XObjectDialog::Point:
        return Edit<XvcPointDlg, XvcPoint>(call);
    case XObjectDialog::Line:
        return EditLine(call);
    case XObjectDialog::Polyline:
        return Edit<XvcPolylineDlg, XvcPolyline>(call);
    case XObjectDialog::Polygon:
        return Edit<XvcPolygonDlg, XvcPolygon>(call);
    case XObjectDialog::Polypoint:
        return Edit<XvcPolypointDlg, XvcPolypoint>(call);
    case XObjectDialog::Ellipse:
        return Edit<XvcEllipseDlg, XvcEllipse>(call);
    case XObjectDialog::Bitmap:
        return Edit<XvcBitmapDlg, XvcBitmap>(call);
    case XObjectDialog::Text:
        return Edit<XvcTextDlg, XvcText>(call);
    case XObjectDialog::Bspline:
        return Edit<XvcBsplineDlg, XvcBspline>(call);
    case XObjectDialog::Symbol:
        return Edit<XvcSymbolDlg, XvcSymbol>(call);
    case XObjectDialog::Arc:
        return Edit<XvcArcDlg, XvcArc>(call);
    case XObjectDialog::Rect:
        return Edit<XvcRectDlg, XvcRectangle>(call);
    case XObjectDialog::ArcClosed:
        return Edit<XvcArcClosedDlg, XvcArcClosed>(call);
    case XObjectDialog::Raster:
        return Edit<XvcRasterDlg, XvcRaster>(call);
    case XObjectDialog::NorthArrow:
        return EditNorthArrow(call);
    case XObjectDialog::Object:
    case XObjectDialog::Group:
        break;
    }
    return Edit<XvcObjDlg, XvcObj>(call);
}

void XvcObjectDialogs::CheckObjects()
{
    XObjectDlg::CheckAllObjects();
}

int XvcObjectDialogs::InputText(const tagXTextInputCall& call, XString& text)
{
    auto* dialog = new CTextInputDlg(XfnFindOwnerWidget(call.owner));
    dialog->SetPosition(call.x, call.y, call.width, call.height);
    dialog->SetFont(call.style ? *call.style : tagXTextStyle(), call.color, call.height);
    return Run(dialog, [&text](const CTextInputDlg& ended) { text = ended.GetText(); });
}

void XfnBindObjectDialogs(XNewObjects ifNotChosen)
{
    static XvcObjectDialogs dialogs;
    dialogs = XvcObjectDialogs(ifNotChosen);
    XObjectDialogs::Set(&dialogs);
}
