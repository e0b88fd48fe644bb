#include "foundation/raster/XDMBandGDAL.h"

#include "foundation/raster/XGdalDescription.h"
#include "foundation/raster/XGdalSource.h"
#include "foundation/raster/XGdalTileReader.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/reference/XGdalErrors.h"

#include <gdal_priv.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <unordered_set>

X_IMPLEMENT_CLASS(XDMBandGDAL, XDMBand)

namespace {

constexpr std::int64_t kSampleBytes = std::int64_t(96) << 20; // decoded at most for an estimate
constexpr std::int64_t kSamplePixels = 2000000;
constexpr std::int64_t kFewestBlocks = 24;
constexpr std::int64_t kMostBlocks = 512;
constexpr int kWidestSample = 2048; // samples a side that are kept of one block
constexpr std::int64_t kLongestBlockList = 1000000;

/// Whether lines can only be decoded one after the other from the first: going back starts anew.
bool IsOneStream(const XString& driver)
{
    return driver == "PNG" || driver == "JPEG" || driver == "GIF" || driver == "BIGGIF";
}

int HoldsAllBands(GDALDataset* dataset)
{
    const char* order = dataset->GetMetadataItem("INTERLEAVE", "IMAGE_STRUCTURE");
    return dataset->GetRasterCount() > 1 && order && EQUAL(order, "PIXEL");
}

void AddSizes(GDALRasterBand* band, std::vector<std::pair<int, int>>& sizes)
{
    for (int i = 0; i < band->GetOverviewCount(); ++i)
        if (GDALRasterBand* overview = band->GetOverview(i))
            sizes.emplace_back(overview->GetXSize(), overview->GetYSize());
}

std::int64_t CountBlocks(const tagXGdalLevel& level)
{
    const std::int64_t across = (level.sourceWidth - 1) / level.blockWidth + 1;
    const std::int64_t down = (level.sourceHeight - 1) / level.blockHeight + 1;
    return across * down;
}

/// A window, or some lines and columns of it, evenly spread: asked for fewer samples than there are,
/// GDAL would take those of an overview.
bool ReadBlock(GDALRasterBand* band, const int (&window)[4], XTile& tile)
{
    const auto [x0, y0, width, height] = window;
    const auto type = static_cast<GDALDataType>(XfnToGdalType(tile.GetDataType()));
    if (tile.GetWidth() == width && tile.GetHeight() == height)
        return band->RasterIO(GF_Read, x0, y0, width, height, tile.GetFillData(), width, height,
                              type, 0, 0, nullptr) == CE_None;
    const std::size_t size = static_cast<std::size_t>(tile.GetSampleSize());
    std::vector<unsigned char> line(size * static_cast<std::size_t>(width));
    unsigned char* out = tile.GetFillData();
    for (int y = 0; y < tile.GetHeight(); ++y) {
        const int row = y0 + XfnPickPixel(y, tile.GetHeight(), height);
        if (band->RasterIO(GF_Read, x0, row, width, 1, line.data(), width, 1, type, 0, 0,
                           nullptr) != CE_None)
            return false;
        for (int x = 0; x < tile.GetWidth(); ++x, out += size)
            std::memcpy(out,
                        line.data() + size * static_cast<std::size_t>(
                                                 XfnPickPixel(x, tile.GetWidth(), width)),
                        size);
    }
    return true;
}

} // namespace

XDMBandGDAL::XDMBandGDAL(std::shared_ptr<XGdalSource> source, GDALDataset* dataset, int bandNumber,
                         int useLevels, int useOverviews, int useStatistics)
    : m_source(std::move(source)),
      m_bandNumber(bandNumber),
      m_isInterleaved(HoldsAllBands(dataset)),
      m_useLevels(useLevels)
{
    const XGdalErrors errors;
    GDALRasterBand* band = dataset->GetRasterBand(bandNumber);
    const int dataType = XfnFromGdalBand(band);
    m_blockPixelBytes =
        XfnGetDataTypeSize(dataType) * (m_isInterleaved ? dataset->GetRasterCount() : 1);
    std::vector<std::pair<int, int>> halves;
    for (const tagLevel& level : MakeLevels(band->GetXSize(), band->GetYSize()))
        halves.emplace_back(level.width, level.height);
    tagTable made{XfnMakeGdalLevels(band, useOverviews, m_blockPixelBytes, halves), {}, nullptr};
    if (useOverviews) AddSizes(band, made.stored);
    SetLayoutOf(std::move(made), dataType);
    // strips are shared by the tiles beside each other, so few handles keep each block decoded once
    if (m_table->levels.front().isStrip) {
        m_isOneStream = IsOneStream(m_source->GetDriverName());
        m_source->LimitHandles(m_isOneStream ? 1 : 2);
    }

    XfnDescribeGdalBand(band, bandNumber, *this);
    m_fileNull = GetNullValue();
    if (useStatistics) m_hasStored = XfnReadGdalStatistics(band, m_stored);
    m_source->AddMember(GetOwnerID(), bandNumber);
}

