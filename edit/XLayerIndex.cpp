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
        m_runs.back()->places.push_back(place);
        m_runOf[m_layer.GetNext(place)] = m_runs.back().get();
    }
}

void XLayerIndex::SplitRun(std::size_t run)
{
    auto half = std::make_unique<Run>();
    std::vector<__POSITION*>& places = m_runs[run]->places;
    half->places.assign(places.begin() + kRunSize, places.end());
    places.resize(kRunSize);
    for (__POSITION* place : half->places)
        m_runOf[ObjectAt(place)] = half.get();
    m_runs.insert(m_runs.begin() + static_cast<std::ptrdiff_t>(run) + 1, std::move(half));
}

// The run that holds `index`, or the last one for the index behind the tail.
XLayerIndex::Run* XLayerIndex::FindRun(int index, std::size_t& run, std::size_t& offset)
{
    offset = static_cast<std::size_t>(index);
    for (run = 0; run < m_runs.size(); ++run) {
        const std::size_t size = m_runs[run]->places.size();
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
    return FindRun(index, run, offset)->places[offset];
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
    for (const auto& run : m_runs) {
        if (run.get() == found->second) break;
        index += static_cast<int>(run->places.size());
    }
    const auto& places = found->second->places;
    const auto place = std::find_if(places.begin(), places.end(),
                                    [&](__POSITION* at) { return ObjectAt(at) == object; });
    index += static_cast<int>(place - places.begin());
    return *place;
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
    if (m_runs.empty()) m_runs.push_back(std::make_unique<Run>());
    std::size_t run = 0;
    std::size_t offset = 0;
    Run* const into = FindRun(index, run, offset);
    into->places.insert(into->places.begin() + static_cast<std::ptrdiff_t>(offset), place);
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
        if (from->places.empty()) m_runs.erase(m_runs.begin() + static_cast<std::ptrdiff_t>(run));
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
    }
    m_layer.SetAt(place, object);
}
