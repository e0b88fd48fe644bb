#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XVector3.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class XArchive;

/// The vertices of one object, in little memory: 16 bytes and the coordinates themselves.
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
    XVertexArray(XVertexArray&& other) noexcept;
    XVertexArray& operator=(const XVertexArray& other);
    XVertexArray& operator=(XVertexArray&& other) noexcept;
    ~XVertexArray() = default;

    int GetSize() const { return static_cast<int>(m_size); }
    int IsEmpty() const { return m_size == 0; }
    int HasZ() const { return m_hasZ; } ///< heights are stored; they may all be 0 again

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
    const double* GetCoords() const { return m_coords.get(); }
    int GetStride() const { return m_hasZ ? 3 : 2; }
    double GetX(int index) const { return m_coords[Offset(index)]; } ///< the index is not checked
    double GetY(int index) const { return m_coords[Offset(index) + 1]; }

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
    std::size_t Offset(int index) const
    {
        return static_cast<std::size_t>(index) * (m_hasZ ? 3u : 2u);
    }
    bool IsIndex(int index) const { return index >= 0 && index < GetSize(); }
    bool Equals(const XVertexArray& other) const;
    void Relayout(std::uint32_t capacity, bool hasZ);
    void Put(int index, double x, double y, double z);

    std::unique_ptr<double[]> m_coords;
    std::uint32_t m_size = 0;
    std::uint32_t m_capacity : 31 = 0; // in vertices
    std::uint32_t m_hasZ : 1 = 0;
};
