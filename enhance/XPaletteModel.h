#pragma once

#include "enhance/XPaletteTable.h"
#include "foundation/base/XString.h"

#include <deque>

/// The rules of the colour table dialog: a table that is edited, the list of palettes that it may be
/// taken from, the entry at hand and what is told of it, undo.
///
/// List positions: 0 is the user's own table, n palette n of the catalogue. Every edit of an entry or
/// anchor makes the table the user's own and keeps it, so that position 0 brings it back. Rotating
/// and pushing move the colours of whatever is shown and are kept only when another palette is chosen
/// from position 0.
/// Entries are 0 to 255; an entry out of range changes nothing. Operations that answer say whether
/// the table or the list position changed.
/// Threads: a plain object, one thread at a time.
class XAPI XPaletteModel
{
public:
    static constexpr int kUserDefined = 0; ///< list position
    static constexpr int kSide = 16;       ///< the table as a grid, entry = row * 16 + column

    /// What an undo or redo brought back.
    enum class XRestored { Nothing, Table, AppliedTable };

    const tagXPaletteTable& GetTable() const { return m_state.table; }
    /// Takes a table over as the user's own and interpolates it. There is nothing to undo afterwards.
    void SetTable(const tagXPaletteTable& table);

    /// What the dialog shows first: a list position, with nothing to undo.
    void Open(int position);

    int GetSelection() const { return m_state.selection; }
    static int GetListCount(); ///< the user's own table and the catalogue
    static XString GetListText(int position);
    /// What position shows; entry 255 of a palette that does not define it repeats entry 254.
    tagXPaletteTable GetListTable(int position) const;
    /// Takes the table of a position over; palettes 10 to 15 leave entry 255 as it is. The anchors
    /// go, but for those of the user's own table. A position out of range changes nothing.
    int Select(int position);

    int GetCurrent() const { return m_current; }
    void SetCurrent(int entry);
    /// The entry so many cells away from another; stops at the edges of the grid.
    static int Step(int entry, int columns, int rows);

    // Edits of the current entry. The ends, 0 and 255, cannot be released once they are anchors.
    int SetCurrentColor(tagXColor color); ///< the top byte is not looked at
    int ToggleAnchor();
    int RemoveAnchor();
    void MakePalette() { XfnInterpolatePalette(m_state.table); }

    // The colours of all entries, one entry on. Anchors stay. Rotating brings what leaves at one end
    // back at the other, pushing loses it and lets black in.
    void RotateForward();
    void RotateBackward();
    void PushForward();
    void PushBackward();

    // A drag over the strip: all its steps are one step of undo.
    void StartDrag(int x);
    int DragTo(int x); ///< the direction of one step from the last x: -1, 0 or 1
    void EndDrag() { m_drag = Drag::None; }

    void SetValueRange(double low, double high, int dataType);
    XString GetIndexText() const;
    XString GetRedText() const;
    XString GetGreenText() const;
    XString GetBlueText() const;
    /// The band values that the current entry stands for, "12 ~ 13"; types below 6 in whole numbers.
    /// Empty while the range is not finite.
    XString GetValueText() const;

    int Load(const XString& path, XString& message); ///< as XfnReadPalette
    int Save(const XString& path,
             XString& message) const; ///< as XfnWritePalette, the path as it is

    /// AppliedTable: the step was one of those that reach the picture at once, so the caller applies.
    XRestored Undo();
    XRestored Redo();

private:
    enum class Drag { None, Started, Moved };
    struct tagState
    {
        tagXPaletteTable table, user;
        int selection = kUserDefined;
        friend bool operator==(const tagState&, const tagState&) = default;
    };
    struct tagStep
    {
        tagState state;
        bool isApplied;
    };

    template <class Change>
    int Do(const Change& change);
    void Move(int step, bool isRotation);
    void KeepAsUserTable();
    void Remember(const tagState& before, bool isApplied);
    XRestored Restore(std::deque<tagStep>& from, std::deque<tagStep>& to);

    tagState m_state;
    int m_current = 0;
    double m_low = 0.0;
    double m_high = 255.0;
    int m_dataType = 1;
    Drag m_drag = Drag::None;
    int m_dragX = 0;
    std::deque<tagStep> m_undo, m_redo;
};
