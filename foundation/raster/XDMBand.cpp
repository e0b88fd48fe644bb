#include "foundation/raster/XDMBand.h"

#include "foundation/base/XColor.h"
#include "foundation/base/XMemory.h"
#include "foundation/raster/XExactStatistics.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XSaveControl.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <new>

X_IMPLEMENT_CLASS(XDMBand, XBand)

namespace {

constexpr int kTileSide = 256;
constexpr int kCoarsestSide = 256;
constexpr std::int64_t kSamplePixels = 1000000;
constexpr std::int64_t kRetryAfterMs = 10000;
constexpr std::size_t kMaxFailures = 4096;

std::int64_t NowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

int RoundToInt(double v)
{
    if (!(std::fabs(v) < 2147483647.0)) return v > 0.0 ? 2147483647 : -2147483647 - 1;
    return static_cast<int>(std::lround(v)); // halves away from zero
}

bool IsRaised(const std::atomic<int>* abort)
{
    return abort && abort->load(std::memory_order_relaxed) != 0;
}

} // namespace

XDMBand::XDMBand() : m_ownerID(XTileCache::NewOwner())
{
    m_sr.SetCoordType(1);
}

XDMBand::~XDMBand()
{
    StopFollowing();
    XTileCache::Get().RemoveOwner(m_ownerID);
}

// ---- levels ----

std::vector<XDMBand::tagLevel> XDMBand::MakeLevels(int width, int height)
{
    std::vector<tagLevel> levels;
    for (;;) {
        levels.push_back({width, height, kTileSide, kTileSide, levels.empty() ? 0 : 1});
        if (width <= kCoarsestSide && height <= kCoarsestSide) return levels;
        width = width / 2 + width % 2;
        height = height / 2 + height % 2;
    }
}

void XDMBand::SetLevels(int dataType, std::vector<tagLevel> levels)
{
    m_levels = std::move(levels);
    const tagLevel& full = m_levels.front();
    SetLayout(dataType, full.width, full.height, full.tileWidth, full.tileHeight);
}

int XDMBand::GetLevel() const
{
    return std::max(GetNumOfLevels() - 1, 0);
}

int XDMBand::IsVirtualLevel(int level) const
{
    return level >= 0 && level < GetNumOfLevels() ? m_levels[level].isVirtual : 0;
}

void XDMBand::GetLevelSize(int level, int& width, int& height) const
{
    const bool isThere = level >= 0 && level < GetNumOfLevels();
    width = isThere ? m_levels[level].width : 0;
    height = isThere ? m_levels[level].height : 0;
}

void XDMBand::GetTileSize(int level, int& width, int& height) const
{
    const bool isThere = level >= 0 && level < GetNumOfLevels();
    width = isThere ? m_levels[level].tileWidth : 0;
    height = isThere ? m_levels[level].tileHeight : 0;
}

void XDMBand::GetSubsetPos(int level, int x0, int x1, int y0, int y1, int& levelX0, int& levelX1,
                           int& levelY0, int& levelY1) const
{
    int width = 0;
    int height = 0;
    GetLevelSize(level, width, height);
    const auto convert = [](int position, int levelSize, int size) {
        if (size < 1 || levelSize < 1) return 0;
        const std::int64_t twice = 2 * static_cast<std::int64_t>(std::max(position, 0)) + 1;
        return static_cast<int>(std::min<std::int64_t>(
            twice * levelSize / (2 * static_cast<std::int64_t>(size)), levelSize - 1));
    };
    levelX0 = convert(x0, width, GetXSize());
    levelX1 = convert(x1, width, GetXSize());
    levelY0 = convert(y0, height, GetYSize());
    levelY1 = convert(y1, height, GetYSize());
}

void XDMBand::GetSubsetInfo(int level, int x0, int x1, int y0, int y1, int& tileX0, int& tileX1,
                            int& tileY0, int& tileY1) const
{
    int width = 0;
    int height = 0;
    GetTileSize(level, width, height);
    GetSubsetPos(level, x0, x1, y0, y1, tileX0, tileX1, tileY0, tileY1);
    tileX0 /= std::max(width, 1);
    tileX1 /= std::max(width, 1);
    tileY0 /= std::max(height, 1);
    tileY1 /= std::max(height, 1);
}

