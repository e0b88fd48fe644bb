#include "edit/XCommandEntries.h"

#include "edit/XCommandSet.h"
#include "foundation/vector/XvcLayer.h"

std::unique_ptr<tagCommandSet> XCommandEntries::MakeSet() const
{
    auto set = std::make_unique<tagCommandSet>();
    set->type = m_type;
    set->count = m_count;
    const int size = static_cast<int>(m_entries.size());
    set->indices.SetSize(size);
    set->objects.SetSize(size);
    set->lists.SetSize(size);
    for (int i = 0; i < size; ++i) {
        const Entry& entry = m_entries[static_cast<std::size_t>(size - 1 - i)];
        set->indices[i] = entry.index;
        set->objects[i] = entry.clone;
        set->lists[i] = entry.layer;
    }
    return set;
}
