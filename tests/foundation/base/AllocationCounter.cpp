#include "tests/foundation/base/AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local int g_allocations = 0;

} // namespace

// the forms for arrays call these
void* operator new(std::size_t bytes)
{
    ++g_allocations;
    if (void* block = std::malloc(bytes ? bytes : 1)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

AllocationCounter::AllocationCounter() : m_start(g_allocations) {}

int AllocationCounter::GetCount() const
{
    return g_allocations - m_start;
}