int XDMBand::GetHighestLevelForTarget(int x0, int x1, int y0, int y1, int width, int height) const
{
    const double columns = std::fabs(static_cast<double>(x1) - x0) + 1.0;
    const double rows = std::fabs(static_cast<double>(y1) - y0) + 1.0;
    for (int level = GetLevel(); level > 0; --level) {
        const double across = columns * m_levels[level].width / GetXSize();
        const double down = rows * m_levels[level].height / GetYSize();
        if (across + 0.5 >= width && down + 0.5 >= height) return level;
    }
    return 0;
}

int XDMBand::GetHighestLevelForTarget(double ulX, double ulY, double urX, double urY, double lrX,
                                      double lrY, double llX, double llY, int width,
                                      int height) const
{
    ConvWorldToPixelCoord(ulX, ulY);
    ConvWorldToPixelCoord(urX, urY);
    ConvWorldToPixelCoord(lrX, lrY);
    ConvWorldToPixelCoord(llX, llY);
    // the shorter of two opposite sides has fewer pixels to fill the target with
    const double across =
        std::min(std::hypot(urX - ulX, urY - ulY), std::hypot(lrX - llX, lrY - llY));
    const double down =
        std::min(std::hypot(llX - ulX, llY - ulY), std::hypot(lrX - urX, lrY - urY));
    if (!(across >= 0.0) || !(down >= 0.0)) return 0;
    const auto held = [](double v) { return static_cast<int>(std::min(v, 2147483646.0)); };
    return GetHighestLevelForTarget(0, std::max(held(across) - 1, 0), 0,
                                    std::max(held(down) - 1, 0), width, height);
}

std::int64_t XDMBand::CalcProcessWidthBytes() const
{
    return static_cast<std::int64_t>(GetXSize()) * GetDataSize() * 10;
}

// ---- tiles ----

int XDMBand::IsInside(int level, int tx, int ty) const
{
    if (level < 0 || level >= GetNumOfLevels() || tx < 0 || ty < 0) return 0;
    const tagLevel& l = m_levels[level];
    return static_cast<std::int64_t>(tx) * l.tileWidth < l.width &&
           static_cast<std::int64_t>(ty) * l.tileHeight < l.height;
}

std::shared_ptr<const XTile> XDMBand::FindTile(int level, int tx, int ty) const
{
    return XTileCache::Get().Find({m_ownerID, level, tx, ty});
}

int XDMBand::IsTileAtHand(int level, int tx, int ty) const
{
    return FindTile(level, tx, ty) != nullptr;
}

std::shared_ptr<const XTile> XDMBand::GetTile(int level, int tx, int ty,
                                              const std::atomic<int>* abort, XString& message) const
{
    message.Empty();
    const tagXTileKey key{m_ownerID, level, tx, ty};
    if (std::shared_ptr<const XTile> tile = XTileCache::Get().Find(key))
        return !tile->IsLost() || IsIntact(message) ? tile : nullptr;
    if (!IsInside(level, tx, ty)) {
        message = "There is no such tile.";
        return nullptr;
    }
    if (FindFailure(key, message)) return nullptr;
    if (IsRaised(abort)) return nullptr;
    try {
        const std::uint64_t generation = GetPixelGeneration();
        std::shared_ptr<const XTile> tile = ReadTile(level, tx, ty, abort, message);
        // what was dropped while it was decoded must not come back, not even for a moment
        const std::shared_lock lock(m_pixelMutex);
        if (m_pixelGeneration != generation) return tile;
        if (tile)
            XTileCache::Get().Insert(key, tile);
        else if (!message.IsEmpty())
            NoteFailure(key, message);
        return tile;
    } catch (const std::bad_alloc&) {
        message = "There is not enough memory for a tile of the image.";
        return nullptr;
    }
}

int XDMBand::IsIntact(XString&) const
{
    return 1;
}

