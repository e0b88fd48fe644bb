#pragma once

#include "edit/XCommandManager.h"
#include "edit/XCommandSet.h"
#include "foundation/surface/XBitmapInfo.h"
#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcRaster.h"

#include <deque>
#include <map>
#include <random>
#include <string>
#include <vector>

/// What the commands should do, told on plain vectors of plain values.
class XPlainCommands
{
public:
    struct Value
    {
        int id; // of the live object; clones have others
        char kind;
        int picture;
        int name;
        int x;
        int y;
    };
    struct Entry
    {
        std::size_t index;
        Value value;
        std::size_t layer;
    };
    struct Set
    {
        int type;
        int count;
        std::deque<Entry> entries;
    };
    struct Place
    {
        std::size_t layer;
        std::size_t index;
    };

    std::vector<std::vector<Value>> layers{2};
    std::vector<int> selection; // ids
    std::vector<Value> clipboard;
    std::deque<Set> undo;
    std::deque<Set> redo;
    std::map<int, int> counts[2]; // of clones that share a picture, a raster patch
    bool exact = true;            // every change so far is on a stack

    Place Find(int id) const
    {
        for (std::size_t layer = 0; layer < layers.size(); ++layer) {
            for (std::size_t i = 0; i < layers[layer].size(); ++i) {
                if (layers[layer][i].id == id) return {layer, i};
            }
        }
        return {layers.size(), 0};
    }

    Value Clone(Value value)
    {
        value.id = ++m_lastId;
        if (value.kind != 'p') ++counts[value.kind == 'r'][value.picture];
        return value;
    }
    void Destroy(const Value& value)
    {
        if (value.kind == 'p') return;
        auto& store = counts[value.kind == 'r'];
        const auto found = store.find(value.picture);
        if (found != store.end() && --found->second == 0) store.erase(found);
    }

    void Push(Set set)
    {
        undo.push_front(std::move(set));
        Clear(redo);
    }
    void Clear(std::deque<Set>& stack)
    {
        for (const Set& set : stack)
            DestroyEntries(set);
        stack.clear();
    }
    void DestroyEntries(const Set& set)
    {
        for (const Entry& entry : set.entries)
            Destroy(entry.value);
    }
    void Note(Set& set, const Place& at)
    {
        set.entries.push_front({at.index, Clone(layers[at.layer][at.index]), at.layer});
    }

    int Insert(char kind, int picture, int name, std::size_t layer)
    {
        layers[layer].push_back({++m_lastId, kind, picture, name, 0, 0});
        Set set{0, 1, {}};
        const int id = m_lastId;
        Note(set, Find(id));
        Push(std::move(set));
        return id;
    }
    void Move(bool commit, int dx)
    {
        Set set{1, 0, {}};
        for (const int id : selection) {
            const Place at = Find(id);
            Note(set, at);
            layers[at.layer][at.index].x += commit ? dx : 0;
            Note(set, at);
            ++set.count;
        }
        if (commit) {
            Push(std::move(set));
        } else {
            DestroyEntries(set);
        }
    }
    void Copy()
    {
        for (const int id : selection) {
            const Place at = Find(id);
            clipboard.push_back(Clone(layers[at.layer][at.index]));
        }
    }
    void Delete()
    {
        if (selection.empty()) return;
        Set set{2, 0, {}};
        for (const int id : selection) {
            const Place at = Find(id);
            Note(set, at);
            ++set.count;
            Destroy(Erase(at));
        }
        selection.clear();
        Push(std::move(set));
    }
    void Paste(int dx, int dy, std::size_t layer)
    {
        Set set{0, 0, {}};
        for (Value& value : clipboard) {
            value.x += dx;
            value.y -= dy;
            layers[layer].push_back(Clone(value));
            selection.push_back(layers[layer].back().id);
            Note(set, {layer, layers[layer].size() - 1});
            ++set.count;
        }
        Push(std::move(set));
    }
    void ClearClipboard()
    {
        for (const Value& value : clipboard)
            Destroy(value);
        clipboard.clear();
    }

    /// which: 0 front, 1 rear, 2 frontmost, 3 rearmost
    void Order(int which)
    {
        Set set{3, 0, {}};
        std::vector<int> walk = selection;
        if (which == 0 || which == 3) std::reverse(walk.begin(), walk.end());
        for (const int id : walk) {
            const Place at = Find(id);
            const std::size_t last = layers[at.layer].size() - 1;
            if ((which == 0 && at.index == last) || (which == 1 && at.index == 0)) {
                exact = exact && set.entries.empty();
                DestroyEntries(set);
                return;
            }
            const std::size_t to[] = {at.index + 1, at.index - 1, last, 0};
            Note(set, at);
            InsertAt({at.layer, to[which]}, Erase(at));
            Note(set, {at.layer, to[which]});
            set.count += 2;
        }
        Push(std::move(set));
    }

    void Undo()
    {
        if (undo.empty()) return;
        redo.push_front(undo.front());
        undo.pop_front();
        const Set set = redo.front();
        selection.clear();
        const auto count = static_cast<std::size_t>(set.count);
        for (std::size_t i = 0; i < count; i += set.type == 3 ? 2 : 1) {
            if (set.type == 0) Take(set.entries[i]);
            if (set.type == 1) Exchange(set.entries[2 * i + 1]);
            if (set.type == 2) Bring(set.entries[i]);
            if (set.type == 3) {
                Take(set.entries[i]);
                Bring(set.entries[i + 1]);
            }
        }
    }
    void Redo()
    {
        if (redo.empty()) return;
        undo.push_front(redo.front());
        redo.pop_front();
        const Set set = undo.front();
        selection.clear();
        const auto count = static_cast<std::size_t>(set.count);
        for (std::size_t i = 0; i < count; i += set.type == 3 ? 2 : 1) {
            if (set.type == 0) Bring(set.entries[count - 1 - i]);
            if (set.type == 1) Exchange(set.entries[2 * i]);
            if (set.type == 2) Take(set.entries[count - 1 - i]);
            if (set.type == 3) {
                Take(set.entries[count - i - 1]);
                Bring(set.entries[count - i - 2]);
            }
        }
    }

private:
    Value Erase(const Place& at)
    {
        auto& layer = layers[at.layer];
        const Value value = layer[at.index];
        layer.erase(layer.begin() + static_cast<std::ptrdiff_t>(at.index));
        return value;
    }
    void InsertAt(const Place& at, const Value& value)
    {
        auto& layer = layers[at.layer];
        layer.insert(layer.begin() + static_cast<std::ptrdiff_t>(at.index), value);
    }
    void Take(const Entry& entry)
    {
        if (entry.index < layers[entry.layer].size()) Destroy(Erase({entry.layer, entry.index}));
    }
    void Bring(const Entry& entry)
    {
        if (entry.index > layers[entry.layer].size()) return;
        InsertAt({entry.layer, entry.index}, Clone(entry.value));
        selection.insert(selection.begin(), layers[entry.layer][entry.index].id);
    }
    void Exchange(const Entry& entry)
    {
        if (entry.index >= layers[entry.layer].size()) return;
        Value& live = layers[entry.layer][entry.index];
        const Value former = live;
        live = Clone(entry.value);
        Destroy(former);
        selection.insert(selection.begin(), live.id);
    }

    int m_lastId = 0;
};
