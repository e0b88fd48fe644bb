#pragma once

#include <functional>

class XHostView;
class XvcObj;

/// Changes of the objects that are selected in the view, one step of undo each. What is being typed
/// ends first. The view is drawn anew; the caller follows as after any edit.

/// Runs `change` on each object that undo can bring back.
/// @return false when there is none
bool XfnChangeSelection(XHostView& view, const std::function<void(XvcObj&)>& change);

/// Opens the colours and styles of one selected object of any class, also of a text box, of which a
/// double click opens the text.
/// @return false when it is cancelled, and nothing is changed
bool XfnEditLook(XHostView& view);