int XDMBand::FindFailure(const tagXTileKey& key, XString& message) const
{
    const std::lock_guard lock(m_failureMutex);
    const auto place = m_failures.find(key);
    if (place == m_failures.end()) return 0;
    if (NowMs() - place->second.timeMs > kRetryAfterMs) {
        m_failures.erase(place);
        return 0;
    }
    message = place->second.message;
    return 1;
}

void XDMBand::NoteFailure(const tagXTileKey& key, const XString& message) const
{
    const std::lock_guard lock(m_failureMutex);
    if (m_failures.size() >= kMaxFailures) m_failures.clear();
    m_failures[key] = {message, NowMs()};
    if (m_damage.IsEmpty()) m_damage = message;
}

void XDMBand::NoteDamage(const XString& message) const
{
    const std::lock_guard lock(m_failureMutex);
    if (m_damage.IsEmpty()) m_damage = message;
}

XString XDMBand::GetDamage() const
{
    const std::lock_guard lock(m_failureMutex);
    return m_damage;
}

std::uint64_t XDMBand::GetPixelGeneration() const
{
    const std::shared_lock lock(m_pixelMutex);
    return m_pixelGeneration;
}

int XDMBand::IsAsInFile(XString& message) const
{
    message = "The pixels of this band are in no file.";
    return 0;
}

// ---- statistics ----

int XDMBand::ChooseSampleLevel() const
{
    for (int level = GetLevel(); level > 0; --level) {
        const tagLevel& l = m_levels[level];
        if (static_cast<std::int64_t>(l.width) * l.height >= kSamplePixels) return level;
    }
    return 0;
}

int XDMBand::GatherLevel(int level, std::vector<std::shared_ptr<const XTile>>& tiles,
                         const std::atomic<int>* abort) const
{
    int isWhole = 1;
    XString message;
    for (int ty = 0; IsInside(level, 0, ty); ++ty) {
        for (int tx = 0; IsInside(level, tx, ty); ++tx) {
            if (auto tile = GetTile(level, tx, ty, abort, message))
                tiles.push_back(std::move(tile));
            else
                isWhole = 0;
            if (IsRaised(abort)) return 0;
        }
    }
    return isWhole;
}

int XDMBand::GatherSample(std::vector<std::shared_ptr<const XTile>>& tiles,
                          const std::atomic<int>* abort) const
{
    const int level = ChooseSampleLevel();
    return GatherLevel(level, tiles, abort) && level == 0;
}

tagXBandStatistics XDMBand::CalcBandStatistics(const tagXBandStatistics* known,
                                               const std::atomic<int>* abort) const
{
    if (m_levels.empty()) return XBand::CalcBandStatistics(known, abort);
    std::vector<std::shared_ptr<const XTile>> tiles;
    const int isWhole = GatherSample(tiles, abort);
    if (IsRaised(abort)) return XBand::CalcBandStatistics(known, abort);
    tagXBandStatistics made =
        XfnCalcTileStatistics(tiles, GetNullValue(), !isWhole, known ? known->min : kXNotSet,
                              known ? known->max : kXNotSet);
    XString message;
    if (!IsIntact(message)) return XBand::CalcBandStatistics(known, abort);
    if (known) {
        made.min = known->min;
        made.max = known->max;
        made.mean = known->mean;
        made.stdDev = known->stdDev;
        made.isEstimated = known->isEstimated;
    }
    return made;
}

int XDMBand::CalcExactStatistics(const std::atomic<int>* abort, XThread* thread, XString& message)
{
    tagXSaveControl control;
    control.abort = abort;
    control.thread = thread;
    return CalcExactStatistics(control, message);
}

int XDMBand::CalcExactStatistics(const tagXSaveControl& control, XString& message)
{
    const std::uint64_t change = GetChangeNumber();
    tagXBandStatistics statistics;
    if (!XfnCalcExactStatistics(*this, control, statistics, message)) return 0;
    if (SetBandStatistics(statistics, change)) return 1;
    message = "The pixels or their null value were changed while the statistics were computed.";
    return 0;
}

// ---- geometry ----

void XDMBand::GetPixelSize(double& x, double& y) const
{
    x = GetXPixelSize();
    y = GetYPixelSize();
}

