#pragma once

#include "vecprop/XObjectField.h"
#include "vecprop/XObjectUnit.h"
#include "vecprop/XVertexTableModel.h"
#include "view/XObjectDialogs.h"

#include <memory>
#include <vector>

class XvcObj;

/// What a dialog knows of the objects that it edits: drafts, what was typed, what is refused.
///
/// Everything typed goes to drafts, which are drawn while the dialog is open; the objects
/// themselves are read at the begin and written in Commit, and only in members that were touched and
/// differ. Of several objects a member that is not the same everywhere is mixed, and stays so until
/// it is touched. The objects are lent; who cannot promise that they are there at the time of Commit
/// says so by SetThereTest. User interface thread only.
class XAPI XObjectEditModel
{
public:
    /// Only that many of several objects have a draft to look at.
    static constexpr int kMaxDrafts = 200;

    /// All objects must be of the class that the dialog edits.
    XObjectEditModel(XObjectDialog dialog, std::vector<XvcObj*> objects); ///< at least one
    ~XObjectEditModel();
    XObjectEditModel(const XObjectEditModel&) = delete;
    XObjectEditModel& operator=(const XObjectEditModel&) = delete;

    const tagXObjectForm& GetForm() const { return m_form; }
    int GetFieldCount() const { return static_cast<int>(m_form.fields.size()); }
    const tagXObjectField& GetField(int index) const
    {
        return m_form.fields[static_cast<std::size_t>(index)];
    }
    int FindField(const char* id) const; ///< -1 when there is none
    int GetObjectCount() const { return static_cast<int>(m_objects.size()); }
    XString GetTitle() const;

    // What is shown
    int IsMixed(int index) const; ///< several values, and none chosen yet
    XString GetText(int index) const;
    XString
    GetExactText(int index) const; ///< with all digits, where the text shows fewer; else empty
    const char* GetUnitPlural() const { return m_unit.plural; } ///< of sizes that are no pixels
    int GetChoice(int index) const;                             ///< of Choice, Flag and Opacity
    tagXColor GetColor(int index) const;
    int IsPixels(int index) const; ///< the unit of a Length
    /// The entries of a list; a value that is in no list has one at the end.
    std::vector<tagXChoice> GetChoices(int index) const;
    const XString& GetError(int index) const; ///< empty while nothing is wrong

    // What was done
    void SetText(int index, const XString& text);
    void SetChoice(int index, int value);
    void SetColor(int index, tagXColor color);
    void SetPixels(int index, int isPixels);
    /// A number moves by so many steps, within its limits. A text that is no number stays.
    void Step(int index, double steps);
    /// Reads a picture, BMP or JPG by its extension; a failure becomes the field's error,
    /// which does not keep the rest from being taken: the picture of before is still there.
    void LoadPicture(int index, const XString& path);

    XVertexTableModel& GetVertices() { return m_vertices; }
    const XVertexTableModel& GetVertices() const { return m_vertices; }

    int CanApply() const; ///< nothing is refused
    XString GetFirstError() const;
    /// @param areThere  answers whether the objects may still be read; empty (at first): always
    void SetThereTest(std::function<bool()> areThere) { m_areThere = std::move(areThere); }
    bool AreObjectsThere() const { return !m_areThere || m_areThere(); }
    /// Writes what was touched to the objects and calculates their ranges.
    /// @return how many objects changed; 0 when something is refused, and when they have gone
    int Commit();

    const std::vector<std::unique_ptr<XvcObj>>& GetDrafts() const { return m_drafts; }
    XvcObj& GetDraft() { return *m_drafts.front(); }
    const XvcObj& GetDraft() const { return *m_drafts.front(); }
    /// Called after every change of a draft.
    void SetChangeHandler(std::function<void()> handler) { m_handler = std::move(handler); }

private:
    struct tagState
    {
        bool isMixed = false;
        bool isTouched = false;
        bool isTyped = false; // the text is what stands in the box
        XString text;
        int isPixels = 0;
        XString error;
    };
    tagState& State(int index) { return m_states[static_cast<std::size_t>(index)]; }
    const tagState& State(int index) const { return m_states[static_cast<std::size_t>(index)]; }
    XFieldValue Value(int index) const;
    void Put(int index, const XFieldValue& value);
    void Restore(int index);
    void Changed();

    tagXObjectForm m_form;
    std::vector<XvcObj*> m_objects; // from the constructor on a matter of Commit alone
    std::vector<std::unique_ptr<XvcObj>> m_drafts;
    std::vector<std::unique_ptr<XvcObj>> m_originals; // of the drafts: the objects as they were
    std::vector<tagState> m_states;
    tagXObjectUnit m_unit;
    XVertexTableModel m_vertices;
    std::function<void()> m_handler;
    std::function<bool()> m_areThere;
    double m_step = 1.0; // of numbers in world units
};
