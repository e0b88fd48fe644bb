#include "edit/XCommandManager.h"

#include "edit/XCommandEntries.h"
#include "edit/XCommandSet.h"
#include "edit/XLayerIndexes.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcRaster.h"
#include "foundation/vector/XvcTextBox.h"

#include <algorithm>
#include <stdexcept>

namespace {

void CheckEntry(const tagCommandSet& set, int entry)
{
    if (entry < 0 || entry >= set.indices.GetSize() || entry >= set.objects.GetSize() ||
        entry >= set.lists.GetSize()) {
        throw std::invalid_argument("a command set has fewer entries than its count");
    }
}

tagXLayerRef GetList(const tagCommandSet& set, int entry)
{
    return {static_cast<XvcLayer*>(set.lists[entry]),
            entry < set.numbers.GetSize() ? set.numbers[entry] : 0};
}

XvcObj* GetObject(const tagCommandSet& set, int entry)
{
    return static_cast<XvcObj*>(set.objects[entry]);
}

tagCommandSet* GetAbove(const XPtrArray& stack, int index)
{
    // the stack is at least as large as any index it has, so hosts get null here and rely on it
    if (stack.GetSize() >= index) return nullptr;
    return static_cast<tagCommandSet*>(stack.GetAt(index));
}

bool IsList(const XObject* object)
{
    return XfnIsExactly(object, "XvcBase") || XfnIsExactly(object, "XvcLayer") ||
           XfnIsExactly(object, "XObList");
}

} // namespace

XCommandManager::XCommandManager() = default;

XCommandManager::~XCommandManager()
{
    CancelModify();
    for (const auto& entries : m_forgotten)
        DestroyEntries(*entries);
    ClearRedoStack();
    ClearUndoStack();
    ClearBitmapWarehouse();
    ClearRasterWarehouse();
    ClearClipboard();
}

void XCommandManager::AddEntry(XCommandEntries& entries, int index, XvcObj* object, XvcLayer* layer)
{
    entries.Add(index, CloneObject(object), layer);
}

int XCommandManager::Register(XvcObj* object)
{
    XvcLayer* const layer = object ? object->GetParentLayer() : nullptr;
    if (!layer || !m_current) return 0;
    AddEntry(*m_current, GetIndexOfList(layer, object), object, layer);
    return 1;
}

void XCommandManager::StartModify()
{
    // callers that never closed theirs do not expect it back as a step
    if (m_current) m_forgotten.push_back(std::move(m_current));
    m_current = std::make_unique<XCommandEntries>(tagCommandSet::kModify);
}

int XCommandManager::RegisterObjBeforeModify(XvcObj* object)
{
    return Register(object);
}

int XCommandManager::RegisterObjAfterModify(XvcObj* object)
{
    if (!Register(object)) return 0;
    m_current->RaiseCount();
    return 1;
}

int XCommandManager::RegisterModified(const std::vector<XvcObj*>& objects,
                                      const std::vector<XvcObj*>& before)
{
    XLayerIndexes indexes;
    int entered = 0;
    for (std::size_t i = 0; i < before.size(); ++i) {
        XvcLayer* const layer = i < objects.size() ? objects[i]->GetParentLayer() : nullptr;
        int index = -1;
        if (!before[i] || !m_current || !layer || !indexes.Of(*layer).Find(objects[i], index)) {
            DestroyObject(before[i]);
            continue;
        }
        m_current->Add(index, before[i], layer);
        AddEntry(*m_current, index, objects[i], layer);
        m_current->RaiseCount();
        ++entered;
    }
    return entered;
}

void XCommandManager::EndModify()
{
    if (!m_current) return;
    Push(*m_current);
    m_current.reset();
}

void XCommandManager::CancelModify()
{
    if (!m_current) return;
    DestroyEntries(*m_current);
    m_current.reset();
}

void XCommandManager::Push(const XCommandEntries& entries)
{
    PushUndoStack(entries.MakeSet().release());
}

void XCommandManager::PushUndoStack(tagCommandSet* set)
{
    m_undoStack.InsertAt(0, set);
    ClearRedoStack();
}

tagCommandSet* XCommandManager::PushCommandSetInsert(XvcLayer* layer, XvcObj* object)
{
    XCommandEntries entries(tagCommandSet::kInsert);
    AddEntry(entries, layer->GetCount() - 1, object, layer);
    entries.RaiseCount();
    Push(entries);
    return static_cast<tagCommandSet*>(m_undoStack[0]);
}

