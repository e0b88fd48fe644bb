#pragma once

#include "foundation/base/XObList.h"

/// A list whose children are told in which list they lie when they are added.
///
/// Taking a child out (RemoveAt, RemoveHead, RemoveTail, RemoveAll) and putting another in its place
/// (SetAt) never read it, since callers destroy an object and remove its position afterwards. So a
/// child that is taken out keeps the parent it had; whoever goes on using it says where it lies.
/// Elements of other kinds are added through XObList and are told nothing.
/// Failure: as XList.
template <class Child>
class XAPI XvcChildList : public XObList
{
public:
    explicit XvcChildList(int blockSize = 10) : XObList(blockSize) {}

    /// All return the position; a null child is not added and gives a null position.
    __POSITION* AddHead(Child* child)
    {
        return child ? Told(*child, XObList::AddHead(child)) : nullptr;
    }
    __POSITION* AddTail(Child* child)
    {
        return child ? Told(*child, XObList::AddTail(child)) : nullptr;
    }
    __POSITION* InsertBefore(__POSITION* position, Child* child)
    {
        return child ? Told(*child, XObList::InsertBefore(position, child)) : nullptr;
    }
    __POSITION* InsertAfter(__POSITION* position, Child* child)
    {
        return child ? Told(*child, XObList::InsertAfter(position, child)) : nullptr;
    }
    /// What stood there is not destroyed; a null child changes nothing.
    void SetAt(__POSITION* position, Child* child)
    {
        if (!child) return;
        XObList::SetAt(position, child);
        Adopt(*child);
    }

protected:
    virtual void Adopt(Child& child) = 0; ///< sets the child's parent

private:
    __POSITION* Told(Child& child, __POSITION* position)
    {
        Adopt(child);
        return position;
    }
};
