#include "host/XVectorStack.h"

#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/vector/XHitFlag.h"
#include "foundation/vector/XvcLayer.h"
#include "host/XVectorLook.h"
#include "host/XVectorReader.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace {

constexpr int kUnknownCoordinates = 2;

template <class Items>
void Shift(Items& items, int from, int to)
{
    const auto begin = items.begin();
    if (from < to)
        std::rotate(begin + from, begin + from + 1, begin + to + 1);
    else
        std::rotate(begin + to, begin + from, begin + from + 1);
}

} // namespace

XVectorStack::XVectorStack(XObList* shown, XDMCompManager* manager)
    : m_shown(shown), m_manager(manager)
{}

XVectorStack::~XVectorStack()
{
    m_observers.clear(); // those who watched may have gone already
    m_leaving = nullptr;
    CloseAll();
}

void XVectorStack::AddObserver(std::function<void(LayerChange)> observer)
{
    m_observers.push_back(std::move(observer));
}

void XVectorStack::Tell(LayerChange change)
{
    for (const auto& observer : m_observers)
        observer(change);
}

const tagXVectorFile* XVectorStack::GetAt(int file) const
{
    return file >= 0 && file < GetCount() ? m_files[static_cast<std::size_t>(file)].get() : nullptr;
}

tagXVectorFile* XVectorStack::Get(int file)
{
    return const_cast<tagXVectorFile*>(GetAt(file));
}

const tagXVectorLayer* XVectorStack::GetLayerAt(tagXVectorPlace place) const
{
    const tagXVectorFile* file = GetAt(place.file);
    const bool isThere =
        file && place.layer >= 0 && place.layer < static_cast<int>(file->layers.size());
    return isThere ? &file->layers[static_cast<std::size_t>(place.layer)] : nullptr;
}

bool XVectorStack::IsPlace(tagXVectorPlace place) const
{
    return place.layer < 0 ? GetAt(place.file) != nullptr : GetLayerAt(place) != nullptr;
}

std::vector<const tagXVectorLayer*> XVectorStack::GetLayers(tagXVectorPlace place) const
{
    std::vector<const tagXVectorLayer*> layers;
    if (const tagXVectorLayer* one = GetLayerAt(place)) {
        layers.push_back(one);
    } else if (const tagXVectorFile* file = GetAt(place.file); file && place.layer < 0) {
        for (const tagXVectorLayer& layer : file->layers)
            layers.push_back(&layer);
    }
    return layers;
}

std::vector<tagXVectorLayer*> XVectorStack::GetLayers(tagXVectorPlace place)
{
    std::vector<tagXVectorLayer*> layers;
    for (const tagXVectorLayer* layer : std::as_const(*this).GetLayers(place))
        layers.push_back(const_cast<tagXVectorLayer*>(layer));
    return layers;
}

bool XVectorStack::HasPlaced() const
{
    return std::any_of(m_files.begin(), m_files.end(),
                       [](const auto& file) { return file->isPlaced; });
}

XSpatialReference XVectorStack::GetWorld() const
{
    const bool isFree = m_manager->GetNumberOfXDMComposite() == 0 && !HasPlaced();
    return isFree ? XSpatialReference() : *m_manager->GetSR();
}

QString XVectorStack::MakeName(const QString& name, const tagXVectorFile* self) const
{
    QString free = name;
    for (int number = 2;
         std::any_of(m_files.begin(), m_files.end(),
                     [&](const auto& file) { return file.get() != self && file->name == free; });
         ++number)
        free = QString("%1 (%2)").arg(name).arg(number);
    return free;
}

void XVectorStack::Fill(tagXVectorFile& file, tagXVectorRead& read)
{
    file.base = std::move(read.base);
    file.reference = read.reference;
    file.isPlaced = read.placement.isPlaced;
    file.canBeDegrees = read.canBeDegrees;
    file.isGuessed = read.isGuessed;
    file.notes = read.notes;
    file.isEdited = file.isContentEdited = false;
    ListLayers(file, read.layerColors);
    m_nextColor += read.colors;
}

void XVectorStack::ListLayers(tagXVectorFile& file, const std::vector<tagXColor>& colors)
{
    file.layers.clear();
    int origin = 0;
    for (__POSITION* pos = file.base->GetHeadPosition(); pos;) {
        auto* layer = dynamic_cast<XvcLayer*>(file.base->GetNext(pos));
        if (!layer) continue;
        const auto at = static_cast<std::size_t>(origin);
        const tagXColor color = at < colors.size() ? colors[at] : 0;
        if (layer->IsLocked()) layer->SetHitTestable(0);
        file.layers.insert(file.layers.begin(), {layer, origin++, color});
    }
}

