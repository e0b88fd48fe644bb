#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"
#include "foundation/base/XString.h"
#include "foundation/platform/XWindowMessages.h"

#include <functional>

class XObList;
class XvcObj;
struct tagXTextStyle;

/// Which dialog edits an object's members.
enum class XObjectDialog {
    Point,
    Line,
    Polyline,
    Polygon,
    Polypoint,
    Ellipse,
    Bitmap,
    Text,
    Bspline,
    Symbol,
    Arc,
    Rect,
    ArcClosed,
    Raster,
    NorthArrow,
    Object, ///< what all objects have
    Group   ///< of several objects at once
};

/// What a dialog of objects is opened with, and what it answers besides its result.
struct tagXObjectDialogCall
{
    XObjectDialog dialog = XObjectDialog::Object;
    XHWND owner = 0;                  ///< the view
    XvcObj* object = nullptr;         ///< edited in place; null for a group
    const XObList* objects = nullptr; ///< of a group
    int isNew = 0;                    ///< a tool asks whether what was just drawn stays
    int endShapeID = 0;               ///< of a line: in and out
    /// Answers false once the objects may not be read any more, for what runs meanwhile (a timer, a
    /// job that ends) may undo them; empty: they outlive the dialog.
    std::function<bool()> areThere{};
};

/// Where a line of text is typed over a view. Screen pixels.
struct tagXTextInputCall
{
    XHWND owner = 0;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    const tagXTextStyle* style = nullptr;
    tagXColor color = 0;
};

/// The dialogs of vector objects as the view's tools know them; they stand in a folder above.
///
/// A dialog changes the object only when it is confirmed, and ends as cancelled when the object goes
/// before. Without a service bound tools keep what was drawn without asking, and a double click
/// edits nothing.
/// Bind before the first view is created, and unbind after the last; user interface thread only.
class XAPI XObjectDialogs
{
public:
    virtual ~XObjectDialogs() = default;

    /// Runs a dialog modally. @return 1 when it was confirmed
    virtual int DoModal(tagXObjectDialogCall& call) = 0;
    /// Runs the text entry. @return 1 when it was confirmed; the text may then be empty
    virtual int InputText(const tagXTextInputCall& call, XString& text) = 0;
    /// Objects of some view have gone: open dialogs ask areThere, and are cancelled where they are
    /// not.
    virtual void CheckObjects() {}

    static XObjectDialogs* Get();             ///< null when none is bound
    static void Set(XObjectDialogs* dialogs); ///< lent
};
