#include "foundation/vector/XVertexArray.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XSentinels.h"

#include <algorithm>
#include <bit>
#include <new>
#include <utility>

namespace {

constexpr std::uint32_t kMaxCount = 0x7FFFFFFFu;

// A negative zero is a height too: what is stored is what was set, to the last bit.
bool IsHeight(double z)
{
    return std::bit_cast<std::uint64_t>(z) != 0;
}

bool NeedsHeights(const XVertexArray& array)
{
    if (!array.HasZ()) return false;
    const double* coords = array.GetCoords();
    for (int i = 0; i < array.GetSize(); ++i) {
        if (IsHeight(coords[3 * static_cast<std::size_t>(i) + 2])) return true;
    }
    return false;
}

} // namespace

XVertexArray::XVertexArray(const XVertexArray& other)
{
    if (other.IsEmpty()) return;
    m_hasZ = NeedsHeights(other);
    Relayout(other.m_size, m_hasZ);
    m_size = other.m_size;
    const std::size_t from = static_cast<std::size_t>(other.GetStride());
    const std::size_t to = static_cast<std::size_t>(GetStride());
    for (std::size_t i = 0; i < m_size; ++i) {
        std::copy_n(other.m_coords.get() + i * from, to, m_coords.get() + i * to);
    }
}

XVertexArray::XVertexArray(XVertexArray&& other) noexcept
{
    *this = std::move(other);
}

XVertexArray& XVertexArray::operator=(const XVertexArray& other)
{
    if (this != &other) *this = XVertexArray(other);
    return *this;
}

XVertexArray& XVertexArray::operator=(XVertexArray&& other) noexcept
{
    if (this == &other) return *this;
    m_coords = std::move(other.m_coords);
    m_size = std::exchange(other.m_size, 0);
    m_capacity = other.m_capacity;
    m_hasZ = other.m_hasZ;
    other.m_capacity = 0;
    other.m_hasZ = 0;
    return *this;
}

// A copy keeps heights only when one is not 0, so `capacity` and `hasZ` hold for what is there.
void XVertexArray::Relayout(std::uint32_t capacity, bool hasZ)
{
    const std::size_t from = m_hasZ ? 3 : 2;
    const std::size_t to = hasZ ? 3 : 2;
    std::unique_ptr<double[]> coords;
    if (capacity > 0) coords.reset(new double[capacity * to]);
    for (std::size_t i = 0; i < m_size; ++i) {
        const double* source = m_coords.get() + i * from;
        double* target = coords.get() + i * to;
        target[0] = source[0];
        target[1] = source[1];
        if (hasZ) target[2] = m_hasZ ? source[2] : 0.0;
    }
    m_coords = std::move(coords);
    m_capacity = capacity & kMaxCount;
    m_hasZ = hasZ;
}

void XVertexArray::Put(int index, double x, double y, double z)
{
    double* at = m_coords.get() + Offset(index);
    at[0] = x;
    at[1] = y;
    if (m_hasZ) at[2] = z;
}

int XVertexArray::Add(double x, double y, double z)
{
    return InsertAt(GetSize(), {x, y, z}) ? GetSize() - 1 : -1;
}

tagXVector3 XVertexArray::GetAt(int index) const
{
    tagXVector3 vertex(kXNotSet, kXNotSet, kXNotSet);
    GetAt(index, vertex.x, vertex.y, vertex.z);
    return vertex;
}

int XVertexArray::GetAt(int index, double& x, double& y, double& z) const
{
    if (!IsIndex(index)) return 0;
    const double* at = m_coords.get() + Offset(index);
    x = at[0];
    y = at[1];
    z = m_hasZ ? at[2] : 0.0;
    return 1;
}

int XVertexArray::SetAt(int index, double x, double y, double z)
{
    if (!IsIndex(index)) return 0;
    if (IsHeight(z) && !m_hasZ) Relayout(m_capacity, true);
    Put(index, x, y, z);
    return 1;
}

