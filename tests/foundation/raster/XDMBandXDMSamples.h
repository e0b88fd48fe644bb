#pragma once

#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMFileSaver.h"
#include "foundation/raster/XRSFile.h"
#include "tests/foundation/raster/TestXDMFileSamples.h"
#include "tests/support/XBandPlaces.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

inline void Save(XRSFile& file, const std::string& path,
                 XDMCompression compression = XDMCompression::Zstd)
{
    XString error;
    ASSERT_TRUE(XDMFileSaver::Save(file, path.c_str(), compression, {}, error))
        << error.GetString();
}

inline void Load(XRSFile& file, const std::string& path)
{
    XString error;
    ASSERT_TRUE(file.LoadFileXDM(path.c_str(), error, nullptr)) << error.GetString();
    EXPECT_STREQ(file.GetNotes(), "");
}

/// Every sample of a level, by bytes.
inline std::vector<unsigned char> ReadLevel(const XDMBand& band, int level)
{
    int width, height, tileWidth, tileHeight;
    band.GetLevelSize(level, width, height);
    band.GetTileSize(level, tileWidth, tileHeight);
    const std::size_t size = static_cast<std::size_t>(band.GetDataSize());
    std::vector<unsigned char> all(size * static_cast<std::size_t>(width * height));
    XString message;
    for (int ty = 0; ty * tileHeight < height; ++ty) {
        for (int tx = 0; tx * tileWidth < width; ++tx) {
            const auto tile = band.GetTile(level, tx, ty, nullptr, message);
            if (!tile) {
                ADD_FAILURE() << message.GetString();
                return {};
            }
            for (int y = 0; y < tile->GetHeight(); ++y)
                std::memcpy(all.data() + size * static_cast<std::size_t>(
                                                    (ty * tileHeight + y) * width + tx * tileWidth),
                            tile->GetRow(y), tile->GetRowBytes());
        }
    }
    return all;
}

/// One band, saved and opened again.
struct tagRoundTrip
{
    explicit tagRoundTrip(std::unique_ptr<XDMBandMemory> made) : source(made.get())
    {
        file.AddBand(made.release());
        Save(file, folder / "a.xdm");
        Load(back, folder / "a.xdm");
        band = back.GetBandAt(0);
    }
    XDMFileFolder folder;
    XRSFile file, back;
    XDMBandMemory* source;
    XDMBand* band = nullptr;
};
