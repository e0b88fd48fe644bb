#include "host/XDrawActions.h"

#include "foundation/platform/XUserSettings.h"
#include "foundation/vector/XvcLayer.h"
#include "host/XHostView.h"
#include "host/XLayerTree.h"
#include "host/XMainActions.h"
#include "host/XObjectPicker.h"
#include "view/XViewKeys.h"

#include <QAction>

#include <algorithm>

namespace {

constexpr short kLook = XGVMessageManager::kModeNone;
constexpr short kSelect = 0;

struct tagTool
{
    const char* id;
    short mode;
    const char* hint;
};

constexpr const char* kDragHint = "Drag; Ctrl keeps it square, Esc leaves";
constexpr const char* kVertexHint = "Click; double click ends, right click steps back";

constexpr tagTool kTools[] = {
    {"draw.select", kSelect, "Click, or drag a box; Ctrl adds, double click edits"},
    {"draw.point", 101, "Click; Esc leaves"},
    {"draw.line", 102, "Drag; Ctrl keeps it level or upright"},
    {"draw.arrow", 115, "Drag; Ctrl keeps it level or upright"},
    {"draw.polyline", 103, kVertexHint},
    {"draw.curve", 104, kVertexHint},
    {"draw.polygon", 107, kVertexHint},
    {"draw.rectangle", 105, kDragHint},
    {"draw.ellipse", 106, "Drag from the centre; Ctrl keeps it round"},
    {"draw.text", 108, "Drag a box as high as the letters, then type"},
    {"draw.textBox", 113, "Drag a box, then type"},
    {"draw.balloon", XHostView::kModeBalloon, "Drag a box, then type"},
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

} // namespace

XDrawActions::XDrawActions(XHostView& view, XLayerTree& tree, XObjectPicker& picker,
                           XMainActions& actions)
    : m_view(view), m_tree(tree), m_vectors(tree.GetVectors()), m_picker(picker), m_actions(actions)
{
    for (const tagTool& tool : kTools)
        m_actions.Connect(tool.id, [this, mode = tool.mode] {
            // the tool at work is a way back, too
            if (GetTool() != mode)
                SetTool(mode);
            else
                SetTool(mode == kSelect ? kLook : kSelect);
        });
    m_actions.Connect("draw.keep", [this] { Follow(); });
    m_actions.SetChecked("draw.ask", XfnGetAskForNewObject(false));
    m_actions.Connect("draw.ask",
                      [this] { XfnSetAskForNewObject(m_actions.Get("draw.ask")->isChecked()); });
    m_tree.AddObserver([this](LayerChange change) {
        if (change != LayerChange::Closing && IsDrawing(GetTool())) PrepareEditLayer();
    });
    Follow();
}

XDrawActions::~XDrawActions() = default;

short XDrawActions::GetTool() const
{
    return m_view.GetMode();
}

void XDrawActions::SetTool(short mode)
{
    // what is being drawn is dropped as Escape drops it: another tool would show it half done
    if (m_view.GetObjectManager().m_currentObject)
        m_view.HandleKeyboardMessage(m_view.GetHWND(), kMsgKeyDown, kKeyEscape, 0);
    XvcObj* const picked = m_picker.GetObject();
    if (IsDrawing(mode)) PrepareEditLayer();
    m_view.SetMode(mode);
    if (mode == kSelect && picked) m_view.ShowSelected(picked);
    if (mode != kLook) m_picker.FollowView();
    m_view.setFocus();
    Follow();
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
