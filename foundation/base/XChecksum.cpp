#include "foundation/base/XChecksum.h"

#include <array>
#include <cstring>

#if defined(__x86_64__)
#include <nmmintrin.h>
#endif

namespace {

constexpr std::uint32_t kPolynomial = 0x82F63B78u; // reflected

using ByteTable = std::array<std::uint32_t, 256>;

/// Table k advances the register over a byte that k zero bytes follow.
constexpr std::array<ByteTable, 8> MakeTables()
{
    std::array<ByteTable, 8> tables{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t crc = i;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) ? kPolynomial : 0);
        }
        tables[0][i] = crc;
    }
    for (std::size_t k = 1; k < 8; ++k) {
        for (std::size_t i = 0; i < 256; ++i) {
            const std::uint32_t before = tables[k - 1][i];
            tables[k][i] = (before >> 8) ^ tables[0][before & 0xFF];
        }
    }
    return tables;
}

constexpr std::array<ByteTable, 8> kTables = MakeTables();

#if defined(__x86_64__)

// Three lanes hide the latency of the instruction; a lane is long enough that joining costs little
// and short enough that a lane triple stays in the first cache.
constexpr std::size_t kLane = 1024;

/// Advances a register over kLane zero bytes, a byte of the register at a time.
std::array<ByteTable, 4> MakeLaneTables()
{
    std::array<ByteTable, 4> tables{};
    for (std::size_t k = 0; k < 4; ++k) {
        for (std::uint32_t i = 0; i < 256; ++i) {
            std::uint32_t crc = i << (8 * k);
            for (std::size_t n = 0; n < kLane; ++n)
                crc = (crc >> 8) ^ kTables[0][crc & 0xFF];
            tables[k][i] = crc;
        }
    }
    return tables;
}

std::uint64_t Load(const unsigned char* p)
{
    std::uint64_t word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

__attribute__((target("sse4.2"))) std::uint32_t ChecksumByInstruction(const unsigned char* p,
                                                                      std::size_t count)
{
    static const std::array<ByteTable, 4> lanes = MakeLaneTables();
    const auto skipLane = [&](std::uint64_t crc) {
        return lanes[0][crc & 0xFF] ^ lanes[1][(crc >> 8) & 0xFF] ^ lanes[2][(crc >> 16) & 0xFF] ^
               lanes[3][(crc >> 24) & 0xFF];
    };
    std::uint64_t crc = 0xFFFFFFFFu;
    for (; count >= 3 * kLane; p += 3 * kLane, count -= 3 * kLane) {
        std::uint64_t second = 0;
        std::uint64_t third = 0;
        for (std::size_t i = 0; i < kLane; i += 8) {
            crc = _mm_crc32_u64(crc, Load(p + i));
            second = _mm_crc32_u64(second, Load(p + kLane + i));
            third = _mm_crc32_u64(third, Load(p + 2 * kLane + i));
        }
        crc = skipLane(skipLane(crc) ^ second) ^ third;
    }
    for (; count >= 8; p += 8, count -= 8)
        crc = _mm_crc32_u64(crc, Load(p));
    std::uint32_t rest = static_cast<std::uint32_t>(crc);
    for (; count > 0; ++p, --count)
        rest = _mm_crc32_u8(rest, *p);
    return ~rest;
}

#endif

} // namespace

std::uint32_t XfnGetChecksumByTable(const void* bytes, std::size_t count)
{
    const unsigned char* p = static_cast<const unsigned char*>(bytes);
    std::uint32_t crc = 0xFFFFFFFFu;
    for (; count >= 8; p += 8, count -= 8) {
        crc ^= static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
               static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
        crc = kTables[7][crc & 0xFF] ^ kTables[6][(crc >> 8) & 0xFF] ^
              kTables[5][(crc >> 16) & 0xFF] ^ kTables[4][crc >> 24] ^ kTables[3][p[4]] ^
              kTables[2][p[5]] ^ kTables[1][p[6]] ^ kTables[0][p[7]];
    }
    for (; count > 0; ++p, --count)
        crc = (crc >> 8) ^ kTables[0][(crc ^ *p) & 0xFF];
    return ~crc;
}

std::uint32_t XfnGetChecksum(const void* bytes, std::size_t count)
{
#if defined(__x86_64__)
    static const bool hasInstruction = __builtin_cpu_supports("sse4.2");
    if (hasInstruction) {
        return ChecksumByInstruction(static_cast<const unsigned char*>(bytes), count);
    }
#endif
    return XfnGetChecksumByTable(bytes, count);
}
