#pragma once

/// Counts every allocation through operator new of this thread while it lives.
class AllocationCounter
{
public:
    AllocationCounter();
    int GetCount() const;

private:
    int m_start;
};