// An otherwise empty view is seen in the coordinate system of the first file that has one.
void XVectorStack::GiveReference(tagXVectorFile& file, bool isAsRead)
{
    if (m_manager->GetNumberOfXDMComposite() > 0 || HasPlaced() || !isAsRead) return;
    const bool hasOwn = !file.reference.IsEmpty();
    if (!hasOwn && GetCount() > 0) return;
    XSpatialReference reference = file.reference;
    if (!hasOwn) reference.SetCoordType(kUnknownCoordinates);
    m_manager->SetSR(&reference);
    file.isPlaced = hasOwn;
}

// The view draws its list from the head to the tail.
void XVectorStack::ListBases()
{
    m_shown->RemoveAll();
    for (const auto& file : m_files)
        m_shown->AddHead(file->base.get());
}

void XVectorStack::Add(const QString& path, tagXVectorRead& read)
{
    auto file = std::make_unique<tagXVectorFile>();
    file->path = path;
    const QFileInfo info(path);
    const QString kept = XfnToQString(read.base->GetName()).simplified();
    // a file of our own keeps a name that its user gave it; others are called as they are
    file->isNamed = info.suffix().compare("xvc", Qt::CaseInsensitive) == 0 && !kept.isEmpty() &&
                    kept != info.completeBaseName();
    file->name = MakeName(file->isNamed ? kept : info.fileName());
    if (!file->isNamed) read.base->SetName(XString());
    Fill(*file, read);
    GiveReference(*file, read.world.IsEmpty());
    m_files.insert(m_files.begin(), std::move(file));
    ListBases();
    Tell(LayerChange::List);
}

void XVectorStack::Replace(int index, tagXVectorRead& read)
{
    tagXVectorFile* file = Get(index);
    if (!file) return;
    Tell(LayerChange::Closing);
    if (m_leaving) m_leaving(*file->base);
    const std::unique_ptr<XvcBase> before = std::move(file->base);
    const std::vector<tagXVectorLayer> old = std::move(file->layers);
    read.colors = 0;                      // those of before are taken again
    const bool isEdited = file->isEdited; // names and colours, which stay
    Fill(*file, read);
    file->isEdited = isEdited;
    file->base->SetHideFlag(before->GetHideFlag());
    file->base->SetName(file->isNamed ? before->GetName() : XString());
    for (tagXVectorLayer& layer : file->layers) {
        const auto same = std::find_if(old.begin(), old.end(), [&](const tagXVectorLayer& other) {
            return other.origin == layer.origin;
        });
        if (same == old.end()) continue;
        layer.layer->SetName(same->layer->GetName());
        layer.layer->SetHideFlag(same->layer->GetHideFlag());
        layer.layer->SetLockFlag(same->layer->IsLocked());
        layer.layer->SetHitTestable(same->layer->IsHitTestable());
        if (same->color == 0 || same->color == layer.color) continue;
        XfnColorLayer(*layer.layer, same->color);
        layer.color = same->color;
    }
    GiveReference(*file, read.world.IsEmpty());
    ListBases();
    Tell(LayerChange::List);
}

void XVectorStack::Close(tagXVectorPlace place)
{
    tagXVectorFile* file = Get(place.file);
    if (!file || !IsPlace(place)) return;
    Tell(LayerChange::Closing);
    if (place.layer >= 0 && file->layers.size() > 1) {
        XvcLayer* layer = file->layers[static_cast<std::size_t>(place.layer)].layer;
        if (m_leaving) m_leaving(*layer);
        file->base->RemoveAt(file->base->Find(layer));
        delete layer; // taken out, it is ours
        file->layers.erase(file->layers.begin() + place.layer);
        file->isEdited = file->isContentEdited = true;
        ++file->revision;
        file->base->CalcRange();
    } else {
        const auto at = m_files.begin() + place.file;
        if (m_leaving) m_leaving(*(*at)->base);
        m_shown->RemoveAt(m_shown->Find((*at)->base.get()));
        m_files.erase(at);
        if (m_files.empty()) m_nextColor = 0;
    }
    Tell(LayerChange::List);
}

