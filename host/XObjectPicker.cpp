#include "host/XObjectPicker.h"

#include "foundation/surface/XBackBuffer.h"
#include "foundation/vector/XHitFlag.h"
#include "foundation/vector/XvcLayer.h"
#include "host/XHostView.h"

#include <utility>

namespace {

constexpr double kPixels = 4; // lines and points are thin

} // namespace

XObjectPicker::XObjectPicker(XHostView& view, XVectorStack& vectors)
    : m_view(view), m_vectors(vectors)
{
    m_vectors.AddObserver([this](LayerChange change) { Follow(change); });
}

void XObjectPicker::AddObserver(std::function<void()> observer)
{
    m_observers.push_back(std::move(observer));
}

void XObjectPicker::Tell()
{
    for (const auto& observer : m_observers)
        observer();
}

void XObjectPicker::Follow(LayerChange change)
{
    if (!m_object) return;
    const tagXVectorPlace place = GetPlace();
    if (change == LayerChange::Closing || !m_vectors.IsVisible(place) ||
        !m_vectors.IsVisible({place.file, -1}) || m_vectors.IsLocked(place))
        Clear();
    else
        Tell();
}

XvcObj* XObjectPicker::FindAt(int xPx, int yPx) const
{
    if (m_vectors.GetCount() == 0) return nullptr;
    const XBackBuffer& buffer = *m_view.GetBackBuffer();
    tagXVector3 point{xPx + 0.5, yPx + 0.5, 0};
    buffer.ConvPixelToWorldCoord(point.x, point.y);
    double perX = 0;
    double perY = 0;
    buffer.GetWorldPerPixel(perX, perY);
    tagXHitFlag hit;
    return m_vectors.HitTest(point, kPixels * perX, kPixels * perY, hit);
}

void XObjectPicker::PickAt(int xPx, int yPx)
{
    Select(FindAt(xPx, yPx));
}

void XObjectPicker::Select(XvcObj* object)
{
    if (object == m_object) return;
    m_object = object;
    m_view.ShowSelected(object);
    Tell();
}

bool XObjectPicker::Clear()
{
    if (!m_object) return false;
    Select(nullptr);
    return true;
}

void XObjectPicker::FollowView()
{
    XObList& selection = *m_view.GetSelectedObj();
    XvcObj* const before = m_object;
    m_object = selection.GetCount() == 1 ? dynamic_cast<XvcObj*>(selection.GetHead()) : nullptr;
    if (before || m_object) Tell();
}

void XObjectPicker::Drop()
{
    if (std::exchange(m_object, nullptr)) Tell();
}

tagXVectorPlace XObjectPicker::GetPlace() const
{
    return m_object ? m_vectors.Find(*m_object) : tagXVectorPlace();
}

bool XObjectPicker::GetExtent(double (&box)[4]) const
{
    if (!m_object || m_object->GetRange().IsEmpty()) return false;
    const tagXVectorRange& range = m_object->GetRange();
    box[0] = range.minX;
    box[1] = range.minY;
    box[2] = range.maxX;
    box[3] = range.maxY;
    return true;
}

void XObjectPicker::KeepShown()
{
    if (m_object && m_view.GetSelectedObj()->GetCount() == 0) m_view.ShowSelected(m_object);
}
