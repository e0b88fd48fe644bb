#include "foundation/vector/XVertexArray.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XSentinels.h"

#include <algorithm>
#include <bit>
#include <cstring>
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
    const int size = other.GetSize();
    Relayout(static_cast<std::uint32_t>(size), NeedsHeights(other));
    SetSize(static_cast<std::uint32_t>(size));
    const std::size_t from = static_cast<std::size_t>(other.GetStride());
    const std::size_t to = static_cast<std::size_t>(GetStride());
    for (std::size_t i = 0; i < static_cast<std::size_t>(size); ++i) {
        std::copy_n(other.GetCoords() + i * from, to, Coords() + i * to);
    }
}

XVertexArray& XVertexArray::operator=(const XVertexArray& other)
{
    if (this != &other) *this = XVertexArray(other);
    return *this;
}

void XVertexArray::SetSize(std::uint32_t size)
{
    tagHead head = GetHead();
    head.size = size;
    std::memcpy(m_block.get(), &head, sizeof head);
}

// A copy keeps heights only when one is not 0, so `capacity` and `hasZ` hold for what is there.
void XVertexArray::Relayout(std::uint32_t capacity, bool hasZ)
{
    const tagHead before = GetHead();
    const std::size_t from = before.hasZ ? 3 : 2;
    const std::size_t to = hasZ ? 3 : 2;
    if (capacity == 0) {
        m_block.reset();
        return;
    }
    std::unique_ptr<double[]> block(new double[1 + capacity * to]);
    for (std::size_t i = 0; i < before.size; ++i) {
        const double* source = GetCoords() + i * from;
        double* target = block.get() + 1 + i * to;
        target[0] = source[0];
        target[1] = source[1];
        if (hasZ) target[2] = before.hasZ ? source[2] : 0.0;
    }
    tagHead head;
    head.size = before.size;
    head.capacity = capacity & kMaxCount;
    head.hasZ = hasZ;
    std::memcpy(block.get(), &head, sizeof head);
    m_block = std::move(block);
}

void XVertexArray::Put(int index, double x, double y, double z)
{
    double* at = Coords() + Offset(index);
    at[0] = x;
    at[1] = y;
    if (HasZ()) at[2] = z;
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
    const double* at = GetCoords() + Offset(index);
    x = at[0];
    y = at[1];
    z = HasZ() ? at[2] : 0.0;
    return 1;
}

int XVertexArray::SetAt(int index, double x, double y, double z)
{
    if (!IsIndex(index)) return 0;
    if (IsHeight(z) && !HasZ()) Relayout(GetHead().capacity, true);
    Put(index, x, y, z);
    return 1;
}

int XVertexArray::InsertAt(int index, const tagXVector3& vertex)
{
    const tagHead head = GetHead();
    if (index < 0 || index > GetSize() || head.size == kMaxCount) return 0;
    const tagXVector3 added = vertex; // may lie in this array
    const bool hasZ = head.hasZ || IsHeight(added.z);
    if (head.size == head.capacity) {
        const std::uint64_t wanted = head.size + std::uint64_t{head.size} / 2 + 4;
        Relayout(static_cast<std::uint32_t>(std::min<std::uint64_t>(wanted, kMaxCount)), hasZ);
    } else if (hasZ != (head.hasZ != 0)) {
        Relayout(head.capacity, true);
    }
    double* begin = Coords() + Offset(index);
    double* end = Coords() + Offset(GetSize());
    std::copy_backward(begin, end, end + GetStride());
    SetSize(head.size + 1);
    Put(index, added.x, added.y, added.z);
    return 1;
}

int XVertexArray::RemoveAt(int index, int count)
{
    if (!IsIndex(index) || count < 0) return 0;
    count = std::min(count, GetSize() - index);
    const double* begin = GetCoords();
    std::copy(begin + Offset(index + count), begin + Offset(GetSize()), Coords() + Offset(index));
    SetSize(static_cast<std::uint32_t>(GetSize() - count));
    return 1;
}

void XVertexArray::RemoveAll()
{
    *this = XVertexArray();
}

void XVertexArray::Reserve(int count)
{
    const auto wanted = static_cast<std::uint32_t>(std::max(count, 0));
    if (wanted > GetHead().capacity) Relayout(wanted, HasZ());
}

void XVertexArray::Shrink()
{
    const tagHead head = GetHead();
    if (head.capacity != head.size || (head.hasZ && !NeedsHeights(*this)))
        *this = XVertexArray(*this);
}

tagXVector3* XVertexArray::GetData()
{
    if (IsEmpty()) return nullptr;
    if (!HasZ()) Relayout(GetHead().capacity, true);
    // a vertex is laid out as three reals in a row
    return reinterpret_cast<tagXVector3*>(Coords());
}

tagXVector3* XVertexArray::GetDataAt(int index)
{
    return IsIndex(index) ? GetData() + index : nullptr;
}

void XVertexArray::CopyTo(std::vector<tagXVector3>& vertices) const
{
    vertices.resize(static_cast<std::size_t>(GetSize()));
    const double* at = GetCoords();
    const int stride = GetStride();
    for (tagXVector3& vertex : vertices) {
        vertex = {at[0], at[1], stride == 3 ? at[2] : 0.0};
        at += stride;
    }
}

std::size_t XVertexArray::GetMemoryUse() const
{
    return std::size_t{GetHead().capacity} * static_cast<std::size_t>(GetStride()) * sizeof(double);
}

void XVertexArray::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        const bool hasZ = NeedsHeights(*this);
        const std::size_t size = GetHead().size;
        archive << static_cast<std::uint8_t>(hasZ) << static_cast<std::uint32_t>(size);
        const std::size_t stored = hasZ ? 3 : 2;
        const std::size_t stride = static_cast<std::size_t>(GetStride());
        if (stored == stride) {
            archive.Write(GetCoords(), size * stored * sizeof(double));
            return;
        }
        for (std::size_t i = 0; i < size; ++i) {
            archive.Write(GetCoords() + i * stride, stored * sizeof(double));
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
    if (count > 0) {
        archive.ReadExactly(loaded.Coords(), count * stride * sizeof(double));
        loaded.SetSize(count);
    }
    *this = std::move(loaded);
}

bool XVertexArray::Equals(const XVertexArray& other) const
{
    if (GetSize() != other.GetSize()) return false;
    for (int i = 0; i < GetSize(); ++i) {
        if (GetAt(i) != other.GetAt(i)) return false;
    }
    return true;
}
