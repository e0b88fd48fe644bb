#include "foundation/base/XMemFile.h"
#include "foundation/raster/XDMFileMeta.h"
#include "foundation/raster/XDMFileReader.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

void Require(bool holds)
{
    if (!holds) std::abort();
}

/// What was read can be written, and read again as the same.
void CheckRecords(const tagXDMFileInfo& info)
{
    XString reason;
    Require(XfnCheckXDMFileInfo(info, reason));
    std::vector<unsigned char> once;
    std::vector<unsigned char> twice;
    for (const XDMFileBlock type : kXDMFileFileBlocks) {
        tagXDMFileInfo again;
        Require(XfnEncodeXDMFileBlock(type, info, once));
        Require(!XfnDecodeXDMFileBlock(type, once.data(), once.size(), again));
        Require(XfnEncodeXDMFileBlock(type, again, twice) && once == twice);
    }
    for (const tagXDMFileBand& band : info.bands) {
        for (const XDMFileBlock type : kXDMFileBandBlocks) {
            tagXDMFileBand again;
            std::array<unsigned char, 16> fill;
            Require(XfnEncodeXDMFileBandBlock(type, band, once));
            Require(!XfnDecodeXDMFileBandBlock(type, once.data(), once.size(), again, fill));
            Require(XfnEncodeXDMFileBandBlock(type, again, twice) && once == twice);
        }
    }
}

} // namespace

/// Opens any bytes as a file and decodes its tiles, as many as a few MiB of samples allow: an empty
/// tile is a few bytes in the file and may be 64 MiB in memory.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    auto file = std::make_unique<XMemFile>();
    file->Attach(data, size);
    XDMFileReader reader;
    XString message;
    if (!reader.Open(std::move(file), "fuzz.xdm", message)) {
        Require(message.Find("fuzz.xdm.") > 0);
        return 0;
    }
    const tagXDMFileInfo& info = reader.GetInfo();
    CheckRecords(info);

    std::size_t budget = std::size_t(4) << 20;
    for (int band = 0; band < static_cast<int>(info.bands.size()); ++band) {
        const auto& levels = info.bands[static_cast<std::size_t>(band)].levels;
        for (int level = 0; level < static_cast<int>(levels.size()); ++level) {
            const tagXDMFileLevel& at = levels[static_cast<std::size_t>(level)];
            for (int ty = 0; ty < at.GetTileRows(); ++ty) {
                for (int tx = 0; tx < at.GetTileColumns(); ++tx) {
                    const std::size_t bytes = reader.GetTileBytes(band, level, tx, ty);
                    if (bytes > budget) return 0;
                    budget -= bytes;
                    // exactly so large, that a byte too many is seen
                    const std::unique_ptr<unsigned char[]> tile(new unsigned char[bytes]);
                    message.Empty();
                    if (!reader.ReadTile(band, level, tx, ty, tile.get(), bytes, message)) {
                        Require(message.Find("fuzz.xdm.") > 0);
                        if (budget < 4096) return 0;
                        budget -= 4096; // a sentence costs more than a tile
                    }
                }
            }
        }
    }
    message.Empty();
    if (!reader.CheckAll(nullptr, message)) Require(message.Find("fuzz.xdm.") > 0);
    return 0;
}
