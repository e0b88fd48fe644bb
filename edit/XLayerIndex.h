#pragma once

#include "foundation/base/XApi.h"

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

struct __POSITION;
class XObject;
class XvcLayer;
class XvcObj;

/// The places of a layer's elements by index and by address, for the time of one command.
///
/// Neighbouring places are found by walking from the one asked for last, which is how selections
/// and command sets come. When the walks add up to more than a few passes over the layer, a table
/// of runs of 256 and more places takes over, so that no order of objects makes a command slow: each
/// question then costs a step for each run and a look through one.
/// While one lives, the layer is changed through it alone. Threads: the user interface thread.
class XAPI XLayerIndex
{
public:
    explicit XLayerIndex(XvcLayer& layer);
    ~XLayerIndex();
    XLayerIndex(const XLayerIndex&) = delete;
    XLayerIndex& operator=(const XLayerIndex&) = delete;

    XvcLayer& GetLayer() { return m_layer; }
    __POSITION* PositionAt(int index); ///< null when there is no such index
    /// @return null when the object is not in the layer; `index` is then -1
    __POSITION* Find(const XObject* object, int& index);

    void InsertAt(int index, XvcObj* object); ///< index up to the count; null inserts nothing
    void RemoveAt(int index);                 ///< the object stays alive
    void SetAt(int index, XvcObj* object);    ///< what stood there is not destroyed

private:
    struct Place
    {
        __POSITION* position;
        const XObject* object;
    };
    struct Run
    {
        std::vector<Place> places;
    };

    XObject* ObjectAt(__POSITION* place) const;
    bool MayWalk(std::size_t steps);
    void Build();
    void SplitRun(std::size_t run);
    Run* FindRun(int index, std::size_t& run, std::size_t& offset);

    XvcLayer& m_layer;
    __POSITION* m_cursor = nullptr; // the place asked for last, null for none
    int m_cursorIndex = 0;
    std::size_t m_walked = 0;
    bool m_built = false;
    std::vector<std::unique_ptr<Run>> m_runs;
    std::vector<int> m_sizes; // of the runs, close together: they are summed at every question
    std::unordered_map<const XObject*, Run*> m_runOf;
};