void XVectorStack::CloseAll()
{
    while (GetCount() > 0)
        Close({GetCount() - 1, -1});
}

void XVectorStack::Move(tagXVectorPlace from, int to)
{
    tagXVectorFile* file = Get(from.file);
    if (!file || !IsPlace(from)) return;
    if (from.layer < 0) {
        if (to == from.file || !GetAt(to)) return;
        Shift(m_files, from.file, to);
        ListBases();
    } else {
        if (to == from.layer || !GetLayerAt({from.file, to})) return;
        Shift(file->layers, from.layer, to);
        // to the places that layers have in the base; what else lies there stays
        std::size_t next = file->layers.size();
        for (__POSITION* pos = file->base->GetHeadPosition(); pos;) {
            __POSITION* at = pos;
            if (dynamic_cast<XvcLayer*>(file->base->GetNext(pos)) && next > 0)
                file->base->SetAt(at, file->layers[--next].layer);
        }
        file->isEdited = file->isContentEdited = true;
        ++file->revision;
    }
    Tell(LayerChange::List);
}

QString XVectorStack::GetName(tagXVectorPlace place) const
{
    if (const tagXVectorLayer* layer = GetLayerAt(place)) {
        const QString name = XfnToQString(layer->layer->GetName());
        return name.isEmpty() ? QString("Layer %1").arg(layer->origin + 1) : name;
    }
    return place.layer < 0 && GetAt(place.file) ? GetAt(place.file)->name : QString();
}

bool XVectorStack::Rename(tagXVectorPlace place, const QString& name)
{
    const QString wanted = name.simplified();
    if (wanted.isEmpty() || !IsPlace(place) || IsLocked(place)) return false;
    if (wanted == GetName(place)) return true;
    tagXVectorFile* file = Get(place.file);
    if (place.layer < 0) {
        file->name = wanted;
        file->isNamed = true;
        file->base->SetName(XfnFromQString(wanted));
    } else {
        GetLayerAt(place)->layer->SetName(XfnFromQString(wanted));
    }
    file->isEdited = true;
    ++file->revision;
    Tell(LayerChange::Appearance);
    return true;
}

// A file of one layer is one row: its mark is that of both.
void XVectorStack::SetVisible(tagXVectorPlace place, bool isVisible)
{
    if (!IsPlace(place) || IsVisible(place) == isVisible) return;
    const tagXVectorFile& file = *GetAt(place.file);
    const auto layers = GetLayers(place);
    if (place.layer < 0) file.base->SetHideFlag(!isVisible);
    if (place.layer >= 0 || layers.size() == 1) layers.front()->layer->SetHideFlag(!isVisible);
    Tell(LayerChange::Appearance);
}

bool XVectorStack::IsVisible(tagXVectorPlace place) const
{
    if (!IsPlace(place)) return false;
    const auto layers = GetLayers(place);
    if (place.layer < 0 && GetAt(place.file)->base->IsHidden()) return false;
    return (place.layer < 0 && layers.size() != 1) || !layers.front()->layer->IsHidden();
}

void XVectorStack::SetLocked(tagXVectorPlace place, bool isLocked)
{
    if (!IsPlace(place) || IsLocked(place) == isLocked) return;
    for (const tagXVectorLayer* layer : GetLayers(place)) {
        layer->layer->SetLockFlag(isLocked);
        layer->layer->SetHitTestable(!isLocked); // the view's own tools ask only this
    }
    Tell(LayerChange::Appearance);
}

bool XVectorStack::IsLocked(tagXVectorPlace place) const
{
    const auto layers = GetLayers(place);
    return !layers.empty() &&
           std::all_of(layers.begin(), layers.end(),
                       [](const tagXVectorLayer* layer) { return layer->layer->IsLocked() != 0; });
}

void XVectorStack::SetColor(tagXVectorPlace place, tagXColor color)
{
    bool isChanged = false;
    for (tagXVectorLayer* layer : GetLayers(place)) {
        if (layer->layer->IsLocked() || layer->color == (color | kXOpaque)) continue;
        layer->color = color | kXOpaque;
        XfnColorLayer(*layer->layer, color);
        isChanged = true;
    }
    if (!isChanged) return;
    Get(place.file)->isEdited = true;
    NoteChange(place.file);
}

