#include "foundation/raster/XGdalTileReader.h"

#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/reference/XGdalErrors.h"

#include <gdal_priv.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr int kTileSide = 256;
constexpr int kStripTileWidth = 512;
constexpr int kStripTileHeight = 64; // little is decoded beyond a view's edge
constexpr std::int64_t kTileRowBytes = std::int64_t(32) << 20; // stays in GDAL's block cache

bool IsRaised(const std::atomic<int>* abort)
{
    return abort && abort->load(std::memory_order_relaxed) != 0;
}

/// About `wanted` pixels in whole blocks.
int FitTile(int block, int wanted)
{
    if (block >= wanted / 2 && block <= wanted * 4) return block;
    if (block > wanted) return wanted;
    return block * ((wanted + block - 1) / block);
}

void LayOut(tagXGdalLevel& level, GDALRasterBand* source, int pixelBytes)
{
    source->GetBlockSize(&level.blockWidth, &level.blockHeight);
    level.blockWidth = std::max(level.blockWidth, 1);
    level.blockHeight = std::max(level.blockHeight, 1);
    level.isStrip = level.blockWidth >= level.sourceWidth && level.sourceWidth > kTileSide;
    if (level.isStrip) {
        const std::int64_t rowBytes = static_cast<std::int64_t>(level.sourceWidth) * pixelBytes;
        const int most = static_cast<int>(
            std::clamp<std::int64_t>(kTileRowBytes / rowBytes, 1, kStripTileHeight));
        level.tileWidth = kStripTileWidth;
        level.tileHeight = level.isVirtual ? most : FitTile(level.blockHeight, most);
    } else if (!level.isVirtual) {
        level.tileWidth = FitTile(level.blockWidth, kTileSide);
        level.tileHeight = FitTile(level.blockHeight, kTileSide);
    }
}

struct tagSpan
{
    int begin;
    int count;
};

/// Reads the tiles of one place at the resolution of the source.
class XPlainReader
{
public:
    XPlainReader(GDALDataset* dataset, const tagXGdalLevel& level, int dataType)
        : m_dataset(dataset),
          m_level(level),
          m_type(static_cast<GDALDataType>(XfnToGdalType(dataType)))
    {}

    bool Read(int x0, int y0, std::vector<tagXGdalTarget>& targets)
    {
        // a driver of streams loads the later bands of a line with the first one: asked for in
        // another order, every further band would begin at the start of the stream
        std::vector<const tagXGdalTarget*> inOrder;
        for (const tagXGdalTarget& target : targets)
            inOrder.push_back(&target);
        std::sort(inOrder.begin(), inOrder.end(),
                  [](const auto* a, const auto* b) { return a->bandNumber < b->bandNumber; });
        for (const tagXGdalTarget* target : inOrder) {
            GDALRasterBand* band =
                XfnGetGdalLevelBand(m_dataset, target->bandNumber, m_level.overview);
            int x = x0;
            for (const auto& tile : target->tiles) {
                if (!band || !ReadOne(band, x, y0, *tile)) return false;
                x += tile->GetWidth();
            }
        }
        return true;
    }

private:
    bool ReadOne(GDALRasterBand* band, int x0, int y0, XTile& tile)
    {
        if (m_level.tileWidth == m_level.blockWidth && m_level.tileHeight == m_level.blockHeight &&
            band->GetRasterDataType() == m_type)
            return ReadBlock(band, x0 / m_level.tileWidth, y0 / m_level.tileHeight, tile);
        return band->RasterIO(GF_Read, x0, y0, tile.GetWidth(), tile.GetHeight(),
                              tile.GetFillData(), tile.GetWidth(), tile.GetHeight(), m_type, 0, 0,
                              nullptr) == CE_None;
    }

