#pragma once

#include "foundation/base/XArray.h"
#include "foundation/base/XPtrArray.h"

#include <cstdint>

/// What one user gesture did: a step of undo.
///
/// The arrays run in parallel, the newest entry first. An entry is a clone of an object with the
/// layer and the index in it that the object had at that moment.
///
///     type        count     entries
///     0 insert    objects   one an object: the state after insertion
///     1 modify    objects   two an object: even index the state after, odd index the state before
///     2 delete    objects   one an object: the state before deletion
///     3 z-order   entries   two an object, as for modify, each with its own index
///
/// Ownership: XCommandManager owns sets and their clones; a clone is null for a class that cannot
/// be cloned. The layers are lent; XCommandManager::ForgetLayer takes the entries of one that goes.
struct tagCommandSet
{
    static constexpr int kInsert = 0;
    static constexpr int kModify = 1;
    static constexpr int kDelete = 2;
    static constexpr int kOrder = 3;

    int type = kInsert;
    int count = 0;
    int reserved[2] = {0, 0};
    XArray<int, int> indices;
    XPtrArray objects; ///< of XvcObj*
    XPtrArray lists;   ///< of XvcLayer*
    /// Those of the layers (XvcLayer::GetNumber); may end before the others do, where a host fills
    /// a set of its own.
    XArray<std::uint64_t, std::uint64_t> numbers;
};
