#include "host/XEditLedger.h"

#include "edit/XCommandManager.h"
#include "edit/XCommandSet.h"
#include "foundation/vector/XvcLayer.h"
#include "host/XVectorStack.h"
#include "view/XLayerWalk.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

XEditLedger::XEditLedger(XCommandManager& commands, XVectorStack& vectors)
    : m_commands(commands), m_vectors(vectors)
{}

XEditLedger::Steps XEditLedger::Number(XPtrArray& stack)
{
    Steps numbers;
    numbers.reserve(static_cast<std::size_t>(stack.GetSize()));
    for (int i = 0; i < stack.GetSize(); ++i) {
        auto& step = *static_cast<tagCommandSet*>(stack[i]);
        if (step.reserved[0] == 0) {
            step.reserved[0] = m_next++;
            auto& layers = m_layersOf[step.reserved[0]];
            for (int entry = 0; entry < step.lists.GetSize(); ++entry)
                layers.push_back(static_cast<const XvcLayer*>(step.lists[entry]));
            std::sort(layers.begin(), layers.end());
            layers.erase(std::unique(layers.begin(), layers.end()), layers.end());
        }
        numbers.push_back(step.reserved[0]);
    }
    return numbers;
}

bool XEditLedger::Follow()
{
    Steps undo = Number(*m_commands.GetUndoStack());
    if (undo == m_undo) return false;
    m_undo = std::move(undo);
    const Steps redo = Number(*m_commands.GetRedoStack());
    std::unordered_set<int> standing(m_undo.begin(), m_undo.end());
    standing.insert(redo.begin(), redo.end());
    std::erase_if(m_layersOf, [&](const auto& step) { return !standing.contains(step.first); });
    Mark();
    return true;
}

void XEditLedger::Mark()
{
    std::map<const XvcLayer*, Steps> now;
    for (const int step : m_undo)
        for (const XvcLayer* layer : m_layersOf[step])
            now[layer].push_back(step);
    for (int i = 0; i < m_vectors.GetCount(); ++i) {
        const tagXVectorFile& file = *m_vectors.GetAt(i);
        for (XvcLayer* layer : XfnListLayers(*file.base)) {
            if (now[layer] == m_seen[layer]) continue;
            m_vectors.NoteChange(i);
            const auto at =
                std::find_if(file.layers.begin(), file.layers.end(),
                             [&](const tagXVectorLayer& listed) { return listed.layer == layer; });
            if (at == file.layers.end()) // one deeper in the file has no row of its own
                m_vectors.SetEdited({i, -1}, true);
            else
                m_vectors.SetEdited({i, static_cast<int>(at - file.layers.begin())},
                                    now[layer] != m_saved[layer]);
        }
    }
    m_seen = std::move(now);
}

void XEditLedger::SetSaved(int index)
{
    const tagXVectorFile* file = m_vectors.GetAt(index);
    if (!file) return;
    Follow();
    for (const XvcLayer* layer : XfnListLayers(*file->base))
        m_saved[layer] = m_seen[layer];
}

void XEditLedger::Forget(XObList& layerOrBase)
{
    for (const XvcLayer* layer : XfnListLayers(layerOrBase)) {
        m_seen.erase(layer);
        m_saved.erase(layer);
        for (auto& step : m_layersOf)
            std::erase(step.second, layer);
    }
}
