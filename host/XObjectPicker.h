#pragma once

#include "host/XHostView.h"
#include "host/XObjectHits.h"

#include <functional>
#include <vector>

/// The one object of the vector files that is selected in the view: chosen by a click or by name,
/// shown with its outline, and forgotten before it goes or is hidden. Both parts outlive the picker.
/// User interface thread.
class XObjectPicker
{
public:
    XObjectPicker(XHostView& view, XVectorStack& vectors);

    /// Called when another object is selected, or what is told of it may have changed.
    void AddObserver(std::function<void()> observer);

    /// Asked which file or layer is preferred where several have an object.
    void SetPreferred(std::function<tagXVectorPlace()> preferred)
    {
        m_preferred = std::move(preferred);
    }
    /// Selects the frontmost object within some pixels, or nothing where there is none. Where the
    /// object there is selected by a click at that very place, selects the one below it.
    void PickAt(int xPx, int yPx);
    XvcObj* FindAt(int xPx, int yPx) const; ///< what a first click selects
    /// The same at a world point, within tolerances in world lengths.
    XvcObj* FindAt(const tagXClickPlace& place, tagXHitFlag& hit) const;
    /// What a click on `selected` means, which it selected or left selected: the object below when
    /// the last one was there too, else null. Remembers the place.
    XvcObj* ClickAgain(int xPx, int yPx, const XvcObj* selected);
    /// Whether an object is hit at a pixel; it is compared only.
    bool IsAt(int xPx, int yPx, const XvcObj* object) const;
    /// The name of the front locked layer that has an object there; empty for none.
    QString FindLockedAt(int xPx, int yPx, XvcObj*& object, tagXVectorPlace& layer) const;
    const XObList& GetSelection() const { return *m_view.GetSelectedObj(); } ///< of several, too
    void Select(XvcObj* object);                                             ///< null for nothing
    bool Clear(); ///< false when nothing was selected
    /// What the view's own tools left selected: that object when it is one alone, else none.
    void FollowView();
    void Drop(); ///< forgets the object, which is about to go; the view's selection stays
    XvcObj* GetObject() const { return m_object; }
    tagXVectorPlace GetPlace() const; ///< of the object
    bool GetExtent(double (&box)[4]) const;

    /// A tool that empties the view's selection leaves this one as it is: shows it again.
    void KeepShown();

private:
    void Follow(LayerChange change);
    void Tell();
    tagXClickPlace GetPlaceAt(int xPx, int yPx) const;

    XHostView& m_view;
    XVectorStack& m_vectors;
    XvcObj* m_object = nullptr;
    std::function<tagXVectorPlace()> m_preferred;
    tagXClickPlace m_clicked;
    const XvcObj* m_clickedObject = nullptr; // compared only
    std::vector<std::function<void()>> m_observers;
};
