#pragma once

#include "foundation/vector/XvcLine.h"
#include "vecprop/XObjectDlg.h"

/// Edits a line: its two vertices, the shapes at its ends and its stroke.
///
/// Who opens it takes the shape at the end over from GetEndShapeID after an OK; the rest is written
/// by the dialog.
class XAPI XvcLineDlg : public XObjectDlg
{
public:
    explicit XvcLineDlg(XvcLine* line, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Line, {line}, parent)
    {}
    /// The id of the shape that is chosen for the end, XLineEndShape.
    int GetEndShapeID() const
    {
        return static_cast<const XvcLine&>(GetModel().GetDraft()).GetEndShapeID();
    }
};
