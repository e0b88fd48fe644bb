#pragma once

#include "foundation/vector/XvcObj.h"
#include "view/XGVObjectManager.h"
#include "view/XObjectDialogs.h"
#include "view/tools/XViewTool.h"

#include <memory>
#include <optional>

class XvcObj;

/// What the tools that make objects have in common.
///
///   idle     --start-->    building  the object under construction, shown while it grows
///   building --finish-->   idle      the dialog of its class asks whether it stays; then it enters
///                                    the edit layer, one step of undo; it alone is selected, post
///                                    mode; reported (41052, then the tool's own code)
///   building --refuse-->   idle      the object goes, post mode, nothing is selected; both codes
///                                    are reported, without an object
///   building --right double click--> idle  the object goes, post mode; nothing is reported
///
/// The object under construction is the state, and it outlives a change of the mode: Escape drops
/// it, and so does the press of a tool that builds another class. With limit 4, and without dialogs
/// bound, nothing is asked.
/// A tool sends reports with everything in order before them, and shows once more what a host made
/// of it.
class XAPI XShapeTool : public XViewTool
{
public:
    /// @param dialog  what finishing asks; none: objects stay
    XShapeTool(XToolTarget& target, XViewReport ownReport,
               std::optional<XObjectDialog> dialog = std::nullopt)
        : XViewTool(target), m_ownReport(ownReport), m_dialog(dialog)
    {}
    /// Takes away a band. The object under construction stays.
    void Cancel() override { HideBand(); }

protected:
    enum class Fill { Without, With };
    /// What of the usual end of a refusal is left out: the selection stays, or the mode too.
    enum class Keep { Nothing, Selection, SelectionAndMode };

    void OnAny(const tagXToolEvent& event) override;
    void RightDoubleClick(const tagXToolEvent& event) override;

    /// The object under construction when it is exactly of this class, else null.
    template <class Shape>
    Shape* Current() const
    {
        XvcObj* const object = GetTarget().GetObjectManager().m_currentObject;
        const char* const name = Shape::GetRuntimeClassStatic()->m_lpszClassName;
        return XfnIsExactly(object, name) ? static_cast<Shape*>(object) : nullptr;
    }
    /// A new object under construction, in the place of one of another class.
    template <class Shape, class... Arguments>
    Shape& Begin(Arguments... arguments)
    {
        auto object = std::make_unique<Shape>(arguments...);
        Shape& begun = *object;
        GetTarget().GetObjectManager().SetCurrent(std::move(object));
        return begun;
    }

    const tagXVector3& Anchor() const;
    const tagXVector3& Pointer() const;
    void DropAnchor(); ///< the anchor becomes the pointer
    /// The pointer, with Ctrl on the level or upright line through the anchor; kept as the pointer.
    const tagXVector3& ConstrainToAxis(const tagXToolEvent& event);
    double GetWorldPerPixel() const; ///< along x

    /// The colours, thickness and styles that new objects of the view have.
    void GiveAttributes(XvcObj& object, Fill fill) const;
    void ShowCurrent(XViewReason reason = XViewReason::Invalidate); ///< after its range
    /// Of the repaints that end the drawing.
    virtual XViewReason GetFinishReason() const { return XViewReason::Invalidate; }

    void Finish();          ///< asks, then Insert or Refuse
    void Insert();          ///< the finish without a question
    void Refuse(Keep keep); ///< destroys the object
    void Drop();            ///< destroys the object and reports nothing; the mode stays
    /// Shows the object while something modal runs, which may change everything here.
    /// @param run  of the object; its result is that of the whole
    /// @return none when the target or the object has gone meanwhile
    template <class Run>
    auto Hold(Run run) -> std::optional<decltype(run(std::declval<XvcObj&>()))>
    {
        const auto life = GetTarget().GetLife();
        std::unique_ptr<XvcObj> object = GetTarget().GetObjectManager().LendCurrent();
        if (!object) return std::nullopt;
        const auto result = run(*object);
        if (life.expired() || GetTarget().GetObjectManager().m_currentObject != object.get())
            return std::nullopt;
        GetTarget().GetObjectManager().GiveBack(std::move(object));
        return result;
    }

private:
    int AskProperties(XvcObj& object) const;
    bool IsInLayer(const XvcObj* object) const;

    XViewReport m_ownReport;
    std::optional<XObjectDialog> m_dialog;
};
