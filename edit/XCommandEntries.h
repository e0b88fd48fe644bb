#pragma once

#include "edit/XLayerRef.h"
#include "foundation/base/XApi.h"

#include <memory>
#include <vector>

class XvcObj;
struct tagCommandSet;

/// A command set in the making. Entries come in the order of the events, so that a step of many
/// objects costs a step of one each; the set made of them has the newest first.
class XAPI XCommandEntries
{
public:
    struct Entry
    {
        int index;
        XvcObj* clone; ///< null for a class that cannot be cloned
        tagXLayerRef list;
    };

    explicit XCommandEntries(int type) : m_type(type) {}

    void Add(int index, XvcObj* clone, XvcLayer* layer);
    void RaiseCount(int by = 1) { m_count += by; }
    int GetCount() const { return m_count; }
    const std::vector<Entry>& GetEntries() const { return m_entries; }
    /// Takes the entries of a layer out and hands them over; the count follows. Number 0 means
    /// every layer that lay at the address.
    std::vector<Entry> Take(const tagXLayerRef& list);

    /// The clones pass to the set.
    std::unique_ptr<tagCommandSet> MakeSet() const;

private:
    int m_type;
    int m_count = 0;
    std::vector<Entry> m_entries;
};
