#pragma once

#include "foundation/raster/XDMFileInfo.h"

#include <bit>
#include <cstddef>
#include <cstdint>

/// The fixed pieces of a native raster file as they stand in it; docs/formats/xdm.md explains them.
/// They are read and written as they lie in memory.
static_assert(std::endian::native == std::endian::little, "the format is little endian");

inline constexpr unsigned char kXDMFileMagic[8] = {0x89, 'X', 'D', 'M', 0x0D, 0x0A, 0x1A, 0x0A};
inline constexpr std::uint16_t kXDMFileMajorVersion = 1;
inline constexpr std::uint16_t kXDMFileMinorVersion = 0;

/// Features a reader must know before it may read the file.
inline constexpr std::uint64_t kXDMFileUsesZstd = 1;
inline constexpr std::uint64_t kXDMFileUsesPrediction = 2;
inline constexpr std::uint64_t kXDMFileKnownFeatures = kXDMFileUsesZstd | kXDMFileUsesPrediction;

inline constexpr std::uint64_t kXDMFileAlignment = 16; ///< of every payload, block and directory
inline constexpr std::uint64_t kXDMFileMaxBlockBytes = std::uint64_t(1) << 28;
inline constexpr std::uint64_t kXDMFileMaxTiles = std::uint64_t(1) << 26; ///< of one level
inline constexpr std::uint64_t kXDMFileMaxBlocks = std::uint64_t(1) << 22;
inline constexpr int kXDMFileMaxBands = 65535;
inline constexpr int kXDMFileMaxLevels = 32;
inline constexpr int kXDMFileMaxTileSide = 32768;

inline constexpr std::uint32_t kXDMFileNoIndex = 0xFFFFFFFFu; ///< no band, or all; no level
inline constexpr std::uint32_t kXDMFileBlockIsRequired = 1;   ///< flag of a directory entry

enum class XDMFileBlock : std::uint32_t {
    File = 1,
    Band = 2,
    TileTable = 3,
    Reference = 4,
    Statistics = 5,
    Classes = 6,
    Acquisition = 7,
    Radar = 8,
    GCPSets = 9,
    Regions = 10,
    Signatures = 11,
    Matrices = 12,
    RadarScene = 13,
};

enum class XDMFileEncoding : std::uint32_t { Plain = 0, Zstd = 1, PredictedZstd = 2 };

struct tagXDMFileHeader
{
    unsigned char magic[8];
    std::uint16_t majorVersion;
    std::uint16_t minorVersion;
    std::uint32_t reserved;
    std::uint64_t requiredFeatures;
    std::uint64_t optionalFeatures;
    std::uint64_t fileBytes;
    std::uint64_t directoryOffset;
    std::uint64_t directoryBytes;
    std::uint32_t directoryChecksum;
    std::uint32_t headerChecksum; ///< of the 60 bytes before it
};
static_assert(sizeof(tagXDMFileHeader) == 64);

struct tagXDMFileDirectoryEntry
{
    std::uint32_t type;
    std::uint32_t flags;
    std::uint32_t band;
    std::uint32_t level;
    std::uint64_t offset;
    std::uint64_t bytes;
    std::uint32_t checksum;
    std::uint32_t reserved;
};
static_assert(sizeof(tagXDMFileDirectoryEntry) == 40);

struct tagXDMFileTileEntry
{
    std::uint64_t offset;
    std::uint32_t bytes; ///< 0 for a tile of fill samples only
    std::uint32_t checksum;
    std::uint32_t encoding;
    std::uint32_t reserved;
};
static_assert(sizeof(tagXDMFileTileEntry) == 24);

/// The size in pixels of a tile that is in the level.
inline void XfnGetXDMFileTileSize(const tagXDMFileLevel& level, int tx, int ty, int& width,
                                  int& height)
{
    const long long left = level.width - static_cast<long long>(tx) * level.tileWidth;
    const long long below = level.height - static_cast<long long>(ty) * level.tileHeight;
    width = static_cast<int>(left < level.tileWidth ? left : level.tileWidth);
    height = static_cast<int>(below < level.tileHeight ? below : level.tileHeight);
}

inline bool XfnHasXDMFileTile(const tagXDMFileLevel& level, int tx, int ty)
{
    return tx >= 0 && ty >= 0 && tx < level.GetTileColumns() && ty < level.GetTileRows();
}
