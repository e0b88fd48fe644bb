#include "edit/XCommandManager.h"

#include "edit/XCommandEntries.h"
#include "edit/XCommandSet.h"
#include "edit/XLayerIndexes.h"
#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcFactory.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcRaster.h"

#include <algorithm>
#include <cstring>

namespace {

// What the tools make and edit. Composite objects and those of plots are not among them.
constexpr const char* kEditableClasses[] = {
    "XvcPoint",      "XvcMPoint",   "XvcLine",     "XvcMLine",     "XvcPolyline",  "XvcMPolyline",
    "XvcBspline",    "XvcPolygon",  "XvcMPolygon", "XvcEllipse",   "XvcText",      "XvcMText",
    "XvcBitmap",     "XvcSymbol",   "XvcArc",      "XvcRectangle", "XvcArcClosed", "XvcRaster",
    "XvcNorthArrow", "XvcScaleBar", "XvcTextBox",  "XvcBalloon",
};

} // namespace

int XCommandManager::CanClone(const XvcObj* object)
{
    if (!object) return 0;
    // objects of a class come together
    static thread_local const XRuntimeClass* lastClass = nullptr;
    static thread_local int lastAnswer = 0;
    if (object->GetRuntimeClass() == lastClass) return lastAnswer;
    lastClass = object->GetRuntimeClass();
    const char* const name = lastClass->m_lpszClassName;
    lastAnswer = std::any_of(std::begin(kEditableClasses), std::end(kEditableClasses),
                             [&](const char* known) { return std::strcmp(known, name) == 0; });
    return lastAnswer;
}

XvcObj* XCommandManager::CloneObject(const XvcObj* object)
{
    if (!CanClone(object)) return nullptr;
    XvcObj* const clone = XfnCloneVectorObject(object).release();
    if (!clone) return nullptr;
    clone->CalcRange();
    if (XfnIsExactly(clone, "XvcBitmap")) {
        AddBitmapToWarehouse(static_cast<XvcBitmap*>(clone));
    } else if (XfnIsExactly(clone, "XvcRaster")) {
        AddRasterToWarehouse(static_cast<XvcRaster*>(clone));
    }
    return clone;
}

void XCommandManager::DestroyObject(XvcObj* object)
{
    if (XfnIsExactly(object, "XvcBitmap")) {
        DeleteBitmapAtWarehouse(static_cast<XvcBitmap*>(object));
    } else if (XfnIsExactly(object, "XvcRaster")) {
        DeleteRasterAtWarehouse(static_cast<XvcRaster*>(object));
    } else {
        delete object;
    }
}

void XCommandManager::AddBitmapToWarehouse(const XvcBitmap* bitmap)
{
    m_bitmaps.Add(bitmap->GetBits(), bitmap->GetBitmapInfo());
}

void XCommandManager::AddRasterToWarehouse(const XvcRaster* raster)
{
    m_rasters.AddByPixels(raster->GetData());
}

void XCommandManager::DeleteBitmapAtWarehouse(XvcBitmap* bitmap)
{
    m_bitmaps.Release(bitmap->GetBits(), bitmap->GetBitmapInfo());
    delete bitmap;
}

void XCommandManager::DeleteRasterAtWarehouse(XvcRaster* raster)
{
    const bool wasEmpty = m_rasters.IsEmpty();
    const int before = m_rasters.ReleaseByPixels(raster->GetData());
    if (before == 0 && !wasEmpty) {
        // not known here, so it may be somebody else's: it stays alive as long as the manager
        m_keptRasters.emplace_back(raster);
        return;
    }
    delete raster;
}

void XCommandManager::Copy(const XObList* list)
{
    for (__POSITION* place = list->GetHeadPosition(); place;)
        m_clipboard.AddTail(CloneObject(static_cast<const XvcObj*>(list->GetNext(place))));
}

void XCommandManager::Cut(XObList* list)
{
    Copy(list);
    Delete(list);
}

