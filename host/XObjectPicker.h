#pragma once

#include "host/XVectorStack.h"

#include <functional>
#include <vector>

class XHostView;

/// The one object of the vector files that is selected in the view: chosen by a click or by name,
/// shown with its outline, and forgotten before it goes or is hidden. Both parts outlive the picker.
/// User interface thread.
class XObjectPicker
{
public:
    XObjectPicker(XHostView& view, XVectorStack& vectors);

    /// Called when another object is selected, or what is told of it may have changed.
    void AddObserver(std::function<void()> observer);

    /// Selects the frontmost object within some pixels, or nothing where there is none.
    void PickAt(int xPx, int yPx);
    XvcObj* FindAt(int xPx, int yPx) const; ///< what PickAt would select
    void Select(XvcObj* object);            ///< null for nothing
    bool Clear();                           ///< false when nothing was selected
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

    XHostView& m_view;
    XVectorStack& m_vectors;
    XvcObj* m_object = nullptr;
    std::vector<std::function<void()>> m_observers;
};
