#pragma once

#include "view/tools/XViewTool.h"

class XvcObj;

/// The tool of mode 0: selects, moves and edits objects.
///
///   idle     --press on a selected object-->  dragging  the selection stays; a single one is
///                                                       reported (41063, without an object)
///   idle     --press on another-->            dragging  that one alone is selected and reported;
///                                                       with Ctrl it joins in its z-order
///   idle     --press on nothing-->            banding   nothing is selected; a green band
///   dragging --move-->                        dragging  the selection follows (XSelectionDrag.h)
///   dragging --release-->                     idle      one step of undo, reported before and
///                                                       after (41080, 41079); then 41085
///   banding  --move-->                        banding   the band follows
///   banding  --release-->                     idle      what lies inside the band is selected;
///                                                       41085 when that is anything
///   any      --double click-->                idle      XSelectionEditor.h
///   any      --cancel-->                      idle      what was dragged lies where it lay before
///
/// What counts as selected is asked at each event, so a host may change it in between. Limit 2 (no
/// moving) makes every drag a band, limit 8 (no multiple selection) lets a band select nothing. No
/// step is kept of a drag that ends where it began, nor of one that began exactly on an axis of the
/// world. Of what a host takes away in the report before (41080) none is kept either; the rest of
/// what was dragged is.
class XAPI XSelectTool final : public XViewTool
{
public:
    using XViewTool::XViewTool;
    void Cancel() override;

protected:
    void OnAny(const tagXToolEvent& event) override;
    void Press(const tagXToolEvent& event) override;
    void Move(const tagXToolEvent& event) override;
    void Release(const tagXToolEvent& event) override;
    void DoubleClick(const tagXToolEvent& event) override;

private:
    bool HitSelection(const tagXToolEvent& event);
    void Select(XvcObj& object, bool isJoining);
    void SelectInBand();
    bool RecordDrag();
};
