#pragma once

#include <memory>

/// How the container templates build and destroy their elements in raw memory. Specialise both for
/// an element type that needs more than its default constructor and destructor.

/// Builds `count` default elements; plain types become 0.
template <class T>
void XfnConstructElements(T* elements, int count)
{
    std::uninitialized_value_construct_n(elements, count);
}

template <class T>
void XfnDestructElements(T* elements, int count)
{
    std::destroy_n(elements, count);
}