void XCommandManager::Delete(XObList* list)
{
    if (list->IsEmpty()) return;
    XCommandEntries entries(tagCommandSet::kDelete);
    XLayerIndexes indexes;
    while (!list->IsEmpty()) {
        XvcObj* const object = static_cast<XvcObj*>(list->RemoveHead());
        XvcLayer* const layer = object->GetParentLayer();
        if (!layer) continue;
        // each index holds at the moment of its deletion, which undoing relies on
        int index = -1;
        if (!indexes.Of(*layer).Find(object, index)) continue;
        AddEntry(entries, index, object, layer);
        entries.RaiseCount();
        indexes.Of(*layer).RemoveAt(index);
        DestroyObject(object);
    }
    Push(entries);
}

void XCommandManager::Paste(double dx, double dy, XObList* selection, XvcLayer* layer)
{
    XCommandEntries entries(tagCommandSet::kInsert);
    for (__POSITION* place = m_clipboard.GetHeadPosition(); place;) {
        XvcObj* const source = static_cast<XvcObj*>(m_clipboard.GetNext(place));
        if (!source) continue; // a copy of what cannot be cloned
        source->MoveObject(dx, -dy, 0.0);
        source->CalcRange();
        XvcObj* const object = CloneObject(source);
        layer->AddTail(object);
        AddEntry(entries, layer->GetCount() - 1, source, layer);
        entries.RaiseCount();
        selection->AddTail(object);
        object->CalcRange();
    }
    Push(entries);
}

void XCommandManager::ClearClipboard()
{
    while (!m_clipboard.IsEmpty())
        DestroyObject(static_cast<XvcObj*>(m_clipboard.RemoveHead()));
    m_clipboard.RemoveAll();
}

void XCommandManager::MoveToFront(XObList* list)
{
    MoveByOne(list, true);
}

void XCommandManager::MoveToRear(XObList* list)
{
    MoveByOne(list, false);
}

void XCommandManager::MoveToFrontmost(XObList* list)
{
    MoveToEnd(list, true);
}

void XCommandManager::MoveToRearmost(XObList* list)
{
    MoveToEnd(list, false);
}

// The object nearest to where all go moves first, so that none jumps over another of the list.
void XCommandManager::MoveByOne(XObList* list, bool towardsFront)
{
    XCommandEntries entries(tagCommandSet::kOrder);
    XLayerIndexes indexes;
    __POSITION* place = towardsFront ? list->GetTailPosition() : list->GetHeadPosition();
    while (place) {
        XvcObj* const object =
            static_cast<XvcObj*>(towardsFront ? list->GetPrev(place) : list->GetNext(place));
        XvcLayer* const layer = object->GetParentLayer();
        int from = -1;
        if (!layer || !indexes.Of(*layer).Find(object, from)) continue;
        const int to = towardsFront ? from + 1 : from - 1;
        if (to < 0 || to >= layer->GetCount()) {
            DestroyEntries(entries);
            return;
        }
        AddEntry(entries, from, object, layer);
        indexes.Of(*layer).RemoveAt(from);
        indexes.Of(*layer).InsertAt(to, object);
        AddEntry(entries, to, object, layer);
        entries.RaiseCount(2);
    }
    Push(entries);
}

void XCommandManager::MoveToEnd(XObList* list, bool towardsFront)
{
    XCommandEntries entries(tagCommandSet::kOrder);
    XLayerIndexes indexes;
    __POSITION* place = towardsFront ? list->GetHeadPosition() : list->GetTailPosition();
    while (place) {
        XvcObj* const object =
            static_cast<XvcObj*>(towardsFront ? list->GetNext(place) : list->GetPrev(place));
        XvcLayer* const layer = object->GetParentLayer();
        int from = -1;
        if (!layer || !indexes.Of(*layer).Find(object, from)) continue;
        const int to = towardsFront ? layer->GetCount() - 1 : 0;
        AddEntry(entries, from, object, layer);
        indexes.Of(*layer).RemoveAt(from);
        indexes.Of(*layer).InsertAt(to, object);
        AddEntry(entries, to, object, layer);
        entries.RaiseCount(2);
    }
    Push(entries);
}
