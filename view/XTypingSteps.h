#pragma once

#include "foundation/base/XApi.h"

#include <map>
#include <memory>

class XCommandManager;
class XvcObj;
class XvcTextBox;

/// Makes steps of undo of what is typed into text boxes: one from the begin of an editing to its end,
/// none when the text is the same then. What is typed into a new box right after it was drawn joins
/// the step that inserted it.
///
/// Off at first. The manager outlives it. User interface thread.
class XAPI XTypingSteps
{
public:
    explicit XTypingSteps(XCommandManager& commands);
    ~XTypingSteps();

    void SetOn(int isOn);
    int IsOn() const { return m_isOn; }

    void Begin(XvcTextBox& box);
    int End(XvcTextBox& box); ///< non-zero: there is a step of it
    void Forget(const XvcTextBox* box);
    int HasTyped(const XvcTextBox& box) const; ///< it is edited, and has another text than before

private:
    struct tagEditing
    {
        std::unique_ptr<XvcObj> before;
        bool isNew = false; // in no layer when it began
    };

    XCommandManager& m_commands;
    std::map<const XvcTextBox*, tagEditing> m_editings;
    bool m_isOn = false;
};
