#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XVector3.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class XArchive;

/// The vertices of one object, in little memory: a pointer to a block of the
/// coordinates themselves, which a head of 8 bytes precedes (as an allocation has 8 to spare behind
/// an even number of reals, it takes no room).
///
/// Heights are stored only once one of them is not 0, so a flat vertex takes 16 bytes and another
/// 24. Growing leaves room for more; Shrink gives it back. Copies and archives keep no spare room.
/// Any number may be a coordinate, also one that is not finite; what is drawn and hit leaves
/// such vertices out.
/// Threads: reading from any thread while none changes it.
class XAPI XVertexArray
{
public:
    XVertexArray() = default;
    XVertexArray(const XVertexArray& other);
    XVertexArray(XVertexArray&& other) noexcept = default;
    XVertexArray& operator=(const XVertexArray& other);
    XVertexArray& operator=(XVertexArray&& other) noexcept = default;
    ~XVertexArray() = default;

    int GetSize() const { return static_cast<int>(GetHead().size); }
    int IsEmpty() const { return GetHead().size == 0; }
    int HasZ() const { return GetHead().hasZ; } ///< heights are stored; they may all be 0 again

    /// @return the index of the new vertex
    int Add(double x, double y, double z = 0.0);
    int Add(const tagXVector3& vertex) { return Add(vertex.x, vertex.y, vertex.z); }
    /// An index that there is not gives 1.7e308 three times.
    tagXVector3 GetAt(int index) const;
    /// @return 0 for an index that there is not; then nothing is written
    int GetAt(int index, double& x, double& y, double& z) const;
    /// These return 0 and change nothing for an index that there is not.
    int SetAt(int index, double x, double y, double z = 0.0);
    int SetAt(int index, const tagXVector3& vertex)
    {
        return SetAt(index, vertex.x, vertex.y, vertex.z);
    }
    int InsertAt(int index, const tagXVector3& vertex); ///< before `index`; the size appends
    int RemoveAt(int index, int count = 1);             ///< a count past the end stops there
    void RemoveAll();                                   ///< frees the memory too

    void Reserve(int count);
    void Shrink();

    /// The coordinates in one block: vertex i begins at [i * GetStride()], with x, y and, when the
    /// stride is 3, z. Null when empty. Good until the next change.
    const double* GetCoords() const { return m_block ? m_block.get() + 1 : nullptr; }
    int GetStride() const { return HasZ() ? 3 : 2; }
    double GetX(int index) const
    {
        return m_block[1 + Offset(index)];
    } ///< the index is not checked
    double GetY(int index) const { return m_block[2 + Offset(index)]; }

    /// The vertices to write through; heights are stored from now on. Null when empty. Good until
    /// the next change of the size.
    tagXVector3* GetData();
    tagXVector3* GetDataAt(int index); ///< null for an index that there is not
    /// Replaces what `vertices` holds.
    void CopyTo(std::vector<tagXVector3>& vertices) const;

    std::size_t GetMemoryUse() const; ///< bytes of the block of coordinates, spare room included

    /// A loaded count is checked against what the file holds. Throws XFileException; then the
    /// array is as it was.
    void Serialize(XArchive& archive);

    friend bool operator==(const XVertexArray& a, const XVertexArray& b) { return a.Equals(b); }

private:
    struct tagHead
    {
        std::uint32_t size = 0;
        std::uint32_t capacity : 31 = 0; // in vertices
        std::uint32_t hasZ : 1 = 0;
    };
    static_assert(sizeof(tagHead) == sizeof(double));

    tagHead GetHead() const { return m_block ? std::bit_cast<tagHead>(m_block[0]) : tagHead(); }
    void SetSize(std::uint32_t size); // there is a block
    double* Coords() { return m_block.get() + 1; }
    std::size_t Offset(int index) const
    {
        return static_cast<std::size_t>(index) * static_cast<std::size_t>(GetStride());
    }
    bool IsIndex(int index) const { return index >= 0 && index < GetSize(); }
    bool Equals(const XVertexArray& other) const;
    void Relayout(std::uint32_t capacity, bool hasZ);
    void Put(int index, double x, double y, double z);

    std::unique_ptr<double[]> m_block; // the head, then the coordinates; null when there is no room
};
