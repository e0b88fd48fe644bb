#pragma once

#include "foundation/base/XString.h"

#include <cstddef>
#include <cstdint>

/// The head and the numbers of geometries in well-known binary: ISO 13249-3 types (1001 for a point
/// with z) and the extended ones with flags in the top bits. Keeps a pointer to the bytes.
///
/// Every read is checked against the bytes there are; a failed one answers false and moves nothing.
class XWkbReader
{
public:
    enum Kind : std::uint32_t {
        kPoint = 1,
        kLineString,
        kPolygon,
        kMultiPoint,
        kMultiLineString,
        kMultiPolygon,
        kGeometryCollection,
    };

    struct Head
    {
        std::uint32_t kind = 0;
        bool hasZ = false;
        bool hasM = false;
    };

    XWkbReader(const unsigned char* bytes, std::size_t size) : m_bytes(bytes), m_size(size) {}

    /// Byte order, type and an embedded reference number, which is skipped. The order holds for the
    /// reads that follow.
    bool ReadHead(Head& head);
    bool ReadU32(std::uint32_t& value);
    bool ReadDouble(double& value);
    /// One position; z is 0 when the geometry has none, m is skipped.
    bool ReadPosition(const Head& head, double& x, double& y, double& z);
    /// A count of elements of at least `bytesEach` bytes; refused when the rest cannot hold them.
    bool ReadCount(std::size_t bytesEach, std::uint32_t& count);

    std::size_t GetUsed() const { return m_used; }
    std::size_t GetLeft() const { return m_size - m_used; }

private:
    const unsigned char* m_bytes;
    std::size_t m_size;
    std::size_t m_used = 0;
    bool m_isLittle = true;
};