    // a tile that is a block of the file goes past GDAL's cache, which saves a copy
    bool ReadBlock(GDALRasterBand* band, int bx, int by, XTile& tile)
    {
        if (tile.GetWidth() == m_level.blockWidth && tile.GetHeight() == m_level.blockHeight)
            return band->ReadBlock(bx, by, tile.GetFillData()) == CE_None;
        const std::size_t rowBytes = static_cast<std::size_t>(m_level.blockWidth) *
                                     static_cast<std::size_t>(tile.GetSampleSize());
        m_edge.resize(rowBytes * static_cast<std::size_t>(m_level.blockHeight));
        if (band->ReadBlock(bx, by, m_edge.data()) != CE_None) return false;
        for (int y = 0; y < tile.GetHeight(); ++y)
            std::memcpy(tile.GetFillData() + tile.GetRowBytes() * static_cast<std::size_t>(y),
                        m_edge.data() + rowBytes * static_cast<std::size_t>(y), tile.GetRowBytes());
        return true;
    }

    GDALDataset* m_dataset;
    const tagXGdalLevel& m_level;
    GDALDataType m_type;
    std::vector<unsigned char> m_edge;
};

template <class T>
void Gather(const unsigned char* in, const int* columns, int count, unsigned char* out)
{
    const T* from = reinterpret_cast<const T*>(in);
    T* to = reinterpret_cast<T*>(out);
    for (int i = 0; i < count; ++i)
        to[i] = from[columns[i]];
}

struct tagWide
{
    std::uint64_t parts[2];
};

void GatherSamples(std::size_t size, const unsigned char* in, const int* columns, int count,
                   unsigned char* out)
{
    switch (size) {
    case 1:
        return Gather<std::uint8_t>(in, columns, count, out);
    case 2:
        return Gather<std::uint16_t>(in, columns, count, out);
    case 4:
        return Gather<std::uint32_t>(in, columns, count, out);
    case 8:
        return Gather<std::uint64_t>(in, columns, count, out);
    default:
        return Gather<tagWide>(in, columns, count, out);
    }
}

/// Reads tiles of a virtual level: of each row that the level shows, the columns that it shows.
class XDecimatingReader
{
public:
    XDecimatingReader(GDALDataset* dataset, const tagXGdalLevel& level, int dataType)
        : m_dataset(dataset),
          m_level(level),
          m_dataType(dataType),
          m_size(static_cast<std::size_t>(XfnGetDataTypeSize(dataType)))
    {}

    bool Read(int x0, int y0, std::vector<tagXGdalTarget>& targets, const std::atomic<int>* abort)
    {
        const auto& tiles = targets.front().tiles;
        int width = 0;
        for (const auto& tile : tiles)
            width += tile->GetWidth();
        const int first = XfnPickPixel(x0, m_level.width, m_level.sourceWidth);
        const int last = XfnPickPixel(x0 + width - 1, m_level.width, m_level.sourceWidth);
        m_window = {first, last - first + 1};
        m_columns.resize(static_cast<std::size_t>(width));
        for (int i = 0; i < width; ++i)
            m_columns[static_cast<std::size_t>(i)] =
                XfnPickPixel(x0 + i, m_level.width, m_level.sourceWidth) - first;
        m_line.resize((static_cast<std::size_t>(m_window.count) * m_size + 15) / 16);
        for (const tagXGdalTarget& target : targets)
            m_bands.push_back(XfnGetGdalLevelBand(m_dataset, target.bandNumber, m_level.overview));

        for (int y = 0; y < tiles.front()->GetHeight(); ++y) {
            if (IsRaised(abort)) return false;
            const int row = XfnPickPixel(y0 + y, m_level.height, m_level.sourceHeight);
            const bool isEmpty = IsEmptyBlockRow(row / m_level.blockHeight);
            for (std::size_t i = 0; i < targets.size(); ++i)
                if (!m_bands[i] || !ReadRow(m_bands[i], row, y, isEmpty, targets[i])) return false;
        }
        return true;
    }

private:
    bool ReadRow(GDALRasterBand* band, int row, int y, bool isEmpty, tagXGdalTarget& target)
    {
        auto* line = reinterpret_cast<unsigned char*>(m_line.data());
        // of an absent stretch one pixel is enough: all of it has the value that stands for nothing
        const tagSpan read = {m_window.begin, isEmpty ? 1 : m_window.count};
        if (band->RasterIO(GF_Read, read.begin, row, read.count, 1, line, read.count, 1,
                           static_cast<GDALDataType>(XfnToGdalType(m_dataType)), 0, 0,
                           nullptr) != CE_None)
            return false;
        if (isEmpty)
            for (int i = 1; i < m_window.count; ++i)
                std::memcpy(line + m_size * static_cast<std::size_t>(i), line, m_size);
        const int* columns = m_columns.data();
        for (const auto& tile : target.tiles) {
            GatherSamples(m_size, line, columns, tile->GetWidth(),
                          tile->GetFillData() + tile->GetRowBytes() * static_cast<std::size_t>(y));
            columns += tile->GetWidth();
        }
        return true;
    }