tagCommandSet* XCommandManager::PushCommandSetModify(XvcObj* object, XvcObj* before)
{
    XvcLayer* const layer = object ? object->GetParentLayer() : nullptr;
    const int index = GetIndexOfList(layer, object);
    if (index < 0 || !before) {
        DestroyObject(before);
        return nullptr;
    }
    XCommandEntries entries(tagCommandSet::kModify);
    entries.Add(index, before, layer);
    AddEntry(entries, index, object, layer);
    entries.RaiseCount();
    Push(entries);
    return static_cast<tagCommandSet*>(m_undoStack[0]);
}

int XCommandManager::RenewCommandSetInsert(XvcObj* object)
{
    if (m_undoStack.IsEmpty() || !object) return 0;
    auto& set = *static_cast<tagCommandSet*>(m_undoStack[0]);
    if (set.type != tagCommandSet::kInsert || set.objects.GetSize() != 1 ||
        set.lists[0] != object->GetParentLayer() ||
        GetAtList(object->GetParentLayer(), set.indices[0]) != object)
        return 0;
    XvcObj* const clone = CloneObject(object);
    if (!clone) return 0;
    DestroyObject(GetObject(set, 0));
    set.objects[0] = clone;
    return 1;
}

// Puts a clone of an entry's object into its layer.
XvcObj* XCommandManager::Bring(const tagCommandSet& set, int entry, XLayerIndexes& indexes)
{
    CheckEntry(set, entry);
    XvcLayer* const layer = static_cast<XvcLayer*>(set.lists[entry]);
    if (set.indices[entry] < 0 || set.indices[entry] > layer->GetCount()) return nullptr;
    XvcObj* const clone = CloneObject(GetObject(set, entry));
    if (clone) indexes.Of(*layer).InsertAt(set.indices[entry], clone);
    return clone;
}

// Destroys the live object at an entry's place.
void XCommandManager::Take(const tagCommandSet& set, int entry, XLayerIndexes& indexes)
{
    CheckEntry(set, entry);
    // what has no clone did not come back, so another object stands in its place
    if (!GetObject(set, entry)) return;
    XvcLayer* const layer = static_cast<XvcLayer*>(set.lists[entry]);
    XLayerIndex& index = indexes.Of(*layer);
    __POSITION* const place = index.PositionAt(set.indices[entry]);
    if (!place) return;
    XvcObj* const object = static_cast<XvcObj*>(layer->GetAt(place));
    index.RemoveAt(set.indices[entry]);
    DestroyObject(object);
}

// The entry of a text box that is about to be taken away holds it as it is now.
void XCommandManager::KeepTyping(tagCommandSet& set, int entry, XLayerIndexes& indexes)
{
    CheckEntry(set, entry);
    XvcObj* const kept = GetObject(set, entry);
    if (!dynamic_cast<XvcTextBox*>(kept)) return;
    XvcLayer* const layer = static_cast<XvcLayer*>(set.lists[entry]);
    __POSITION* const place = indexes.Of(*layer).PositionAt(set.indices[entry]);
    auto* const box = place ? dynamic_cast<XvcTextBox*>(layer->GetAt(place)) : nullptr;
    XvcObj* const clone = CloneObject(box);
    if (!clone) return;
    DestroyObject(kept);
    set.objects[entry] = clone;
}

// Both states of a text box whose text a step left alone hold the text that it has now.
void XCommandManager::KeepTypingBeside(const tagCommandSet& set, int from, int to,
                                       XLayerIndexes& indexes)
{
    CheckEntry(set, from);
    CheckEntry(set, to);
    auto* const former = dynamic_cast<XvcTextBox*>(GetObject(set, from));
    auto* const other = dynamic_cast<XvcTextBox*>(GetObject(set, to));
    if (!former || !other || !(former->GetRichText() == other->GetRichText())) return;
    XvcLayer* const layer = static_cast<XvcLayer*>(set.lists[from]);
    __POSITION* const place = indexes.Of(*layer).PositionAt(set.indices[from]);
    const auto* const box = place ? dynamic_cast<XvcTextBox*>(layer->GetAt(place)) : nullptr;
    if (!box) return;
    const XRichText text = box->GetRichText();
    former->SetRichText(text);
    other->SetRichText(text);
}

void XCommandManager::Exchange(const tagCommandSet& set, int entry, XLayerIndexes& indexes,
                               XObList& selection)
{
    CheckEntry(set, entry);
    XvcLayer* const layer = static_cast<XvcLayer*>(set.lists[entry]);
    XLayerIndex& index = indexes.Of(*layer);
    __POSITION* const place = index.PositionAt(set.indices[entry]);
    XvcObj* const clone = place ? CloneObject(GetObject(set, entry)) : nullptr;
    if (!clone) return;
    XvcObj* const former = static_cast<XvcObj*>(layer->GetAt(place));
    index.SetAt(set.indices[entry], clone);
    DestroyObject(former);
    selection.AddHead(clone);
}

