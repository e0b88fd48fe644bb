#include "view/XTypingSteps.h"

#include "edit/XCommandManager.h"
#include "foundation/vector/XvcTextBox.h"

#include <utility>

namespace {

bool IsOtherText(const XvcObj* before, const XvcTextBox& box)
{
    const auto* const former = dynamic_cast<const XvcTextBox*>(before);
    return former && !(former->GetRichText() == box.GetRichText());
}

} // namespace

XTypingSteps::XTypingSteps(XCommandManager& commands) : m_commands(commands) {}

XTypingSteps::~XTypingSteps() = default;

void XTypingSteps::SetOn(int isOn)
{
    m_isOn = isOn != 0;
    if (!m_isOn) m_editings.clear();
}

void XTypingSteps::Begin(XvcTextBox& box)
{
    if (!m_isOn) return;
    m_editings[&box] = {std::unique_ptr<XvcObj>(m_commands.CloneObject(&box)),
                        box.GetParentLayer() == nullptr};
}

int XTypingSteps::End(XvcTextBox& box)
{
    const auto at = m_editings.find(&box);
    if (at == m_editings.end()) return 0;
    tagEditing editing = std::move(at->second);
    m_editings.erase(at);
    if (!IsOtherText(editing.before.get(), box)) return 0;
    if (editing.isNew && m_commands.RenewCommandSetInsert(&box)) return 1;
    return m_commands.PushCommandSetModify(&box, editing.before.release()) != nullptr;
}

void XTypingSteps::Forget(const XvcTextBox* box)
{
    m_editings.erase(box);
}

int XTypingSteps::HasTyped(const XvcTextBox& box) const
{
    const auto at = m_editings.find(&box);
    return at != m_editings.end() && IsOtherText(at->second.before.get(), box);
}
