#include "host/XLayerStack.h"

#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XRSFile.h"
#include "host/XRasterOpener.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <utility>

XLayerStack::XLayerStack(XDMCompManager* manager) : m_manager(manager) {}

XLayerStack::~XLayerStack()
{
    m_observers.clear(); // those who watched may have gone already
    CloseAll();
}

void XLayerStack::AddObserver(std::function<void(LayerChange)> observer)
{
    m_observers.push_back(std::move(observer));
}

void XLayerStack::Tell(LayerChange change)
{
    for (const auto& observer : m_observers)
        observer(change);
}

const tagXLayer* XLayerStack::GetAt(int index) const
{
    return index >= 0 && index < GetCount() ? m_layers[static_cast<std::size_t>(index)].get()
                                            : nullptr;
}

void XLayerStack::SetCurrent(int index)
{
    if (index == m_current || !GetAt(index)) return;
    m_current = index;
    Tell(LayerChange::Current);
}

QString XLayerStack::MakeName(const QString& path) const
{
    const QString name = QFileInfo(path).fileName();
    const auto isTaken = [this](const QString& wanted) {
        return std::any_of(m_layers.begin(), m_layers.end(),
                           [&](const auto& layer) { return layer->name == wanted; });
    };
    QString free = name;
    for (int number = 2; isTaken(free); ++number)
        free = QString("%1 (%2)").arg(name).arg(number);
    return free;
}

bool XLayerStack::Open(const QString& path, QString& message)
{
    auto layer = std::make_unique<tagXLayer>();
    layer->file = XfnOpenRaster(path, message, m_reader);
    if (!layer->file) return false;
    layer->path = path;
    layer->name = MakeName(path);
    layer->composite = m_manager->NewXDMComposite(0);
    layer->composite->SetName(XfnFromQString(layer->name));
    layer->bands = std::make_unique<XBandChoice>(layer->file.get(), layer->composite);
    if (m_layers.empty() && !(m_isPlaced && m_isPlaced())) {
        const XDMBand* first = layer->composite->GetFirstBand();
        m_manager->SetSR(first ? first->GetSR() : nullptr);
    }
    m_manager->AddXDMComposite(layer->composite);
    layer->miss = layer->composite->GetPlacementMiss();
    m_layers.insert(m_layers.begin(), std::move(layer));
    m_current = 0;
    Tell(LayerChange::List);
    return true;
}

bool XLayerStack::Reload(int index, QString& message)
{
    if (!GetAt(index)) return false;
    auto file = XfnOpenRaster(GetAt(index)->path, message);
    if (!file) return false;
    const int current = std::exchange(m_current, index); // no other row is chosen by that
    Tell(LayerChange::Closing);
    tagXLayer& layer = *m_layers[static_cast<std::size_t>(index)];
    // the bands of before go last: the composite lets them go when it is given the others
    auto bands = std::make_unique<XBandChoice>(file.get(), layer.composite, *layer.bands);
    std::swap(layer.bands, bands);
    std::swap(layer.file, file);
    bands.reset();
    if (m_layers.size() == 1 && !(m_isPlaced && m_isPlaced())) {
        const XDMBand* first = layer.composite->GetFirstBand();
        m_manager->SetSR(first ? first->GetSR() : nullptr);
    }
    layer.miss = layer.composite->GetPlacementMiss();
    layer.composite->UpdateNeeded();
    file.reset();
    m_current = current;
    Tell(LayerChange::List);
    return true;
}

bool XLayerStack::Rename(int index, const QString& name)
{
    const QString wanted = name.simplified();
    if (!GetAt(index) || wanted.isEmpty()) return false;
    tagXLayer& layer = *m_layers[static_cast<std::size_t>(index)];
    if (layer.name == wanted) return true;
    layer.name = wanted;
    layer.composite->SetName(XfnFromQString(wanted));
    Tell(LayerChange::Appearance);
    return true;
}

