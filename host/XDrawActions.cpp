#include "host/XDrawActions.h"

#include "foundation/platform/XUserSettings.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPolygon.h"
#include "host/XHostView.h"
#include "host/XLayerTree.h"
#include "host/XMainActions.h"
#include "host/XObjectPicker.h"
#include "view/XViewKeys.h"

#include <QAction>

#include <algorithm>
#include <utility>

namespace {

constexpr short kLook = XGVMessageManager::kModeNone;
constexpr short kSelect = 0;

struct tagTool
{
    const char* id;
    short mode;
    const char* hint;
};

constexpr const char* kLineHint = "Drag from end to end; Ctrl keeps it level or upright";
constexpr const char* kVertexHint =
    "Click each point; double click or Enter ends; right click or Backspace steps back; Esc drops";
constexpr const char* kAreaHint =
    "Click each corner; double click or Enter ends; right click or Backspace steps back; Esc drops";

constexpr tagTool kTools[] = {
    {"draw.select", kSelect,
     "Click or drag a box; double click edits; Ctrl adds; Shift drags a box over objects too"},
    {"draw.point", 101, "Click where the point is to be; Esc leaves"},
    {"draw.line", 102, kLineHint},
    {"draw.arrow", 115, "Drag to where the arrow points; Ctrl keeps it level or upright"},
    {"draw.polyline", 103, kVertexHint},
    {"draw.curve", 104, kVertexHint},
    {"draw.polygon", 107, kAreaHint},
    {"draw.rectangle", 105, "Drag from corner to corner; Ctrl keeps it square"},
    {"draw.ellipse", 106, "Drag from corner to corner; Ctrl keeps it round"},
    {"draw.text", 108, "Drag a box as high as the letters, then type; Enter ends"},
    {"draw.textBox", 113, "Drag a box, then type; Esc or a click beside it ends"},
    {"draw.balloon", XHostView::kModeBalloon,
     "Drag a box, then type; Esc or a click beside it ends"},
    {"draw.picture", 109, "Drag a box, then choose the file"},
};

const tagTool* FindTool(short mode)
{
    const auto* tool = std::ranges::find(kTools, mode, &tagTool::mode);
    return tool == std::end(kTools) ? nullptr : tool;
}

bool IsDrawing(short mode)
{
    return mode != kSelect && FindTool(mode);
}

bool IsOfVertices(short mode)
{
    return mode == 103 || mode == 104 || mode == 107;
}

} // namespace

XDrawActions::XDrawActions(XHostView& view, XLayerTree& tree, XObjectPicker& picker,
                           XMainActions& actions)
    : m_view(view), m_tree(tree), m_vectors(tree.GetVectors()), m_picker(picker), m_actions(actions)
{
    for (const tagTool& tool : kTools)
        m_actions.Connect(tool.id, [this, mode = tool.mode] {
            if (GetTool() != mode)
                SetTool(mode);
            else
                Follow(); // the entry unchecked itself
        });
    m_actions.Connect("draw.keep", [this] { Follow(); });
    m_actions.SetChecked("draw.ask", XfnGetAskForNewObject(false));
    m_actions.Connect("draw.ask",
                      [this] { XfnSetAskForNewObject(m_actions.Get("draw.ask")->isChecked()); });
    m_tree.AddObserver([this](LayerChange change) {
        if (change != LayerChange::Closing && IsDrawing(GetTool())) PrepareEditLayer();
    });
    m_view.SetDrawingKey([this](int key) {
        if (key == kKeyBackspace)
            StepBack();
        else
            FinishObject();
        return true;
    });
    m_view.SetNoLength([this] { Tell("Drag to draw a line; a click leaves none"); });
    Follow();
}

XDrawActions::~XDrawActions()
{
    m_view.SetDrawingKey(nullptr);
    m_view.SetNoLength(nullptr);
}

void XDrawActions::Tell(const QString& text)
{
    m_isTold = true;
    if (m_notice) m_notice(text);
}

bool XDrawActions::IsDrawingObject()
{
    return m_view.IsDrawingObject();
}

void XDrawActions::StepBack()
{
    const auto* object =
        dynamic_cast<const XvcVertexObj*>(m_view.GetObjectManager().m_currentObject);
    if (object && object->GetSize() > 2) return m_view.StepBack();
    const short tool = GetTool();
    DropObject();
    SetTool(tool);
}

// The last vertex is the one that follows the pointer.
bool XDrawActions::FinishObject()
{
    const auto* object =
        dynamic_cast<const XvcVertexObj*>(m_view.GetObjectManager().m_currentObject);
    if (!object || !IsOfVertices(GetTool())) return false;
    const bool isArea = dynamic_cast<const XvcPolygon*>(object) != nullptr;
    if (object->GetSize() - 1 < (isArea ? 3 : 2)) {
        Tell(isArea ? "An area needs three corners" : "A line needs two points");
        return false;
    }
    m_view.FinishObject();
    return true;
}

