#include "foundation/vector/XTextEditor.h"

#include <utility>

namespace {
XTextEditorFactory g_factory = nullptr;
}

XTextEditorClient::~XTextEditorClient() = default;

XTextEditor::~XTextEditor() = default;

XTextEditorFactory XfnSetTextEditorFactory(XTextEditorFactory factory)
{
    return std::exchange(g_factory, factory);
}

std::unique_ptr<XTextEditor> XfnNewTextEditor()
{
    return g_factory ? g_factory() : nullptr;
}