XDMBandGDAL::~XDMBandGDAL()
{
    m_source->RemoveMember(GetOwnerID());
}

void XDMBandGDAL::SetLayoutOf(tagTable made, int dataType)
{
    std::vector<tagLevel> levels;
    for (const tagXGdalLevel& l : made.levels)
        levels.push_back({l.width, l.height, l.tileWidth, l.tileHeight, l.isVirtual});
    SetLevels(dataType, std::move(levels));
    SetTable(std::make_shared<const tagTable>(std::move(made)));
}

std::shared_ptr<const XDMBandGDAL::tagTable> XDMBandGDAL::GetTable() const
{
    const std::lock_guard lock(m_tableMutex);
    return m_table;
}

void XDMBandGDAL::SetTable(std::shared_ptr<const tagTable> table)
{
    const std::lock_guard lock(m_tableMutex);
    m_table.swap(table); // what it replaces is destroyed outside the lock
}

XGdalSource& XDMBandGDAL::tagTable::SourceOf(const tagXGdalLevel& level,
                                             const XDMBandGDAL& band) const
{
    return level.isSidecar ? *pyramid : *band.m_source;
}

int XDMBandGDAL::IsVirtualLevel(int level) const
{
    const auto table = GetTable();
    return level >= 0 && level < static_cast<int>(table->levels.size()) &&
           table->levels[static_cast<std::size_t>(level)].isVirtual;
}

std::int64_t XDMBandGDAL::CalcLevelBytes(int level) const
{
    const auto table = GetTable();
    if (level < 0 || level >= static_cast<int>(table->levels.size())) return 0;
    const tagXGdalLevel& l = table->levels[static_cast<std::size_t>(level)];
    std::int64_t blocks = CountBlocks(l);
    // of strips one a line of the level, unless all lines before it have to be decoded too
    if (l.isStrip && !(m_isOneStream && !l.isSidecar))
        blocks = std::min<std::int64_t>(blocks, l.height);
    return blocks * l.blockWidth * l.blockHeight * m_blockPixelBytes;
}

int XDMBandGDAL::IsAsInFile(XString& message) const
{
    const double null = GetNullValue();
    if (null != m_fileNull && !(std::isnan(null) && std::isnan(m_fileNull)))
        message =
            XfnFormat("\"%s\": the null value is not the one in the file.", m_source->GetPath());
    else if (!m_source->IsAsOpened())
        message = XfnFormat("\"%s\" was changed after it was opened; open it again.",
                            m_source->GetPath());
    else
        return 1;
    return 0;
}

int XDMBandGDAL::TakeUpLevels(const std::shared_ptr<XGdalSource>& pyramid, int isNew)
{
    if (!m_useLevels || !pyramid || !m_source->IsAsOpened()) return 0;
    const auto table = GetTable();
    std::vector<std::pair<int, int>> sizes;
    for (const tagXGdalLevel& l : table->levels)
        sizes.emplace_back(l.width, l.height);
    tagTable made{{}, {}, pyramid};
    {
        XString ignored;
        const XGdalSource::Handle own = m_source->Acquire(nullptr, ignored);
        const XGdalSource::Handle handle = pyramid->Acquire(nullptr, ignored);
        if (!own || !handle || handle->GetRasterCount() != own->GetRasterCount()) return 0;
        const XGdalErrors errors;
        GDALRasterBand* first = handle->GetRasterBand(m_bandNumber);
        made.levels =
            XfnMakeGdalLevels(own->GetRasterBand(m_bandNumber), 0, m_blockPixelBytes, sizes, first);
        made.stored.emplace_back(first->GetXSize(), first->GetYSize());
        AddSizes(first, made.stored);
    }
    for (std::size_t i = 0; i < made.levels.size(); ++i) {
        tagXGdalLevel& level = made.levels[i];
        const tagXGdalLevel& old = table->levels[i];
        if (i > 0 && level.isVirtual) return 0;
        if (level.width != old.width || level.height != old.height) return 0;
        if (isNew) continue;
        level.tileWidth = old.tileWidth;
        level.tileHeight = old.tileHeight;
    }
    if (isNew)
        SetLayoutOf(std::move(made), GetDataType());
    else
        SetTable(std::make_shared<const tagTable>(std::move(made)));
    return 1;
}