void XCommandManager::Reorder(const tagCommandSet& set, int from, int to, XLayerIndexes& indexes,
                              XObList& selection)
{
    KeepTypingBeside(set, from, to, indexes);
    XvcObj* moved = nullptr;
    if (GetObject(set, to)) {
        Take(set, from, indexes);
        moved = Bring(set, to, indexes);
    } else {
        // an object that has no clone moves itself: it would be lost otherwise
        XvcLayer* const layer = static_cast<XvcLayer*>(set.lists[from]);
        XLayerIndex& index = indexes.Of(*layer);
        __POSITION* const place = index.PositionAt(set.indices[from]);
        moved = place ? static_cast<XvcObj*>(layer->GetAt(place)) : nullptr;
        index.RemoveAt(set.indices[from]);
        index.InsertAt(set.indices[to], moved);
    }
    if (moved) selection.AddHead(moved);
}

void XCommandManager::Undo(XObList* selection)
{
    if (m_undoStack.IsEmpty()) return;
    tagCommandSet* const set = static_cast<tagCommandSet*>(m_undoStack[0]);
    m_undoStack.RemoveAt(0);
    m_redoStack.InsertAt(0, set);
    selection->RemoveAll();
    XLayerIndexes indexes;
    const int count = set->count;
    switch (set->type) {
    case tagCommandSet::kInsert:
        for (int i = 0; i < count; ++i) {
            KeepTyping(*set, i, indexes);
            Take(*set, i, indexes);
        }
        break;
    case tagCommandSet::kDelete:
        for (int i = 0; i < count; ++i) {
            if (XvcObj* const object = Bring(*set, i, indexes)) selection->AddHead(object);
        }
        break;
    case tagCommandSet::kModify:
        for (int i = 0; i < count; ++i) {
            KeepTypingBeside(*set, 2 * i, 2 * i + 1, indexes);
            Exchange(*set, 2 * i + 1, indexes, *selection);
        }
        break;
    case tagCommandSet::kOrder:
        for (int k = 0; k < count; k += 2)
            Reorder(*set, k, k + 1, indexes, *selection);
        break;
    default:
        break;
    }
}

void XCommandManager::Redo(XObList* selection)
{
    if (m_redoStack.IsEmpty()) return;
    tagCommandSet* const set = static_cast<tagCommandSet*>(m_redoStack[0]);
    m_redoStack.RemoveAt(0);
    m_undoStack.InsertAt(0, set);
    selection->RemoveAll();
    XLayerIndexes indexes;
    const int count = set->count;
    switch (set->type) {
    case tagCommandSet::kInsert:
        for (int i = count - 1; i >= 0; --i) {
            if (XvcObj* const object = Bring(*set, i, indexes)) selection->AddHead(object);
        }
        break;
    case tagCommandSet::kDelete:
        for (int i = count - 1; i >= 0; --i) {
            KeepTyping(*set, i, indexes);
            Take(*set, i, indexes);
        }
        break;
    case tagCommandSet::kModify:
        for (int i = 0; i < count; ++i) {
            KeepTypingBeside(*set, 2 * i + 1, 2 * i, indexes);
            Exchange(*set, 2 * i, indexes, *selection);
        }
        break;
    case tagCommandSet::kOrder:
        for (int k = count; k >= 2; k -= 2)
            Reorder(*set, k - 1, k - 2, indexes, *selection);
        break;
    default:
        break;
    }
}

tagCommandSet* XCommandManager::GetUndoCommandAt(int index) const
{
    return GetAbove(m_undoStack, index);
}

tagCommandSet* XCommandManager::GetRedoCommandAt(int index) const
{
    return GetAbove(m_redoStack, index);
}

void XCommandManager::DestroyEntries(const XCommandEntries& entries)
{
    for (const XCommandEntries::Entry& entry : entries.GetEntries())
        DestroyObject(entry.clone);
}

void XCommandManager::DestroySet(tagCommandSet* set)
{
    for (int i = 0; i < set->objects.GetSize(); ++i)
        DestroyObject(GetObject(*set, i));
    delete set;
}

void XCommandManager::DeleteLastCommand()
{
    if (m_undoStack.IsEmpty()) return;
    tagCommandSet* const set = static_cast<tagCommandSet*>(m_undoStack[0]);
    m_undoStack.RemoveAt(0);
    DestroySet(set);
}

void XCommandManager::ClearStack(XPtrArray& stack)
{
    for (void* set : stack)
        DestroySet(static_cast<tagCommandSet*>(set));
    stack.RemoveAll();
}

