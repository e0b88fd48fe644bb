#include "foundation/vector/XWkbReader.h"

#include <bit>

namespace {

constexpr std::uint32_t kFlagZ = 0x80000000u;
constexpr std::uint32_t kFlagM = 0x40000000u;
constexpr std::uint32_t kFlagReference = 0x20000000u;

template <class T>
T Assemble(const unsigned char* bytes, bool isLittle)
{
    T value = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i) {
        const std::size_t at = isLittle ? sizeof(T) - 1 - i : i;
        value = static_cast<T>(value << 8 | bytes[at]);
    }
    return value;
}

} // namespace

bool XWkbReader::ReadHead(Head& head)
{
    const std::size_t start = m_used;
    if (!m_bytes || GetLeft() < 1 || m_bytes[m_used] > 1) return false;
    m_isLittle = m_bytes[m_used++] == 1;
    std::uint32_t type = 0;
    if (!ReadU32(type)) {
        m_used = start;
        return false;
    }
    const std::uint32_t plain = type & ~(kFlagZ | kFlagM | kFlagReference);
    const std::uint32_t thousands = plain / 1000;
    head.kind = plain % 1000;
    head.hasZ = (type & kFlagZ) != 0 || thousands == 1 || thousands == 3;
    head.hasM = (type & kFlagM) != 0 || thousands == 2 || thousands == 3;
    std::uint32_t reference = 0;
    const bool isSound = thousands <= 3 && head.kind >= kPoint &&
                         head.kind <= kGeometryCollection &&
                         ((type & kFlagReference) == 0 || ReadU32(reference));
    if (!isSound) m_used = start;
    return isSound;
}

bool XWkbReader::ReadU32(std::uint32_t& value)
{
    if (GetLeft() < sizeof value) return false;
    value = Assemble<std::uint32_t>(m_bytes + m_used, m_isLittle);
    m_used += sizeof value;
    return true;
}

bool XWkbReader::ReadDouble(double& value)
{
    if (GetLeft() < sizeof value) return false;
    value = std::bit_cast<double>(Assemble<std::uint64_t>(m_bytes + m_used, m_isLittle));
    m_used += sizeof value;
    return true;
}

bool XWkbReader::ReadPosition(const Head& head, double& x, double& y, double& z)
{
    const std::size_t numbers = 2u + (head.hasZ ? 1u : 0u) + (head.hasM ? 1u : 0u);
    if (GetLeft() < numbers * sizeof(double)) return false;
    double skipped = 0.0;
    z = 0.0;
    return ReadDouble(x) && ReadDouble(y) && (!head.hasZ || ReadDouble(z)) &&
           (!head.hasM || ReadDouble(skipped));
}

bool XWkbReader::ReadCount(std::size_t bytesEach, std::uint32_t& count)
{
    const std::size_t start = m_used;
    if (!ReadU32(count)) return false;
    if (bytesEach > 0 && count > GetLeft() / bytesEach) {
        m_used = start;
        return false;
    }
    return true;
}
