#include "vecprop/XvcObjGrpDlg.h"

#include "foundation/base/XObList.h"
#include "foundation/vector/XvcObj.h"

XvcObjGrpDlg::XvcObjGrpDlg(const XObList& objects, QWidget* parent)
    : XObjectDlg(XObjectDialog::Group, Collect(objects), parent)
{}

std::vector<XvcObj*> XvcObjGrpDlg::Collect(const XObList& objects)
{
    std::vector<XvcObj*> found;
    for (auto at = objects.GetHeadPosition(); at;)
        if (auto* object = dynamic_cast<XvcObj*>(objects.GetNext(at))) found.push_back(object);
    return found;
}
