#pragma once

#include "foundation/raster/XDMFileLayout.h"

#include <array>
#include <cstdint>
#include <vector>

/// The metadata blocks of a native raster file: records to bytes and back.
///
/// Blocks of a band are Band, Reference, Statistics, Classes, Acquisition and Radar, all others
/// are of the file. A block whose records hold nothing that a reader would not presume has no
/// bytes and is left out.

inline constexpr XDMFileBlock kXDMFileBandBlocks[] = {
    XDMFileBlock::Reference,   XDMFileBlock::Statistics, XDMFileBlock::Classes,
    XDMFileBlock::Acquisition, XDMFileBlock::Radar,
};
inline constexpr XDMFileBlock kXDMFileFileBlocks[] = {
    XDMFileBlock::GCPSets,  XDMFileBlock::Regions,    XDMFileBlock::Signatures,
    XDMFileBlock::Matrices, XDMFileBlock::RadarScene,
};

/// Blocks that may stand once for all bands. Their records are of fixed size but for texts, which
/// copies share, so that no small file makes a large memory.
inline bool XfnMayShareXDMFileBlock(XDMFileBlock type)
{
    return type == XDMFileBlock::Reference || type == XDMFileBlock::Acquisition;
}

/// What a Band block holds beyond the record.
struct tagXDMFileBandLayout
{
    std::vector<long long> levels;   ///< width, height, tile width, tile height of each
    std::vector<unsigned char> fill; ///< a sample without value
};

/// @param out  the bytes of the block; empty when it is to be left out
/// @return 0 when they pass the limit of a block.
int XfnEncodeXDMFileBlock(XDMFileBlock type, const tagXDMFileInfo& info,
                          std::vector<unsigned char>& out);
int XfnEncodeXDMFileBandBlock(XDMFileBlock type, const tagXDMFileBand& band,
                              std::vector<unsigned char>& out);

/// @return null, or what is wrong with the bytes, as the end of a sentence ("ends within a field").
const char* XfnDecodeXDMFileBlock(XDMFileBlock type, const unsigned char* bytes, std::size_t count,
                                  tagXDMFileInfo& info);
/// @param fill  set from a Band block only
const char* XfnDecodeXDMFileBandBlock(XDMFileBlock type, const unsigned char* bytes,
                                      std::size_t count, tagXDMFileBand& band,
                                      std::array<unsigned char, 16>& fill);