void XDMBandGDAL::DropOldLevels()
{
    m_source->NoteNewLevels();
    DropLevels(1);
}

std::shared_ptr<const XTile> XDMBandGDAL::ReadTile(int level, int tx, int ty,
                                                   const std::atomic<int>* abort,
                                                   XString& message) const
{
    const std::uint64_t generation = m_source->GetGeneration(); // before the table
    const auto table = GetTable();
    const tagXGdalLevel& l = table->levels[static_cast<std::size_t>(level)];
    // lines are read once for all of their tiles; in a stream a second visit would begin at its start
    const bool isStream = m_isOneStream && !l.isSidecar;
    const bool isWholeRow = l.isStrip && (l.isVirtual || isStream);
    const XGdalSource::Turn turn(*m_source, {level, l.isStrip ? -1 : tx, ty}, abort);
    if (!turn.IsMine()) return nullptr;
    if (auto tile = FindTile(level, tx, ty)) return tile; // made while this thread waited

    XTileCache& cache = XTileCache::Get();
    std::vector<XGdalSource::tagMember> members = m_source->NoteMiss(GetOwnerID());
    if (!m_isInterleaved) members.resize(1);
    std::erase_if(members, [&](const XGdalSource::tagMember& m) {
        return m.owner != GetOwnerID() && cache.Find({m.owner, level, tx, ty});
    });
    const int firstTx = isWholeRow ? 0 : tx;
    const int endTx = isWholeRow ? (l.width - 1) / l.tileWidth + 1 : tx + 1;
    const int height = std::min(l.tileHeight, l.height - ty * l.tileHeight);
    std::vector<tagXGdalTarget> targets;
    for (const XGdalSource::tagMember& member : members) {
        tagXGdalTarget target{member.bandNumber, {}};
        for (int i = firstTx; i < endTx; ++i)
            target.tiles.push_back(std::make_shared<XTile>(
                GetDataType(), std::min(l.tileWidth, l.width - i * l.tileWidth), height));
        targets.push_back(std::move(target));
    }

    const auto read = [&](const tagXGdalLevel& from) {
        XGdalSource& source = table->SourceOf(from, *this);
        const XGdalSource::Handle handle = source.Acquire(abort, message);
        if (!handle) return 0;
        XString damage;
        if (XfnReadGdalTiles(handle.Get(), from, GetDataType(), firstTx, ty, targets, abort,
                             message, &damage)) {
            if (!damage.IsEmpty()) NoteDamage(damage);
            return 1;
        }
        if (!message.IsEmpty()) message = XfnFormat("\"%s\": %s", source.GetPath(), message);
        return 0;
    };
    if (!read(l)) {
        const bool isReduced = l.isSidecar || l.overview >= 0;
        if (!isReduced || message.IsEmpty()) return nullptr;
        // a damaged pyramid keeps no good image from being seen
        if (!read(XfnMakeDirectLevel(l, table->levels.front()))) return nullptr;
    }
    for (std::size_t m = 0; m < members.size(); ++m) {
        for (std::size_t i = 0; i < targets[m].tiles.size(); ++i) {
            const tagXTileKey key{members[m].owner, level, firstTx + static_cast<int>(i), ty};
            cache.Insert(key, targets[m].tiles[i]);
            if (m_source->GetGeneration() != generation) cache.Remove(key);
        }
    }
    return targets.front().tiles[static_cast<std::size_t>(tx - firstTx)];
}

int XDMBandGDAL::ReadStoredStatistics(tagXBandStatistics& statistics) const
{
    if (m_hasStored) statistics = m_stored;
    return m_hasStored;
}

int XDMBandGDAL::GatherSample(std::vector<std::shared_ptr<const XTile>>& tiles,
                              const std::atomic<int>* abort) const
{
    const int chosen = ChooseSampleLevel();
    const auto table = GetTable();
    const tagXGdalLevel& level = table->levels[static_cast<std::size_t>(chosen)];
    if (!level.isVirtual) return XDMBand::GatherSample(tiles, abort);
    // a level read by decimation decodes nearly every block it crosses, of strips one a line
    std::int64_t blocks = CountBlocks(level);
    if (level.isStrip) blocks = std::min<std::int64_t>(blocks, level.height);
    const std::int64_t blockBytes =
        static_cast<std::int64_t>(level.blockWidth) * level.blockHeight * m_blockPixelBytes;
    if (blocks <= kSampleBytes / std::max<std::int64_t>(blockBytes, 1)) {
        GatherLevel(chosen, tiles, abort);
        return 0;
    }
    return GatherBlocks(*table, level, tiles, abort);
}