    // the file stores nothing in this row of blocks: a sparse image of any size is quick to show
    bool IsEmptyBlockRow(int blockRow)
    {
        if (blockRow != m_blockRow && m_bands.front()) {
            m_blockRow = blockRow;
            const int top = blockRow * m_level.blockHeight;
            const int height = std::min(m_level.blockHeight, m_level.sourceHeight - top);
            m_isEmpty =
                m_bands.front()->GetDataCoverageStatus(m_window.begin, top, m_window.count, height,
                                                       GDAL_DATA_COVERAGE_STATUS_DATA,
                                                       nullptr) == GDAL_DATA_COVERAGE_STATUS_EMPTY;
        }
        return m_isEmpty;
    }

    GDALDataset* m_dataset;
    const tagXGdalLevel& m_level;
    int m_dataType;
    std::size_t m_size;
    tagSpan m_window = {0, 0};
    std::vector<int> m_columns;
    std::vector<tagWide> m_line; // aligned for every sample type
    std::vector<GDALRasterBand*> m_bands;
    int m_blockRow = -1;
    bool m_isEmpty = false;
};

} // namespace

GDALRasterBand* XfnGetGdalLevelBand(GDALDataset* dataset, int bandNumber, int overview)
{
    GDALRasterBand* band = dataset->GetRasterBand(bandNumber);
    return band && overview >= 0 ? band->GetOverview(overview) : band;
}

namespace {

struct tagXLevelSource
{
    int overview;
    int isSidecar;
    GDALRasterBand* band;
};

/// A reduced picture of `full`: the same type, smaller, of the same shape.
bool IsReduced(GDALRasterBand* band, GDALRasterBand* full)
{
    if (!band || band->GetRasterDataType() != full->GetRasterDataType()) return false;
    const int width = full->GetXSize();
    const int height = full->GetYSize();
    const double across = static_cast<double>(band->GetXSize()) / width;
    const double down = static_cast<double>(band->GetYSize()) / height;
    // one of another shape shows something else
    const double slack = 0.01 * std::max(across, down) + 1.0 / width + 1.0 / height;
    return across < 1.0 && down <= 1.0 && std::fabs(across - down) <= slack;
}

void AddOverviews(GDALRasterBand* of, int isSidecar, GDALRasterBand* full,
                  std::vector<tagXLevelSource>& sources)
{
    for (int i = 0; i < of->GetOverviewCount(); ++i)
        if (IsReduced(of->GetOverview(i), full))
            sources.push_back({i, isSidecar, of->GetOverview(i)});
}

} // namespace