tagXColor XVectorStack::GetColor(tagXVectorPlace place) const
{
    const auto layers = GetLayers(place);
    if (layers.empty()) return 0;
    const tagXColor first = layers.front()->color;
    const bool isOne =
        std::all_of(layers.begin(), layers.end(),
                    [first](const tagXVectorLayer* layer) { return layer->color == first; });
    return isOne ? first : 0;
}

void XVectorStack::AddDrawing(std::unique_ptr<XvcBase> base, const QString& name)
{
    auto file = std::make_unique<tagXVectorFile>();
    file->base = std::move(base);
    file->name = MakeName(name);
    file->revision = 1;
    file->reference = GetWorld();
    file->isPlaced = !file->reference.IsEmpty();
    if (file->isPlaced) file->base->SetSR(&file->reference);
    ListLayers(*file, {});
    GiveReference(*file, true);
    m_files.insert(m_files.begin(), std::move(file));
    ListBases();
    Tell(LayerChange::List);
}

void XVectorStack::SetRestored(const QString& path, const QString& name)
{
    tagXVectorFile* file = Get(0);
    if (!file) return;
    file->path = path;
    file->name = MakeName(name, file);
    file->isEdited = file->isContentEdited = true;
    ++file->revision;
    Tell(LayerChange::List);
}

bool XVectorStack::IsEdited(tagXVectorPlace place) const
{
    if (const tagXVectorLayer* layer = GetLayerAt(place)) return layer->isEdited;
    const tagXVectorFile* file = place.layer < 0 ? GetAt(place.file) : nullptr;
    return file && (file->isEdited ||
                    std::any_of(file->layers.begin(), file->layers.end(),
                                [](const tagXVectorLayer& layer) { return layer.isEdited; }));
}

bool XVectorStack::HasEdited() const
{
    for (int i = 0; i < GetCount(); ++i)
        if (IsEdited({i, -1})) return true;
    return false;
}

void XVectorStack::SetEdited(tagXVectorPlace place, bool isEdited)
{
    tagXVectorFile* file = Get(place.file);
    if (!file || !IsPlace(place)) return;
    bool& flag = place.layer < 0 ? file->isEdited
                                 : file->layers[static_cast<std::size_t>(place.layer)].isEdited;
    if (std::exchange(flag, isEdited) != isEdited) Tell(LayerChange::Appearance);
}

void XVectorStack::NoteChange(int index)
{
    tagXVectorFile* file = Get(index);
    if (!file) return;
    ++file->revision;
    file->base->CalcRange();
    Tell(LayerChange::Appearance);
}

void XVectorStack::SetSaved(int index, const QString& path)
{
    tagXVectorFile* saved = Get(index);
    if (!saved) return;
    saved->isEdited = saved->isContentEdited = false;
    int origin = static_cast<int>(saved->layers.size());
    for (tagXVectorLayer& layer : saved->layers) {
        layer.isEdited = false;
        layer.origin = --origin; // as they lie in that file
    }
    saved->path = path;
    if (!saved->isNamed) saved->name = MakeName(QFileInfo(path).fileName(), saved);
    saved->reference = *saved->base->GetSR();
    Tell(LayerChange::Appearance);
}

bool XVectorStack::GetExtent(tagXVectorPlace place, double (&box)[4]) const
{
    if (!IsPlace(place)) return false;
    const tagXVectorRange& range = place.layer < 0 ? GetAt(place.file)->base->GetRange()
                                                   : GetLayerAt(place)->layer->GetRange();
    if (range.IsEmpty()) return false;
    box[0] = range.minX;
    box[1] = range.minY;
    box[2] = range.maxX;
    box[3] = range.maxY;
    return true;
}

XvcObj* XVectorStack::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                              tagXHitFlag& hit) const
{
    for (const auto& file : m_files) {
        if (file->base->IsHidden()) continue;
        for (const tagXVectorLayer& layer : file->layers) {
            if (layer.layer->IsLocked()) continue;
            if (XvcObj* object = layer.layer->HitTest(point, toleranceX, toleranceY, hit))
                return object;
        }
    }
    return nullptr;
}

tagXVectorPlace XVectorStack::Find(const XvcObj& object) const
{
    for (int i = 0; i < GetCount(); ++i) {
        const auto& layers = GetAt(i)->layers;
        for (std::size_t j = 0; j < layers.size(); ++j)
            if (layers[j].layer == object.GetParentLayer()) return {i, static_cast<int>(j)};
    }
    return {};
}
