#pragma once

#include "tests/support/XScriptedPrompts.h"
#include "tests/view/XDrawingText.h"
#include "tests/view/XFakeToolTarget.h"
#include "view/XModeTable.h"
#include "view/XObjectDialogs.h"

#include <set>

/// Answers the dialogs of objects; bound while it lives.
class XFakeObjectDialogs final : public XObjectDialogs
{
public:
    XFakeObjectDialogs() { XObjectDialogs::Set(this); }
    ~XFakeObjectDialogs() override { XObjectDialogs::Set(nullptr); }

    int DoModal(tagXObjectDialogCall& call) override
    {
        asked.push_back(call.dialog);
        const int answer = result; // what is done meanwhile may end the test's own objects
        if (call.object && answer == 1) call.object->SetName("edited");
        if (answer == 1) call.endShapeID = endShapeID;
        if (onModal) onModal();
        return answer;
    }
    int InputText(const tagXTextInputCall& call, XString& entered) override
    {
        input = call;
        entered = text.c_str();
        const int answer = result;
        if (onModal) onModal();
        return answer;
    }

    int result = 1;
    int endShapeID = 0;
    std::string text = "Hi";
    std::vector<XObjectDialog> asked;
    tagXTextInputCall input;
    std::function<void()> onModal;
};

/// Reads gestures told in words:
///
///     "down 10,10 ctrl-move 90,20 up"
///
/// Words: down, up, move, dbl (a double click in place of a press), rdown, rdbl, and those of the
/// player. A word without a place is where the last one was. Moves have the left button while it
/// is down.
class XGesture
{
public:
    /// @param send  of a message: number, flags, x, y
    /// @param act   of a player's word; answers whether it is one
    template <class Send, class Act>
    void Play(const std::string& gesture, const Send& send, const Act& act)
    {
        std::istringstream words(gesture);
        for (std::string word; words >> word;) {
            if (act(word)) continue;
            unsigned flags = 0;
            if (word.starts_with("ctrl-")) {
                flags = kFlagCtrl;
                word.erase(0, 5);
            }
            while (words.peek() == ' ')
                words.get();
            if (std::isdigit(words.peek())) {
                char comma = 0;
                words >> x >> comma >> y;
            }
            static constexpr struct
            {
                const char* word;
                unsigned message;
                unsigned flags;
            } kWords[] = {{"down", 513, 1}, {"up", 514, 0},    {"move", 512, 0},
                          {"dbl", 515, 1},  {"rdown", 516, 2}, {"rdbl", 518, 2}};
            const auto* row =
                std::ranges::find(kWords, word, [](const auto& r) { return std::string(r.word); });
            ASSERT_NE(row, std::end(kWords)) << word;
            isDown = row->message == 512 ? isDown : (row->flags & kFlagLeft) != 0;
            if (isDown) flags |= kFlagLeft;
            send(row->message, flags | row->flags, x, y);
        }
    }

private:
    int x = 0, y = 0;
    bool isDown = false;
};

/// Plays gestures on one tool of a fake view; "cancel" is a word too.
class XToolStage
{
public:
    XToolStage(int mode, const std::string& drawing = "")
    {
        target.messages.SetMode(static_cast<short>(mode));
        target.messages.SetPostMode(kPostMode);
        tool = XfnFindMode(mode)->make(target);
        XfnDraw(*target.layer, drawing);
    }

    void Play(const std::string& gesture)
    {
        m_gesture.Play(
            gesture,
            [this](unsigned message, unsigned flags, int x, int y) {
                tool->Handle(message, flags, static_cast<XLPARAM>(XfnPackPoint(x, y)));
            },
            [this](const std::string& word) {
                if (word == "cancel") tool->Cancel();
                return word == "cancel";
            });
    }

    /// The last two digits of each report.
    std::string GetReports() const
    {
        std::string text;
        for (int report : target.GetReports())
            text += (text.empty() ? "" : " ") + std::to_string(report % 100);
        return text;
    }
    /// Why it was drawn anew.
    std::set<int> GetReasons() const
    {
        std::set<int> reasons(target.log.begin(), target.log.end());
        std::erase_if(reasons, [](int entry) { return entry > 40000; });
        return reasons;
    }
    std::string GetDrawing() const { return XfnDescribeAll(*target.layer); }
    std::string GetCurrent() const { return XfnDescribe(target.objects.m_currentObject); }
    /// The indices of the selected objects in their layer.
    std::string GetSelected() const
    {
        std::string text;
        const XObList& list = *target.selection.GetList();
        for (__POSITION* pos = list.GetHeadPosition(); pos;) {
            const int index = XCommandManager::GetIndexOfList(target.layer, list.GetNext(pos));
            text += (text.empty() ? "" : " ") + std::to_string(index);
        }
        return text;
    }
    int GetSteps() { return target.commands.GetUndoStack()->GetSize(); }

    static constexpr short kPostMode = 77;
    XFakeToolTarget target;
    std::unique_ptr<XViewTool> tool;

private:
    XGesture m_gesture;
};
