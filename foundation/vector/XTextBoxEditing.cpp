#include "foundation/vector/XTextBoxEditing.h"

#include "foundation/vector/XvcTextBox.h"

bool XTextBoxEditing::Begin()
{
    m_editor = XfnNewTextEditor();
    return m_editor && m_editor->Begin(m_box.GetEditorSetup(), m_box.m_text, this);
}

void XTextBoxEditing::OnEditorChanged()
{
    m_box.Touch();
    m_box.FollowEditor();
}

void XTextBoxEditing::OnEditorDone()
{
    m_box.EndEditMode(); // destroys this object
}