std::vector<tagXGdalLevel> XfnMakeGdalLevels(GDALRasterBand* band, int useOverviews, int pixelBytes,
                                             const std::vector<std::pair<int, int>>& halves,
                                             GDALRasterBand* sidecar)
{
    std::vector<tagXLevelSource> sources;
    if (sidecar) {
        if (IsReduced(sidecar, band)) sources.push_back({-1, 1, sidecar});
        AddOverviews(sidecar, 1, band, sources);
    }
    sources.push_back({-1, 0, band});
    if (useOverviews) AddOverviews(band, 0, band, sources);
    std::vector<tagXGdalLevel> levels;
    for (const auto& [halfWidth, halfHeight] : halves) {
        tagXGdalLevel level;
        level.width = halfWidth;
        level.height = halfHeight;
        const tagXLevelSource* best = nullptr;
        for (const tagXLevelSource& source : sources) {
            if (levels.empty() && source.band != band) continue;
            const int width = source.band->GetXSize();
            const int height = source.band->GetYSize();
            const bool fits =
                std::abs(width - halfWidth) <= 1 && std::abs(height - halfHeight) <= 1;
            const bool isLarger = width >= halfWidth && height >= halfHeight;
            if (!fits && !(isLarger && (!best || width < best->band->GetXSize()))) continue;
            best = &source;
            if (fits) {
                level.width = width;
                level.height = height;
                break;
            }
        }
        level.overview = best->overview;
        level.isSidecar = best->isSidecar;
        level.sourceWidth = best->band->GetXSize();
        level.sourceHeight = best->band->GetYSize();
        level.isVirtual = level.width != level.sourceWidth || level.height != level.sourceHeight;
        LayOut(level, best->band, pixelBytes);
        levels.push_back(level);
    }
    return levels;
}

tagXGdalLevel XfnMakeDirectLevel(const tagXGdalLevel& level, const tagXGdalLevel& full)
{
    tagXGdalLevel direct = full;
    direct.width = level.width;
    direct.height = level.height;
    direct.tileWidth = level.tileWidth;
    direct.tileHeight = level.tileHeight;
    direct.isVirtual = 1;
    return direct;
}

int XfnReadGdalTiles(GDALDataset* dataset, const tagXGdalLevel& level, int dataType, int tx, int ty,
                     std::vector<tagXGdalTarget>& targets, const std::atomic<int>* abort,
                     XString& message, XString* damage)
{
    message.Empty();
    const XGdalErrors errors;
    const int x0 = tx * level.tileWidth;
    const int y0 = ty * level.tileHeight;
    const bool isRead =
        level.isVirtual ? XDecimatingReader(dataset, level, dataType).Read(x0, y0, targets, abort)
                        : XPlainReader(dataset, level, dataType).Read(x0, y0, targets);
    if (damage) *damage = errors.GetDamage();
    if (isRead) return 1;
    if (!IsRaised(abort)) {
        message = errors.GetSentence();
        if (message.IsEmpty()) message = "A part of the image cannot be read.";
    }
    return 0;
}

int XfnToGdalType(int dataType)
{
    switch (dataType) {
    case kXUInt8:
    case kXInt8:
        return GDT_Byte; // the bits of a signed byte pass unchanged
    case kXUInt16:
        return GDT_UInt16;
    case kXInt16:
        return GDT_Int16;
    case kXUInt32:
        return GDT_UInt32;
    case kXInt32:
        return GDT_Int32;
    case kXFloat:
        return GDT_Float32;
    case kXDouble:
        return GDT_Float64;
    case kXInt16Complex:
        return GDT_CInt16;
    case kXInt32Complex:
        return GDT_CInt32;
    case kXFloatComplex:
        return GDT_CFloat32;
    case kXDoubleComplex:
        return GDT_CFloat64;
    default:
        return GDT_Unknown;
    }
}

int XfnFromGdalBand(GDALRasterBand* band)
{
    switch (band->GetRasterDataType()) {
    case GDT_Byte: {
        const char* kind = band->GetMetadataItem("PIXELTYPE", "IMAGE_STRUCTURE");
        return kind && EQUAL(kind, "SIGNEDBYTE") ? kXInt8 : kXUInt8;
    }
    case GDT_UInt16:
        return kXUInt16;
    case GDT_Int16:
        return kXInt16;
    case GDT_UInt32:
        return kXUInt32;
    case GDT_Int32:
        return kXInt32;
    case GDT_Float32:
        return kXFloat;
    case GDT_CInt16:
        return kXInt16Complex;
    case GDT_CInt32:
        return kXInt32Complex;
    case GDT_CFloat32:
        return kXFloatComplex;
    case GDT_CFloat64:
        return kXDoubleComplex;
    case GDT_Int64:
    case GDT_UInt64:
    case GDT_Float64:
        return kXDouble;
    default:
        return kXTypeNone;
    }
}