int XDMBandGDAL::GatherBlocks(const tagTable& table, const tagXGdalLevel& level,
                              std::vector<std::shared_ptr<const XTile>>& tiles,
                              const std::atomic<int>* abort) const
{
    XString message;
    const XGdalSource::Handle handle = table.SourceOf(level, *this).Acquire(abort, message);
    if (!handle) return 0;
    const XGdalErrors errors;
    GDALRasterBand* band = XfnGetGdalLevelBand(handle.Get(), m_bandNumber, level.overview);
    if (!band) return 0;
    const std::int64_t across = (level.sourceWidth - 1) / level.blockWidth + 1;
    const std::int64_t total = CountBlocks(level);
    const std::int64_t blockPixels =
        static_cast<std::int64_t>(level.blockWidth) * level.blockHeight;
    const std::int64_t affordable =
        std::max<std::int64_t>(kSampleBytes / (blockPixels * m_blockPixelBytes), 4);
    const std::int64_t wanted =
        std::min({std::clamp(kSamplePixels / blockPixels + 1, kFewestBlocks, kMostBlocks),
                  affordable, total});

    struct tagBlock
    {
        int x, y, width, height;
    };
    const auto blockAt = [&](std::int64_t index) {
        const int x = static_cast<int>(index % across) * level.blockWidth;
        const int y = static_cast<int>(index / across) * level.blockHeight;
        return tagBlock{x, y, std::min(level.blockWidth, level.sourceWidth - x),
                        std::min(level.blockHeight, level.sourceHeight - y)};
    };
    const auto coverage = [&](const tagBlock& b) {
        return band->GetDataCoverageStatus(b.x, b.y, b.width, b.height, 0, nullptr);
    };
    // of a sparse file the blocks that exist are looked for, those that do not tell nothing
    std::vector<std::int64_t> present;
    if (total > wanted && total <= kLongestBlockList &&
        (coverage({0, 0, level.sourceWidth, level.sourceHeight}) & GDAL_DATA_COVERAGE_STATUS_EMPTY))
        for (std::int64_t i = 0; i < total; ++i)
            if (coverage(blockAt(i)) & GDAL_DATA_COVERAGE_STATUS_DATA) present.push_back(i);
    const std::int64_t choices =
        present.empty() ? total : static_cast<std::int64_t>(present.size());

    // Places from the plastic number's sequence spread evenly in both directions for any count (M.
    // Roberts, "The unreasonable effectiveness of quasirandom sequences", 2018); a fixed step would
    // walk along a diagonal. With nothing but no-data so far, the sequence goes on for a while.
    std::unordered_set<std::int64_t> taken;
    tagXMoments moments;
    bool isWhole = true;
    for (std::int64_t i = 1; i <= 16 * wanted && static_cast<std::int64_t>(taken.size()) < choices;
         ++i) {
        if (abort && abort->load(std::memory_order_relaxed)) return 0;
        const std::int64_t got = static_cast<std::int64_t>(taken.size());
        if (got >= wanted && (moments.count > 0 || got >= 4 * wanted)) break;
        std::int64_t index = 0;
        if (choices <= wanted) {
            index = i - 1;
            if (index >= choices) break;
        } else {
            const double u = std::fmod(0.5 + static_cast<double>(i) * 0.7548776662466927, 1.0);
            const double v = std::fmod(0.5 + static_cast<double>(i) * 0.5698402909980532, 1.0);
            const std::int64_t rows = (choices - 1) / across + 1;
            index = static_cast<std::int64_t>(v * static_cast<double>(rows)) * across +
                    static_cast<std::int64_t>(u * static_cast<double>(across));
            if (index >= choices) continue;
        }
        if (!taken.insert(index).second) continue;
        const tagBlock b =
            blockAt(present.empty() ? index : present[static_cast<std::size_t>(index)]);
        // of a block of any size no more than some lines and columns of it
        const int width = std::min(b.width, kWidestSample);
        const int height = std::min(b.height, kWidestSample);
        isWhole &= width == b.width && height == b.height;
        const auto tile = std::make_shared<XTile>(GetDataType(), width, height);
        if (!ReadBlock(band, {b.x, b.y, b.width, b.height}, *tile)) {
            const XString why = errors.GetSentence();
            NoteDamage(why.IsEmpty() ? XString("A part of the image cannot be read.") : why);
            continue;
        }
        XfnAddMoments(tile->GetData(),
                      static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                      GetDataType(), GetNullValue(), moments);
        tiles.push_back(tile);
    }
    return isWhole && static_cast<std::int64_t>(tiles.size()) == total && level.overview < 0 &&
           !level.isSidecar;
}