void XCommandManager::ClearUndoStack()
{
    ClearStack(m_undoStack);
}

void XCommandManager::ClearRedoStack()
{
    ClearStack(m_redoStack);
}

void XCommandManager::ClearUndoRedoStack()
{
    ClearUndoStack();
    ClearRedoStack();
    ClearBitmapWarehouse();
    ClearClipboard();
}

std::vector<tagXLayerRef> XCommandManager::GetLayers() const
{
    std::vector<tagXLayerRef> layers;
    const auto add = [&layers](const tagXLayerRef& list) {
        if (layers.empty() || !(layers.back() == list)) layers.push_back(list);
    };
    for (const XPtrArray* stack : {&m_undoStack, &m_redoStack}) {
        for (void* element : *stack) {
            const auto& set = *static_cast<const tagCommandSet*>(element);
            for (int i = 0; i < set.lists.GetSize(); ++i)
                add(GetList(set, i));
        }
    }
    if (m_current)
        for (const XCommandEntries::Entry& entry : m_current->GetEntries())
            add(entry.list);
    std::sort(layers.begin(), layers.end());
    layers.erase(std::unique(layers.begin(), layers.end()), layers.end());
    return layers;
}

void XCommandManager::ForgetLayer(XvcLayer* layer, std::uint64_t number)
{
    const tagXLayerRef list{layer, number};
    ForgetLayerIn(m_undoStack, list);
    ForgetLayerIn(m_redoStack, list);
    if (!m_current) return;
    for (const XCommandEntries::Entry& entry : m_current->Take(list))
        DestroyObject(entry.clone);
}

void XCommandManager::ForgetLayerIn(XPtrArray& stack, const tagXLayerRef& list)
{
    for (int i = stack.GetSize() - 1; i >= 0; --i) {
        auto* const set = static_cast<tagCommandSet*>(stack[i]);
        const int size = set->lists.GetSize();
        int kept = 0;
        set->numbers.SetSize(size);
        for (int from = 0; from < size; ++from) {
            const tagXLayerRef at = GetList(*set, from);
            if (at.layer == list.layer && (!list.number || at.number == list.number)) {
                DestroyObject(GetObject(*set, from));
                continue;
            }
            set->indices[kept] = set->indices[from];
            set->objects[kept] = set->objects[from];
            set->lists[kept] = set->lists[from];
            set->numbers[kept] = at.number;
            ++kept;
        }
        if (kept == size) continue;
        const int dropped = size - kept;
        set->count -= set->type == tagCommandSet::kModify ? dropped / 2 : dropped;
        set->indices.SetSize(kept);
        set->objects.SetSize(kept);
        set->lists.SetSize(kept);
        set->numbers.SetSize(kept);
        if (kept > 0) continue;
        stack.RemoveAt(i);
        delete set;
    }
}

int XCommandManager::GetIndexOfList(const XObList* list, const XObject* object)
{
    if (!list) return -1;
    int index = 0;
    for (__POSITION* place = list->GetHeadPosition(); place; ++index) {
        if (list->GetNext(place) == object) return index;
    }
    return -1;
}

__POSITION* XCommandManager::GetPositionOfList(const XObList* list, const XObject* object)
{
    return list ? list->Find(const_cast<XObject*>(object)) : nullptr;
}

XObject* XCommandManager::GetAtList(const XObList* list, int index)
{
    __POSITION* const place = GetPositionFromListIndex(list, index);
    return place ? list->GetAt(place) : nullptr;
}

__POSITION* XCommandManager::GetPositionFromListIndex(const XObList* list, int index)
{
    return list ? list->FindIndex(index) : nullptr;
}

void XCommandManager::InsertAtList(XvcLayer* list, int index, XvcObj* object)
{
    if (list) XLayerIndex(*list).InsertAt(index, object);
}

void XCommandManager::SetAtList(XvcLayer* list, int index, XvcObj* object)
{
    __POSITION* const place = object ? GetPositionFromListIndex(list, index) : nullptr;
    if (!place) return;
    DestroyObject(static_cast<XvcObj*>(list->GetAt(place)));
    list->SetAt(place, object);
}

XObList* XCommandManager::GetParentList(XObList* list, const XObject* object)
{
    if (!list) return nullptr;
    if (GetPositionOfList(list, object)) return list;
    for (__POSITION* place = list->GetHeadPosition(); place;) {
        XObject* const element = list->GetNext(place);
        if (!IsList(element)) continue;
        if (XObList* const found = GetParentList(static_cast<XObList*>(element), object)) {
            return found;
        }
    }
    return nullptr;
}