int XVertexArray::InsertAt(int index, const tagXVector3& vertex)
{
    if (index < 0 || index > GetSize() || m_size == kMaxCount) return 0;
    const tagXVector3 added = vertex; // may lie in this array
    const bool hasZ = m_hasZ || IsHeight(added.z);
    if (m_size == m_capacity) {
        const std::uint64_t wanted = m_size + std::uint64_t{m_size} / 2 + 4;
        Relayout(static_cast<std::uint32_t>(std::min<std::uint64_t>(wanted, kMaxCount)), hasZ);
    } else if (hasZ != (m_hasZ != 0)) {
        Relayout(m_capacity, true);
    }
    double* begin = m_coords.get() + Offset(index);
    double* end = m_coords.get() + Offset(GetSize());
    std::copy_backward(begin, end, end + GetStride());
    ++m_size;
    Put(index, added.x, added.y, added.z);
    return 1;
}

int XVertexArray::RemoveAt(int index, int count)
{
    if (!IsIndex(index) || count < 0) return 0;
    count = std::min(count, GetSize() - index);
    const double* begin = m_coords.get();
    std::copy(begin + Offset(index + count), begin + Offset(GetSize()),
              m_coords.get() + Offset(index));
    m_size -= static_cast<std::uint32_t>(count);
    return 1;
}

void XVertexArray::RemoveAll()
{
    *this = XVertexArray();
}

void XVertexArray::Reserve(int count)
{
    const auto wanted = static_cast<std::uint32_t>(std::max(count, 0));
    if (wanted > m_capacity) Relayout(wanted, m_hasZ);
}

void XVertexArray::Shrink()
{
    if (m_capacity != m_size || (m_hasZ && !NeedsHeights(*this))) *this = XVertexArray(*this);
}

tagXVector3* XVertexArray::GetData()
{
    if (m_size == 0) return nullptr;
    if (!m_hasZ) Relayout(m_capacity, true);
    // a vertex is laid out as three reals in a row
    return reinterpret_cast<tagXVector3*>(m_coords.get());
}

tagXVector3* XVertexArray::GetDataAt(int index)
{
    return IsIndex(index) ? GetData() + index : nullptr;
}

void XVertexArray::CopyTo(std::vector<tagXVector3>& vertices) const
{
    vertices.resize(m_size);
    const double* at = m_coords.get();
    const int stride = GetStride();
    for (tagXVector3& vertex : vertices) {
        vertex = {at[0], at[1], stride == 3 ? at[2] : 0.0};
        at += stride;
    }
}

std::size_t XVertexArray::GetMemoryUse() const
{
    return std::size_t{m_capacity} * static_cast<std::size_t>(GetStride()) * sizeof(double);
}

void XVertexArray::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        const bool hasZ = NeedsHeights(*this);
        archive << static_cast<std::uint8_t>(hasZ) << std::uint32_t{m_size};
        const std::size_t stored = hasZ ? 3 : 2;
        const std::size_t stride = static_cast<std::size_t>(GetStride());
        if (stored == stride) {
            archive.Write(m_coords.get(), m_size * stored * sizeof(double));
            return;
        }
        for (std::size_t i = 0; i < m_size; ++i) {
            archive.Write(m_coords.get() + i * stride, stored * sizeof(double));
        }
        return;
    }
    std::uint8_t hasZ = 0;
    archive >> hasZ;
    if (hasZ > 1) throw XFileException(XFileException::kInvalidFile);
    const std::size_t stride = hasZ ? 3 : 2;
    const std::uint32_t count = archive.ReadCount(stride * sizeof(double));
    if (count > kMaxCount) throw XFileException(XFileException::kInvalidFile);
    XVertexArray loaded;
    loaded.Relayout(count, hasZ != 0);
    if (count > 0) archive.ReadExactly(loaded.m_coords.get(), count * stride * sizeof(double));
    loaded.m_size = count;
    *this = std::move(loaded);
}

bool XVertexArray::Equals(const XVertexArray& other) const
{
    if (m_size != other.m_size) return false;
    for (int i = 0; i < GetSize(); ++i) {
        if (GetAt(i) != other.GetAt(i)) return false;
    }
    return true;
}
