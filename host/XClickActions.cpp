#include "host/XClickActions.h"

#include "foundation/vector/XHitFlag.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcTextBox.h"
#include "host/XDrawActions.h"
#include "host/XHostView.h"
#include "host/XLayerTree.h"
#include "host/XObjectPicker.h"
#include "view/XViewKeys.h"

#include <utility>

namespace {

constexpr short kSelect = 0;
constexpr int kClickSlackPx = 3;

} // namespace

XClickActions::XClickActions(XHostView& view, XLayerTree& tree, XObjectPicker& picker,
                             XDrawActions& draw)
    : m_view(view), m_tree(tree), m_picker(picker), m_draw(draw)
{
    m_picker.SetPreferred([this] { return m_tree.GetCurrent().GetPlace(); });
    m_view.SetFindObject([this](double x, double y, double tolerance, tagXHitFlag& hit) {
        return m_picker.FindAt({x, y, tolerance, tolerance}, hit);
    });
    m_view.SetBeforeDoubleClick([this](int x, int y) { BeforeDoubleClick(x, y); });
    m_view.SetWalk([this](bool isForward) { return Walk(isForward); });
}

XClickActions::~XClickActions()
{
    m_view.SetFindObject(nullptr);
    m_view.SetBeforeDoubleClick(nullptr);
    m_view.SetWalk(nullptr);
    m_picker.SetPreferred(nullptr);
}

XvcObj* XClickActions::GetOnlySelected()
{
    XObList& selection = *m_view.GetSelectedObj();
    return selection.GetCount() == 1 ? dynamic_cast<XvcObj*>(selection.GetHead()) : nullptr;
}

void XClickActions::OnReport(XViewReport code, const tagXMouseReport* mouse)
{
    switch (code) {
    case XViewReport::ToolFinished:
        m_isDrawn = true;
        break;
    case XViewReport::LButtonDown:
        m_pressed = QPoint(mouse->x, mouse->y);
        m_coveredBy = nullptr;
        break;
    case XViewReport::LButtonUp:
        if (std::exchange(m_isDrawn, false)) break;
        if ((QPoint(mouse->x, mouse->y) - m_pressed).manhattanLength() <= kClickSlackPx)
            Clicked(mouse->x, mouse->y, (mouse->flags & kFlagCtrl) != 0);
        break;
    default:
        break;
    }
}

void XClickActions::Clicked(int x, int y, bool isJoining)
{
    const short mode = m_draw.GetTool();
    if (mode != kSelect && mode != XGVMessageManager::kModeNone) return;
    XvcObj* const selected = GetOnlySelected();
    if (m_view.GetSelectedObj()->GetCount() == 0) {
        XvcObj* object = nullptr;
        tagXVectorPlace place;
        const QString locked = m_picker.FindLockedAt(x, y, object, place);
        if (m_looked) m_looked(object, place);
        if (!locked.isEmpty() && m_notice) m_notice(locked + " is locked; Layer > Lock unlocks it");
    }
    if (mode != kSelect || isJoining || !selected) return;
    const auto* text = dynamic_cast<const XvcTextBox*>(selected);
    if (text && text->GetEditMode()) return;
    XvcObj* const below = m_picker.ClickAgain(x, y, selected);
    if (!below) return;
    m_coveredBy = selected;
    m_taken = below;
    Select(*below);
}

// The first click of a double one may have taken the object below the one that is meant.
void XClickActions::BeforeDoubleClick(int x, int y)
{
    XvcObj* const covering = std::exchange(m_coveredBy, nullptr);
    if (covering && GetOnlySelected() == m_taken && m_picker.IsAt(x, y, covering))
        Select(*covering);
}

void XClickActions::Select(XvcObj& object)
{
    if (object.GetParentLayer() != m_view.GetEditLayer())
        m_view.SetEditLayer(object.GetParentLayer());
    m_view.ShowSelected(&object);
    m_picker.FollowView();
    m_tree.SetCurrent(m_tree.FindNode(object));
}

bool XClickActions::Walk(bool isForward)
{
    if (m_draw.GetTool() != kSelect) return false;
    const XvcObj* const selected = GetOnlySelected();
    const XvcLayer* const layer = selected ? selected->GetParentLayer() : m_draw.FindEditLayer();
    XvcObj* const next = layer ? XfnNextInLayer(*layer, selected, isForward) : nullptr;
    if (!next) return false;
    Select(*next);
    ComeIntoView(*next);
    return true;
}

void XClickActions::ComeIntoView(const XvcObj& object)
{
    const tagXVectorRange& range = object.GetRange();
    double minX = 0, maxX = 0, minY = 0, maxY = 0;
    m_view.GetBound(minX, maxX, minY, maxY);
    if (range.IsEmpty() ||
        (range.maxX >= minX && range.minX <= maxX && range.maxY >= minY && range.minY <= maxY))
        return;
    m_view.SetWorldToCenter((range.minX + range.maxX) / 2, (range.minY + range.maxY) / 2);
    m_view.InvalidateControl(1);
}
