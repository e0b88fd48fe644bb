#include "edit/XLayerIndex.h"

#include "foundation/vector/XvcLayer.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr std::size_t kRunSize = 256;
constexpr std::size_t kPasses = 3;
constexpr std::size_t kFreeSteps = 4096;

} // namespace

XLayerIndex::XLayerIndex(XvcLayer& layer) : m_layer(layer) {}
XLayerIndex::~XLayerIndex() = default;

XObject* XLayerIndex::ObjectAt(__POSITION* place) const
{
    return static_cast<const XObList&>(m_layer).GetAt(place);
}

bool XLayerIndex::MayWalk(std::size_t steps)
{
    if (m_built) return false;
    m_walked += steps;
    return m_walked <= kPasses * static_cast<std::size_t>(m_layer.GetCount()) + kFreeSteps;
}

void XLayerIndex::Build()
{
    if (m_built) return;
    m_built = true;
    m_cursor = nullptr;
    m_runOf.reserve(static_cast<std::size_t>(m_layer.GetCount()));
    for (__POSITION* place = m_layer.GetHeadPosition(); place;) {
        if (m_runs.empty() || m_runs.back()->places.size() == kRunSize) {
            m_runs.push_back(std::make_unique<Run>());
            m_runs.back()->places.reserve(kRunSize);
        }
        __POSITION* const position = place;
        const XObject* const object = m_layer.GetNext(place);
        m_runs.back()->places.push_back({position, object});
        m_runOf[object] = m_runs.back().get();
    }
    for (const auto& run : m_runs)
        m_sizes.push_back(static_cast<int>(run->places.size()));
}

void XLayerIndex::SplitRun(std::size_t run)
{
    auto half = std::make_unique<Run>();
    std::vector<Place>& places = m_runs[run]->places;
    half->places.assign(places.begin() + kRunSize, places.end());
    places.resize(kRunSize);
    for (const Place& place : half->places)
        m_runOf[place.object] = half.get();
    m_sizes[run] = static_cast<int>(kRunSize);
    m_sizes.insert(m_sizes.begin() + static_cast<std::ptrdiff_t>(run) + 1,
                   static_cast<int>(half->places.size()));
    m_runs.insert(m_runs.begin() + static_cast<std::ptrdiff_t>(run) + 1, std::move(half));
}

// The run that holds `index`, or the last one for the index behind the tail.
XLayerIndex::Run* XLayerIndex::FindRun(int index, std::size_t& run, std::size_t& offset)
{
    offset = static_cast<std::size_t>(index);
    for (run = 0; run < m_runs.size(); ++run) {
        const auto size = static_cast<std::size_t>(m_sizes[run]);
        if (offset < size || (run + 1 == m_runs.size() && offset == size)) return m_runs[run].get();
        offset -= size;
    }
    return nullptr;
}

__POSITION* XLayerIndex::PositionAt(int index)
{
    const int count = m_layer.GetCount();
    if (index < 0 || index >= count) return nullptr;
    if (!m_built) {
        __POSITION* place = m_layer.GetHeadPosition();
        int at = 0;
        if (count - 1 - index < index) {
            place = m_layer.GetTailPosition();
            at = count - 1;
        }
        if (m_cursor && std::abs(m_cursorIndex - index) < std::abs(at - index)) {
            place = m_cursor;
            at = m_cursorIndex;
        }
        if (MayWalk(static_cast<std::size_t>(std::abs(at - index)))) {
            for (; at < index; ++at)
                m_layer.GetNext(place);
            for (; at > index; --at)
                m_layer.GetPrev(place);
            m_cursor = place;
            m_cursorIndex = index;
            return place;
        }
        Build();
    }
    std::size_t run = 0;
    std::size_t offset = 0;
    return FindRun(index, run, offset)->places[offset].position;
}

__POSITION* XLayerIndex::Find(const XObject* object, int& index)
{
    index = -1;
    if (!object) return nullptr;
    if (!m_built) {
        // outward from the cursor, so that the neighbours of the last object are found at once
        __POSITION* up = m_cursor ? m_cursor : m_layer.GetHeadPosition();
        int upIndex = m_cursor ? m_cursorIndex : 0;
        __POSITION* down = up;
        int downIndex = upIndex;
        if (down) m_layer.GetPrev(down);
        --downIndex;
        while ((up || down) && MayWalk(1)) {
            if (up) {
                if (ObjectAt(up) == object) {
                    m_cursor = up;
                    m_cursorIndex = index = upIndex;
                    return up;
                }
                m_layer.GetNext(up);
                ++upIndex;
            }
            if (down) {
                if (ObjectAt(down) == object) {
                    m_cursor = down;
                    m_cursorIndex = index = downIndex;
                    return down;
                }
                m_layer.GetPrev(down);
                --downIndex;
            }
        }
        if (!up && !down) return nullptr;
        Build();
    }
    const auto found = m_runOf.find(object);
    if (found == m_runOf.end()) return nullptr;
    index = 0;
    for (std::size_t run = 0; m_runs[run].get() != found->second; ++run)
        index += m_sizes[run];
    const auto& places = found->second->places;
    const auto place = std::find_if(places.begin(), places.end(),
                                    [object](const Place& at) { return at.object == object; });
    index += static_cast<int>(place - places.begin());
    return place->position;
}

void XLayerIndex::InsertAt(int index, XvcObj* object)
{
    if (!object || index < 0 || index > m_layer.GetCount()) return;
    __POSITION* before = PositionAt(index);
    __POSITION* place = before ? m_layer.InsertBefore(before, object) : m_layer.AddTail(object);
    if (!m_built) {
        m_cursor = place;
        m_cursorIndex = index;
        return;
    }
    if (m_runs.empty()) {
        m_runs.push_back(std::make_unique<Run>());
        m_sizes.push_back(0);
    }
    std::size_t run = 0;
    std::size_t offset = 0;
    Run* const into = FindRun(index, run, offset);
    into->places.insert(into->places.begin() + static_cast<std::ptrdiff_t>(offset),
                        {place, object});
    ++m_sizes[run];
    m_runOf[object] = into;
    if (into->places.size() >= 2 * kRunSize) SplitRun(run);
}

void XLayerIndex::RemoveAt(int index)
{
    __POSITION* const place = PositionAt(index);
    if (!place) return;
    if (m_built) {
        std::size_t run = 0;
        std::size_t offset = 0;
        Run* const from = FindRun(index, run, offset);
        from->places.erase(from->places.begin() + static_cast<std::ptrdiff_t>(offset));
        m_runOf.erase(ObjectAt(place));
        if (--m_sizes[run] == 0) {
            m_runs.erase(m_runs.begin() + static_cast<std::ptrdiff_t>(run));
            m_sizes.erase(m_sizes.begin() + static_cast<std::ptrdiff_t>(run));
        }
    } else {
        // the element behind takes the index; behind the tail the walk starts anew
        __POSITION* next = place;
        m_layer.GetNext(next);
        m_cursor = next;
        m_cursorIndex = index;
    }
    m_layer.RemoveAt(place);
}

void XLayerIndex::SetAt(int index, XvcObj* object)
{
    __POSITION* const place = PositionAt(index);
    if (!place || !object) return;
    if (m_built) {
        const auto found = m_runOf.find(ObjectAt(place));
        Run* const run = found->second;
        m_runOf.erase(found);
        m_runOf[object] = run;
        std::ranges::find(run->places, place, &Place::position)->object = object;
    }
    m_layer.SetAt(place, object);
}
