#include "foundation/base/XThreadSafeArr3.h"

#include <new>
#include <stdexcept>

int XThreadSafeArr3::Create(int elementSize, int xSize, int ySize, int zSize)
{
    std::size_t bytes = 1;
    for (const int size : {elementSize, xSize, ySize, zSize}) {
        if (size < 1 || __builtin_mul_overflow(bytes, static_cast<std::size_t>(size), &bytes)) {
            return 0;
        }
    }
    std::vector<unsigned char> data;
    try {
        data.resize(bytes);
    } catch (const std::bad_alloc&) {
        return 0;
    } catch (const std::length_error&) {
        return 0;
    }
    const std::unique_lock lock(m_mutex);
    m_data.swap(data);
    m_elementSize = elementSize;
    m_xSize = xSize;
    m_ySize = ySize;
    m_zSize = zSize;
    return 1;
}

void XThreadSafeArr3::Free()
{
    const std::unique_lock lock(m_mutex);
    std::vector<unsigned char>().swap(m_data);
    m_elementSize = m_xSize = m_ySize = m_zSize = 0;
}

void* XThreadSafeArr3::GetAt(int x, int y, int z)
{
    if (x < 0 || y < 0 || z < 0 || x >= m_xSize || y >= m_ySize || z >= m_zSize) return nullptr;
    const std::size_t row = static_cast<std::size_t>(z) * m_ySize + y;
    return m_data.data() + (row * m_xSize + x) * m_elementSize;
}