void XDrawActions::EndObject()
{
    if (!m_view.GetObjectManager().m_currentObject) return;
    const bool isSeen = IsDrawingObject();
    if (FinishObject()) return;
    DropObject();
    if (isSeen) Tell("What was begun is dropped; there was too little of it");
}

// Says why what is drawn does not go to the layer that is current.
void XDrawActions::TellLayer()
{
    const tagXVectorPlace place = m_tree.GetCurrent().GetPlace();
    const tagXVectorFile* file = m_vectors.GetAt(place.file);
    if (!file) return;
    bool isAnyShown = false;
    for (int i = 0; i < static_cast<int>(file->layers.size()); ++i) {
        const XvcLayer& layer = *file->layers[static_cast<std::size_t>(i)].layer;
        if (place.layer >= 0 && place.layer != i) continue;
        if (IsUsable(*file, layer)) return;
        isAnyShown = isAnyShown || !(file->base->IsHidden() || layer.IsHidden());
    }
    Tell(m_vectors.GetName(place) + (isAnyShown ? " is locked" : " is hidden") +
         "; what is drawn goes to another layer, Drawing");
}

// As Escape does: another tool would show it half done.
void XDrawActions::DropObject()
{
    m_view.HandleKeyboardMessage(m_view.GetHWND(), kMsgKeyDown, kKeyEscape, 0);
}

short XDrawActions::GetTool() const
{
    return m_view.GetMode();
}

void XDrawActions::SetTool(short mode)
{
    const bool isOther = GetTool() != mode;
    m_isTold = false;
    EndObject();
    XvcObj* const picked = m_picker.GetObject();
    if (IsDrawing(mode)) {
        PrepareEditLayer();
        TellLayer();
    }
    m_view.SetMode(mode);
    if (mode == kSelect && picked) m_view.ShowSelected(picked);
    if (mode != kLook) m_picker.FollowView();
    m_view.setFocus();
    Follow();
    // the place of the hint may be too small for all of it
    if (isOther && mode != kLook && !m_isTold) Tell(GetHint());
}

void XDrawActions::Follow()
{
    const short mode = GetTool();
    if (mode == kLook || mode == kSelect)
        m_view.SetPostMode(mode);
    else if (IsDrawing(mode))
        m_view.SetPostMode(m_actions.Get("draw.keep")->isChecked() ? mode : kSelect);
    for (const tagTool& tool : kTools)
        m_actions.SetChecked(tool.id, tool.mode == mode);
    if (std::exchange(m_followed, mode) != mode && m_toolChanged) m_toolChanged();
}

bool XDrawActions::OnEscape(const tagXEscape& before)
{
    Follow();
    if (before.mode == kLook || before.mode == XGVMessageManager::kModeZoomRect)
        return before.mode != kLook;
    if (before.isTyping || before.isPressed || before.isBuilding) return true;
    if (before.mode != kSelect) {
        SetTool(kSelect);
    } else if (m_view.GetSelectedObj()->GetCount() > 0) {
        m_view.ShowSelected(nullptr);
        m_picker.FollowView();
    } else {
        SetTool(kLook);
    }
    return true;
}

QString XDrawActions::GetHint() const
{
    const tagTool* tool = FindTool(GetTool());
    return tool ? tool->hint : QString();
}

bool XDrawActions::IsUsable(const tagXVectorFile& file, const XvcLayer& layer) const
{
    return !file.base->IsHidden() && !layer.IsHidden() && !layer.IsLocked();
}

XvcLayer* XDrawActions::FindEditLayer() const
{
    const tagXVectorPlace place = m_tree.GetCurrent().GetPlace();
    if (const tagXVectorFile* file = m_vectors.GetAt(place.file)) {
        for (int i = 0; i < static_cast<int>(file->layers.size()); ++i) {
            XvcLayer* layer = file->layers[static_cast<std::size_t>(i)].layer;
            if ((place.layer < 0 || place.layer == i) && IsUsable(*file, *layer)) return layer;
        }
    }
    for (int i = 0; i < m_vectors.GetCount(); ++i)
        for (const tagXVectorLayer& listed : m_vectors.GetAt(i)->layers)
            if (listed.layer == m_drawing && IsUsable(*m_vectors.GetAt(i), *listed.layer))
                return listed.layer;
    return nullptr;
}

void XDrawActions::PrepareEditLayer()
{
    XvcLayer* layer = FindEditLayer();
    if (!layer) {
        if (!m_pending) {
            auto made = std::make_unique<XvcLayer>();
            made->SetName("Drawing");
            m_pendingLayer = made.get();
            m_pending = std::make_unique<XvcBase>();
            m_pending->AddTail(made.release());
        }
        layer = m_pendingLayer;
    }
    if (m_view.GetEditLayer() != layer) m_view.SetEditLayer(layer);
}

void XDrawActions::Adopt()
{
    if (!m_pending || m_pendingLayer->GetCount() == 0) return;
    m_pending->CalcRange();
    m_drawing = m_pendingLayer;
    m_pendingLayer = nullptr;
    m_isAdopting = true;
    m_vectors.AddDrawing(std::move(m_pending), "Drawing");
    m_isAdopting = false;
}
