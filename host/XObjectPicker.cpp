#include "host/XObjectPicker.h"

#include "foundation/surface/XBackBuffer.h"
#include "foundation/vector/XHitFlag.h"
#include "foundation/vector/XvcLayer.h"
#include "host/XHostView.h"

#include <cmath>
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

tagXClickPlace XObjectPicker::GetPlaceAt(int xPx, int yPx) const
{
    tagXClickPlace place{xPx + 0.5, yPx + 0.5};
    const XBackBuffer& buffer = *m_view.GetBackBuffer();
    buffer.ConvPixelToWorldCoord(place.x, place.y);
    buffer.GetWorldPerPixel(place.toleranceX, place.toleranceY);
    place.toleranceX *= kPixels;
    place.toleranceY *= kPixels;
    return place;
}

XvcObj* XObjectPicker::FindAt(const tagXClickPlace& place, tagXHitFlag& hit) const
{
    const tagXVectorPlace preferred = m_preferred ? m_preferred() : tagXVectorPlace();
    return XfnHitPreferred(m_vectors, preferred, place, hit);
}

XvcObj* XObjectPicker::FindAt(int xPx, int yPx) const
{
    tagXHitFlag hit;
    return m_vectors.GetCount() > 0 ? FindAt(GetPlaceAt(xPx, yPx), hit) : nullptr;
}

void XObjectPicker::PickAt(int xPx, int yPx)
{
    XvcObj* const below = ClickAgain(xPx, yPx, m_object);
    Select(below ? below : FindAt(xPx, yPx));
    m_clickedObject = m_object;
}

XvcObj* XObjectPicker::ClickAgain(int xPx, int yPx, const XvcObj* selected)
{
    const tagXClickPlace place = GetPlaceAt(xPx, yPx);
    const bool isAgain = selected && selected == m_clickedObject &&
                         std::fabs(place.x - m_clicked.x) <= place.toleranceX &&
                         std::fabs(place.y - m_clicked.y) <= place.toleranceY;
    if (!isAgain) m_clicked = place;
    XvcObj* const below = isAgain ? XfnHitBelow(m_vectors, selected, m_clicked) : nullptr;
    m_clickedObject = below ? below : selected;
    return below;
}

bool XObjectPicker::IsAt(int xPx, int yPx, const XvcObj* object) const
{
    return XfnIsHit(m_vectors, object, GetPlaceAt(xPx, yPx));
}

QString XObjectPicker::FindLockedAt(int xPx, int yPx, XvcObj*& object, tagXVectorPlace& layer) const
{
    tagXVectorPlace place = layer = XfnHitLocked(m_vectors, GetPlaceAt(xPx, yPx), object);
    if (const tagXVectorFile* file = m_vectors.GetAt(place.file); file && file->layers.size() < 2)
        place.layer = -1; // its row is that of the file
    return m_vectors.GetName(place);
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
    m_object = selection.GetCount() == 1 ? dynamic_cast<XvcObj*>(selection.GetHead()) : nullptr;
    Tell(); // of several, other ones may be selected
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
