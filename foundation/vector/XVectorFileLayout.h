#pragma once

#include <cstddef>
#include <cstdint>

/// The frame of a native vector file; docs/formats/xvc.md is the layout.
inline constexpr unsigned char kXVectorFileMagic[8] = {0x89, 'X', 'V', 'C', 0x0D, 0x0A, 0x1A, 0x0A};
inline constexpr std::uint16_t kXVectorFileMajor = 1;
inline constexpr std::uint16_t kXVectorFileMinor = 0;
inline constexpr int kXVectorFileMaxDepth = 64; ///< of bases, layers and lists in each other

enum XVectorFileBlock : std::uint32_t {
    kXVectorFileBase = 1,
    kXVectorFileLayer = 2,
    kXVectorFileList = 3,
    kXVectorFileEnd = 4,
    kXVectorFileObjects = 5,
    kXVectorFileAttributes = 6,
    kXVectorFileSymbols = 7,
};

enum XVectorFileContents : std::uint32_t {
    kXVectorFileHasPoints = 1,
    kXVectorFileHasLines = 2,
    kXVectorFileHasAreas = 4,
    kXVectorFileHasOthers = 8,
    kXVectorFileHasHeights = 16,
};

struct tagXVectorFileHeader
{
    unsigned char magic[8];
    std::uint16_t major = kXVectorFileMajor;
    std::uint16_t minor = kXVectorFileMinor;
    std::uint32_t reserved = 0;
    std::uint64_t fileBytes = 0;
    std::uint32_t reserved2 = 0;
    std::uint32_t checksum = 0; ///< of the bytes before
};
static_assert(sizeof(tagXVectorFileHeader) == 32);

struct tagXVectorFileBlockHead
{
    static constexpr std::uint32_t kRequired = 1; ///< in flags

    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    std::uint64_t bytes = 0;
    std::uint32_t payloadChecksum = 0;
    std::uint32_t checksum = 0; ///< of the bytes before
};
static_assert(sizeof(tagXVectorFileBlockHead) == 24);

struct tagXVectorFileRecordHead
{
    std::uint32_t bytes = 0;
    std::uint16_t classIndex = 0;
    std::uint16_t reserved = 0;
    std::uint32_t number = 0; ///< row of attributes + 1, or a symbol's number
};
static_assert(sizeof(tagXVectorFileRecordHead) == 12);
