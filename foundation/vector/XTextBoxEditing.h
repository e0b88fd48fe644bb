#pragma once

#include "foundation/vector/XTextEditor.h"

class XvcTextBox;

/// A text box in edit mode: the editor, and what of it comes back. Internal to text boxes.
class XTextBoxEditing final : public XTextEditorClient
{
public:
    XTextBoxEditing(XvcTextBox& box, double worldPerPixel)
        : m_box(box), m_worldPerPixel(worldPerPixel)
    {}

    bool Begin();
    XvcTextBox& GetBox() const { return m_box; }
    XTextEditor& GetEditor() const { return *m_editor; }
    double GetWorldPerPixel() const { return m_worldPerPixel; }

    void OnEditorChanged() override;
    void OnEditorDone() override;

private:
    XvcTextBox& m_box;
    double m_worldPerPixel;
    std::unique_ptr<XTextEditor> m_editor;
};
