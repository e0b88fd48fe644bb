#include "host/XObjectActions.h"

#include "foundation/raster/XDMCompManager.h"
#include "host/XHostView.h"
#include "host/XLayerTree.h"
#include "host/XMainActions.h"
#include "host/XObjectPicker.h"
#include "host/XObjectReport.h"

XObjectActions::XObjectActions(XHostView& view, XLayerTree& tree, XObjectPicker& picker,
                               XMainActions& actions)
    : m_view(view), m_tree(tree), m_picker(picker), m_actions(actions)
{
    m_actions.Connect("edit.copyAttributes", [this] { Copy(); });
    m_actions.Connect("view.fitObject", [this] {
        double box[4] = {0, 0, 0, 0};
        if (m_picker.GetExtent(box)) m_view.ShowObject(box[0], box[1], box[2], box[3]);
    });
    m_picker.AddObserver([this] { EnableActions(); });
    EnableActions();
}

void XObjectActions::EnableActions()
{
    double box[4] = {0, 0, 0, 0};
    const bool hasObject = m_picker.GetObject() != nullptr;
    const QString none = "No object is selected; click on one";
    m_actions.SetEnabled("edit.copyAttributes", hasObject, none);
    m_actions.SetEnabled("view.fitObject", m_picker.GetExtent(box), none);
}

void XObjectActions::Copy()
{
    const tagXVectorPlace place = m_picker.GetPlace();
    const tagXVectorLayer* layer = m_tree.GetVectors().GetLayerAt(place);
    if (!m_picker.GetObject() || !layer || !m_copied) return;
    m_copied(
        XfnReportText(XfnObjectReport(*m_picker.GetObject(), *m_tree.GetVectors().GetAt(place.file),
                                      *layer, *m_view.GetXDMCompManager()->GetSR())),
        "Copied the attributes of the object");
}