void XLayerStack::Close(int index)
{
    if (!GetAt(index)) return;
    if (m_current != index) SetCurrent(index);
    Tell(LayerChange::Closing);
    const auto place = m_layers.begin() + index;
    m_manager->RemoveXDMComposite((*place)->composite);
    delete (*place)->composite; // taken out of the list, it is ours
    m_layers.erase(place);
    m_current = std::min(index, GetCount() - 1);
    Tell(LayerChange::List);
}

void XLayerStack::CloseAll()
{
    while (GetCount() > 0)
        Close(GetCount() - 1);
}

void XLayerStack::Move(int from, int to)
{
    if (from == to || !GetAt(from) || !GetAt(to)) return;
    m_manager->MoveXDMComposite(from, to);
    const auto begin = m_layers.begin();
    if (from < to)
        std::rotate(begin + from, begin + from + 1, begin + to + 1);
    else
        std::rotate(begin + to, begin + from, begin + from + 1);
    if (m_current == from)
        m_current = to;
    else if (from < m_current && m_current <= to)
        --m_current;
    else if (to <= m_current && m_current < from)
        ++m_current;
    Tell(LayerChange::List);
}

void XLayerStack::SetVisible(int index, bool isVisible)
{
    const tagXLayer* layer = GetAt(index);
    if (!layer || IsVisible(index) == isVisible) return;
    for (int channel = 0; channel < 3; ++channel)
        layer->composite->SetHideFlag(isVisible ? 0 : 1, channel);
    layer->composite->UpdateNeeded();
    Tell(LayerChange::Appearance);
}

bool XLayerStack::IsVisible(int index) const
{
    const tagXLayer* layer = GetAt(index);
    if (!layer) return false;
    for (int channel = 0; channel < 3; ++channel)
        if (!layer->composite->GetHideFlag(channel)) return true;
    return false;
}

void XLayerStack::SetOpacity(int index, int percent)
{
    const tagXLayer* layer = GetAt(index);
    const int held = std::clamp(percent, 0, 100);
    if (!layer || GetOpacity(index) == held) return;
    layer->composite->SetAlpha(static_cast<unsigned char>(std::lround(held * 2.55)));
    layer->composite->UpdateNeeded();
    Tell(LayerChange::Appearance);
}

int XLayerStack::GetOpacity(int index) const
{
    const tagXLayer* layer = GetAt(index);
    return layer ? static_cast<int>(std::lround(layer->composite->GetAlpha() / 2.55)) : 100;
}

void XLayerStack::NoteChanged(int index)
{
    if (!GetAt(index)) return;
    GetAt(index)->composite->UpdateNeeded();
    Tell(LayerChange::Appearance);
}

void XLayerStack::ChangeBands(int index, const std::function<void(XBandChoice&)>& change)
{
    if (!GetAt(index)) return;
    tagXLayer* layer = m_layers[static_cast<std::size_t>(index)].get();
    const auto shown = [layer] {
        const XBandChoice& b = *layer->bands;
        return std::array<int, 5>{b.IsColour(), b.GetGrayBand(), b.GetBand(0), b.GetBand(1),
                                  b.GetBand(2)};
    };
    const auto before = shown();
    change(*layer->bands);
    if (shown() == before) return;
    layer->miss = layer->composite->GetPlacementMiss(); // a new band may stand elsewhere
    Tell(LayerChange::Appearance);
}

bool XLayerStack::GetExtent(int index, double (&box)[4]) const
{
    const tagXLayer* layer = GetAt(index);
    if (!layer || !layer->composite->IsBoundValid()) return false;
    double left = 0;
    double right = 0;
    double bottom = 0;
    double top = 0;
    layer->composite->GetBoundRect(left, right, bottom, top);
    box[0] = std::min(left, right);
    box[1] = std::min(bottom, top);
    box[2] = std::max(left, right);
    box[3] = std::max(bottom, top);
    return true;
}
