#include "edit/XCommandEntries.h"

#include "edit/XCommandSet.h"
#include "foundation/vector/XvcLayer.h"

#include <algorithm>
#include <iterator>

void XCommandEntries::Add(int index, XvcObj* clone, XvcLayer* layer)
{
    m_entries.push_back({index, clone, {layer, layer ? layer->GetNumber() : 0}});
}

std::vector<XCommandEntries::Entry> XCommandEntries::Take(const tagXLayerRef& list)
{
    std::vector<Entry> taken;
    const auto kept =
        std::stable_partition(m_entries.begin(), m_entries.end(), [&list](const Entry& entry) {
            return entry.list.layer != list.layer ||
                   (list.number && entry.list.number != list.number);
        });
    std::move(kept, m_entries.end(), std::back_inserter(taken));
    m_entries.erase(kept, m_entries.end());
    const int size = static_cast<int>(taken.size());
    m_count -= m_type == tagCommandSet::kModify ? size / 2 : size;
    return taken;
}

std::unique_ptr<tagCommandSet> XCommandEntries::MakeSet() const
{
    auto set = std::make_unique<tagCommandSet>();
    set->type = m_type;
    set->count = m_count;
    const int size = static_cast<int>(m_entries.size());
    set->indices.SetSize(size);
    set->objects.SetSize(size);
    set->lists.SetSize(size);
    set->numbers.SetSize(size);
    for (int i = 0; i < size; ++i) {
        const Entry& entry = m_entries[static_cast<std::size_t>(size - 1 - i)];
        set->indices[i] = entry.index;
        set->objects[i] = entry.clone;
        set->lists[i] = entry.list.layer;
        set->numbers[i] = entry.list.number;
    }
    return set;
}