void XDMBand::SetUpperLeft(double x, double y)
{
    m_geometry.SetNorthUp(x, y, GetXPixelSize(), GetYPixelSize());
}

void XDMBand::SetPixelSize(double x, double y)
{
    m_geometry.SetNorthUp(GetULX(), GetULY(), x, y);
}

void XDMBand::ConvPixelToWorldCoord(double& x, double& y) const
{
    GetPixelToWorld().Warp(x, y);
}

void XDMBand::ConvWorldToPixelCoord(double& x, double& y) const
{
    GetWorldToPixel().Warp(x, y);
}

void XDMBand::ConvWorldToPixelRange(double left, double right, double bottom, double top, int& x0,
                                    int& x1, int& y0, int& y1) const
{
    double xs[] = {left, right, right, left};
    double ys[] = {top, top, bottom, bottom};
    for (int i = 0; i < 4; ++i)
        ConvWorldToPixelCoord(xs[i], ys[i]);
    x0 = RoundToInt(*std::min_element(xs, xs + 4));
    x1 = RoundToInt(*std::max_element(xs, xs + 4));
    y0 = RoundToInt(*std::min_element(ys, ys + 4));
    y1 = RoundToInt(*std::max_element(ys, ys + 4));
}

void XDMBand::ConvPixelToWorldRange(int x0, int x1, int y0, int y1, double& left, double& right,
                                    double& bottom, double& top) const
{
    double xs[] = {double(x0), double(x1), double(x1), double(x0)};
    double ys[] = {double(y0), double(y0), double(y1), double(y1)};
    for (int i = 0; i < 4; ++i)
        ConvPixelToWorldCoord(xs[i], ys[i]);
    left = *std::min_element(xs, xs + 4);
    right = *std::max_element(xs, xs + 4);
    bottom = *std::min_element(ys, ys + 4);
    top = *std::max_element(ys, ys + 4);
}

void XDMBand::GetBoundRect(double& left, double& right, double& bottom, double& top) const
{
    m_geometry.GetBoundRect(GetXSize(), GetYSize(), left, right, bottom, top);
}

// ---- description ----

const tagXRSGIS* XDMBand::GetGISAt(int index) const
{
    return index >= 0 && index < GetNumOfGIS() ? &m_classes[static_cast<std::size_t>(index)]
                                               : nullptr;
}

tagXRSGIS* XDMBand::GetGISAt(int index)
{
    return const_cast<tagXRSGIS*>(static_cast<const XDMBand*>(this)->GetGISAt(index));
}

void XDMBand::SetGISTable(std::vector<tagXRSGIS> classes, int isColorTable)
{
    m_classes = std::move(classes);
    m_hasColorTable = isColorTable && !m_classes.empty();
    UpdateColorTable();
}

const std::uint32_t* XDMBand::GetColorTable() const
{
    return m_hasColorTable ? m_colorTable.data() : nullptr;
}

void XDMBand::UpdateColorTable()
{
    m_colorTable.fill(0);
    for (std::size_t i = 0; i < std::min(m_colorTable.size(), m_classes.size()); ++i) {
        const tagXRSGIS& c = m_classes[i];
        m_colorTable[i] = XfnMakeColor(c.red, c.green, c.blue, c.alpha);
    }
}

int XDMBand::CloneBand(const XDMBand* source)
{
    if (!source) return 0;
    if (source == this) return 1;
    static_cast<XBandAcquisition&>(*this) = *source;
    static_cast<XBandRadar&>(*this) = *source;
    SetBandName(source->GetBandName());
    SetBandDescription(source->GetBandDescription());
    SetNullValue(source->GetNullValue());
    if (source->HasStatistics()) SetBandStatistics(*source->GetStatistics());
    m_bandType = source->m_bandType;
    m_colorInterpretation = source->m_colorInterpretation;
    m_normalizedWorld = source->m_normalizedWorld;
    m_useSensorModel = source->m_useSensorModel;
    m_sr = source->m_sr;
    m_geometry = source->m_geometry;
    m_classes = source->m_classes;
    m_hasColorTable = source->m_hasColorTable;
    m_colorTable = source->m_colorTable;
    return 1;
}
