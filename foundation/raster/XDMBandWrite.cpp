#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMLevelKernels.h"
#include "foundation/raster/XNullSample.h"
#include "foundation/raster/XRasterTypes.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <type_traits>

// The write operations of XDMBand, all on one way from a window to pieces of tiles, and what has to
// be forgotten after them.

struct XDMBand::tagFollower
{
    std::mutex mutex;
    XDMBand* band; // null when it has gone
};

namespace {

// One sample of a type against the number that is not written.
template <class T>
class XSkipTest
{
public:
    XSkipTest(double number, int isComplex) : m_isComplex(isComplex), m_isNaN(std::isnan(number))
    {
        m_number = XfnNullSample<T>(number, m_hasNumber);
    }
    bool operator()(const unsigned char* sample) const
    {
        T parts[2] = {};
        std::memcpy(parts, sample, sizeof(T) * (m_isComplex ? 2 : 1));
        if constexpr (std::is_floating_point_v<T>) {
            if (m_isNaN) return std::isnan(parts[0]);
        }
        return m_hasNumber && parts[0] == m_number && parts[1] == T();
    }

private:
    int m_isComplex;
    bool m_isNaN;
    bool m_hasNumber = false;
    T m_number;
};

// Calls write(first, count) for each run of samples of a row that are written; stops at a 0.
template <class T, class Write>
int ForEachRun(const unsigned char* row, int count, std::size_t size, const XSkipTest<T>& isSkipped,
               Write&& write)
{
    for (int i = 0; i < count;) {
        while (i < count && isSkipped(row + size * static_cast<std::size_t>(i)))
            ++i;
        const int first = i;
        while (i < count && !isSkipped(row + size * static_cast<std::size_t>(i)))
            ++i;
        if (i > first && !write(first, i - first)) return 0;
    }
    return 1;
}

// The pixels of a level that are made of the pixels first..last of the next finer one.
void ConvToCoarser(int& first, int& last, int size, int finerSize)
{
    first = static_cast<int>(static_cast<std::int64_t>(first) * size / finerSize);
    last = static_cast<int>(((static_cast<std::int64_t>(last) + 1) * size - 1) / finerSize);
}

} // namespace

int XDMBand::IsWindowInside(int x0, int x1, int y0, int y1) const
{
    return x0 >= 0 && y0 >= 0 && x0 <= x1 && y0 <= y1 && x1 < GetXSize() && y1 < GetYSize();
}

int XDMBand::WriteTile(int, int, int, const tagXTilePiece&, XString& message)
{
    message = "This band cannot be written.";
    return 0;
}

int XDMBand::WritePlain(const unsigned char* samples, std::size_t rowBytes, int x0, int y0,
                        int width, int height, bool skip, double number)
{
    if (!samples || !IsWritable() || width < 1 || height < 1 || x0 < 0 || y0 < 0 ||
        x0 > GetXSize() - width || y0 > GetYSize() - height)
        return 0;
    const std::lock_guard one(m_writeMutex);
    const tagLevel& l = m_levels.front();
    const std::size_t size = static_cast<std::size_t>(GetDataSize());
    XString message;
    int isDone = 1;
    for (int ty = y0 / l.tileHeight; isDone && ty <= (y0 + height - 1) / l.tileHeight; ++ty) {
        for (int tx = x0 / l.tileWidth; isDone && tx <= (x0 + width - 1) / l.tileWidth; ++tx) {
            const int left = std::max(x0, tx * l.tileWidth);
            const int top = std::max(y0, ty * l.tileHeight);
            tagXTilePiece piece;
            piece.x = left - tx * l.tileWidth;
            piece.y = top - ty * l.tileHeight;
            piece.width = std::min(x0 + width - left, l.tileWidth - piece.x);
            piece.height = std::min(y0 + height - top, l.tileHeight - piece.y);
            piece.rowBytes = rowBytes;
            piece.samples = samples + rowBytes * static_cast<std::size_t>(top - y0) +
                            size * static_cast<std::size_t>(left - x0);
            if (!skip) {
                isDone = WriteTile(0, tx, ty, piece, message);
                continue;
            }
            tagXTilePiece run = piece;
            run.height = 1;
            const auto writeRuns = [&](auto* type) {
                using T = std::remove_cv_t<std::remove_pointer_t<decltype(type)>>;
                const XSkipTest<T> isSkipped(number, XfnIsComplexType(GetDataType()));
                for (int y = 0; y < piece.height; ++y) {
                    const unsigned char* row =
                        piece.samples + rowBytes * static_cast<std::size_t>(y);
                    run.y = piece.y + y;
                    const auto write = [&](int first, int count) {
                        run.x = piece.x + first;
                        run.width = count;
                        run.samples = row + size * static_cast<std::size_t>(first);
                        return WriteTile(0, tx, ty, run, message);
                    };
                    if (!ForEachRun(row, piece.width, size, isSkipped, write)) return 0;
                }
                return 1;
            };
            isDone = XfnDispatchRealType<int>(XfnGetPartType(GetDataType()), writeRuns);
        }
    }
    // a part may have been stored before a failure
    DropWindow(x0, x0 + width - 1, y0, y0 + height - 1);
    return isDone;
}

int XDMBand::WriteBlock(const tagXArr2* block, int x0, int y0, int width, int height, bool skip,
                        double number)
{
    if (!block || !block->base || block->dataType != GetDataType() || block->width != width ||
        block->height != height || width < 1 || height < 1 ||
        block->columnOffset.size() < static_cast<std::size_t>(width) ||
        block->rowOffset.size() < static_cast<std::size_t>(height))
        return 0;
    const std::size_t size = static_cast<std::size_t>(GetDataSize());
    const std::size_t columns = static_cast<std::size_t>(width);
    const std::size_t rows = static_cast<std::size_t>(height);
    const std::size_t step = rows > 1 ? block->rowOffset[1] - block->rowOffset[0] : columns * size;
    bool isPlain = true;
    for (std::size_t x = 1; isPlain && x < columns; ++x)
        isPlain = block->columnOffset[x] == block->columnOffset[0] + x * size;
    for (std::size_t y = 1; isPlain && y < rows; ++y)
        isPlain = block->rowOffset[y] == block->rowOffset[0] + y * step;
    if (isPlain)
        return WritePlain(block->base + block->rowOffset[0] + block->columnOffset[0], step, x0, y0,
                          width, height, skip, number);
    tagXArr2 packed;
    if (!packed.Create(GetDataType(), width, height)) return 0;
    unsigned char* out = packed.base;
    for (std::size_t y = 0; y < rows; ++y)
        for (std::size_t x = 0; x < columns; ++x, out += size)
            std::memcpy(out, block->base + block->rowOffset[y] + block->columnOffset[x], size);
    return WritePlain(packed.base, columns * size, x0, y0, width, height, skip, number);
}

int XDMBand::WriteLineH(const void* data, int row, int start, int count, bool skip, double number)
{
    return WritePlain(static_cast<const unsigned char*>(data), 0, start, row, count, 1, skip,
                      number);
}

int XDMBand::WriteLineH(const void* data, int row, bool skip, double number)
{
    return WriteLineH(data, row, 0, GetXSize(), skip, number);
}

int XDMBand::WriteLineH(const tagXArr2* block, int row, int start, int count, bool skip,
                        double number)
{
    return WriteBlock(block, start, row, count, 1, skip, number);
}

int XDMBand::WriteLineH(const tagXArr2* block, int row, bool skip, double number)
{
    return WriteLineH(block, row, 0, GetXSize(), skip, number);
}

int XDMBand::WriteLineV(const void* data, int column, int start, int count, bool skip,
                        double number)
{
    return WritePlain(static_cast<const unsigned char*>(data),
                      static_cast<std::size_t>(GetDataSize()), column, start, 1, count, skip,
                      number);
}

int XDMBand::WriteLineV(const void* data, int column, bool skip, double number)
{
    return WriteLineV(data, column, 0, GetYSize(), skip, number);
}

int XDMBand::WriteLineV(const tagXArr2* block, int column, int start, int count, bool skip,
                        double number)
{
    return WriteBlock(block, column, start, 1, count, skip, number);
}

int XDMBand::WriteLineV(const tagXArr2* block, int column, bool skip, double number)
{
    return WriteLineV(block, column, 0, GetYSize(), skip, number);
}

int XDMBand::WritePixel(const void* data, int x, int y, bool skip, double number)
{
    return WritePlain(static_cast<const unsigned char*>(data), 0, x, y, 1, 1, skip, number);
}

int XDMBand::WritePixel(const tagXArr2* block, int x, int y, bool skip, double number)
{
    return WriteBlock(block, x, y, 1, 1, skip, number);
}

int XDMBand::WriteSubset(const void* data, int x0, int x1, int y0, int y1, bool skip, double number)
{
    if (!IsWindowInside(x0, x1, y0, y1)) return 0;
    const std::size_t rowBytes =
        (static_cast<std::size_t>(x1 - x0) + 1) * static_cast<std::size_t>(GetDataSize());
    return WritePlain(static_cast<const unsigned char*>(data), rowBytes, x0, y0, x1 - x0 + 1,
                      y1 - y0 + 1, skip, number);
}

int XDMBand::WriteSubset(const tagXArr2* block, int x0, int x1, int y0, int y1, bool skip,
                         double number)
{
    if (!IsWindowInside(x0, x1, y0, y1)) return 0;
    return WriteBlock(block, x0, y0, x1 - x0 + 1, y1 - y0 + 1, skip, number);
}

int XDMBand::WriteSubset(int x0, int x1, int y0, int y1, bool skip, double number)
{
    if (!IsWindowInside(x0, x1, y0, y1) || !IsWritable()) return 0;
    DropWindow(x0, x1, y0, y1);
    return BuildLowerLevelsForTIP(number, x0, x1, y0, y1, skip);
}

// ---- stored levels ----

int XDMBand::BuildLevelTile(int level, int tx, int ty, const int (&window)[4], double nullValue,
                            XString& message)
{
    const tagLevel& l = m_levels[static_cast<std::size_t>(level)];
    const tagLevel& finer = m_levels[static_cast<std::size_t>(level) - 1];
    const int left = std::max(window[0], tx * l.tileWidth);
    const int top = std::max(window[2], ty * l.tileHeight);
    const int endX = std::min(window[1] + 1, (tx + 1) * l.tileWidth);
    const int endY = std::min(window[3] + 1, (ty + 1) * l.tileHeight);
    const tagXLevelAxis x = XfnMakeLevelAxis(left, endX, l.width, finer.width);
    const tagXLevelAxis y = XfnMakeLevelAxis(top, endY, l.height, finer.height);
    tagXArr2 source;
    tagXArr2 made;
    tagXArr2* block = &source;
    if (!made.Create(GetDataType(), endX - left, endY - top) ||
        !ReadLevelWindow(block, level - 1, x.begin, y.begin, x.end - x.begin, y.end - y.begin,
                         nullptr, &message))
        return 0;
    const std::size_t size = static_cast<std::size_t>(GetDataSize());
    if (HasColorTable() || m_bandType == kXBandClassMap || m_bandType == kXBandMask) {
        // the mean of two classes is a third one
        unsigned char* out = made.base;
        for (int j = top; j < endY; ++j) {
            const int row = XfnPickPixel(j, l.height, finer.height) - y.begin;
            for (int i = left; i < endX; ++i, out += size)
                std::memcpy(out, source.At(XfnPickPixel(i, l.width, finer.width) - x.begin, row),
                            size);
        }
    } else {
        XfnAverageLevel(source.base, GetDataType(), nullValue, x, y, made.base);
    }
    tagXTilePiece piece;
    piece.x = left - tx * l.tileWidth;
    piece.y = top - ty * l.tileHeight;
    piece.width = made.width;
    piece.height = made.height;
    piece.samples = made.base;
    piece.rowBytes = size * static_cast<std::size_t>(made.width);
    return WriteTile(level, tx, ty, piece, message);
}

int XDMBand::BuildLowerLevelsForTIP(double nullValue, int x0, int x1, int y0, int y1, bool skip)
{
    if (!IsWritable() || !IsWindowInside(x0, x1, y0, y1)) return 0;
    const std::lock_guard one(m_writeMutex);
    int window[4] = {x0, x1, y0, y1};
    XString message;
    int isDone = 1;
    int isChanged = 0;
    try {
        for (int level = 1; isDone && level < GetNumOfLevels(); ++level) {
            const tagLevel& l = m_levels[static_cast<std::size_t>(level)];
            const tagLevel& finer = m_levels[static_cast<std::size_t>(level) - 1];
            ConvToCoarser(window[0], window[1], l.width, finer.width);
            ConvToCoarser(window[2], window[3], l.height, finer.height);
            if (l.isVirtual) continue;
            isChanged = 1;
            for (int ty = window[2] / l.tileHeight; isDone && ty <= window[3] / l.tileHeight; ++ty)
                for (int tx = window[0] / l.tileWidth; isDone && tx <= window[1] / l.tileWidth;
                     ++tx)
                    isDone =
                        BuildLevelTile(level, tx, ty, window, skip ? nullValue : kXNotSet, message);
            // the next level is made of this one
            RemoveTiles(x0, x1, y0, y1);
        }
    } catch (const std::bad_alloc&) {
        isDone = 0;
    }
    if (isChanged) DropWindow(x0, x1, y0, y1);
    return isDone;
}

// ---- what has to be forgotten ----

void XDMBand::RemoveTiles(int x0, int x1, int y0, int y1)
{
    {
        const std::lock_guard lock(m_pixelMutex);
        ++m_pixelGeneration;
    }
    if (x0 <= 0 && y0 <= 0 && x1 >= GetXSize() - 1 && y1 >= GetYSize() - 1) {
        XTileCache::Get().RemoveOwner(m_ownerID);
        return;
    }
    for (int level = 0; level < GetNumOfLevels(); ++level) {
        const tagLevel& l = m_levels[static_cast<std::size_t>(level)];
        int left, right, top, bottom;
        GetSubsetPos(level, x0, x1, y0, y1, left, right, top, bottom);
        // levels that were made by halving lie up to one pixel beside their share of the width
        const int margin = m_reach + (level ? 1 : 0);
        left = std::max(left - margin, 0) / l.tileWidth;
        top = std::max(top - margin, 0) / l.tileHeight;
        right = std::min(right + margin, l.width - 1) / l.tileWidth;
        bottom = std::min(bottom + margin, l.height - 1) / l.tileHeight;
        for (int ty = top; ty <= bottom; ++ty)
            for (int tx = left; tx <= right; ++tx)
                XTileCache::Get().Remove({m_ownerID, level, tx, ty});
    }
}

template <class F>
void XDMBand::ForEachFollower(F&& take)
{
    std::vector<std::shared_ptr<tagFollower>> followers;
    {
        const std::lock_guard lock(m_pixelMutex);
        for (const std::weak_ptr<tagFollower>& follower : m_followers)
            if (std::shared_ptr<tagFollower> there = follower.lock())
                followers.push_back(std::move(there));
    }
    for (const std::shared_ptr<tagFollower>& follower : followers) {
        const std::lock_guard lock(follower->mutex);
        if (follower->band) take(*follower->band);
    }
}

void XDMBand::DropWindow(int x0, int x1, int y0, int y1)
{
    if (m_levels.empty()) return;
    RemoveTiles(x0, x1, y0, y1);
    {
        const std::lock_guard lock(m_failureMutex);
        m_failures.clear();
    }
    DropStatistics();
    ForEachFollower([=](XDMBand& band) { band.DropWindow(x0, x1, y0, y1); });
}

void XDMBand::DropLevels(int first)
{
    {
        const std::lock_guard lock(m_pixelMutex);
        ++m_pixelGeneration;
    }
    XTileCache::Get().RemoveLevels(m_ownerID, first);
    {
        const std::lock_guard lock(m_failureMutex);
        m_failures.clear();
    }
    ForEachFollower([first](XDMBand& band) { band.DropLevels(first); });
}

void XDMBand::SetNullValue(double value)
{
    const double old = GetNullValue();
    XBand::SetNullValue(value);
    if (old == value || (std::isnan(old) && std::isnan(value))) return;
    ForEachFollower([value](XDMBand& band) { band.OnSourceNullValue(value); });
}

void XDMBand::OnSourceNullValue(double)
{
    DropPixels();
}

void XDMBand::DropPixels()
{
    DropWindow(0, GetXSize() - 1, 0, GetYSize() - 1);
}

void XDMBand::Follow(XDMBand* source, int radius)
{
    StopFollowing();
    if (!source || source == this) return;
    const auto follower = std::make_shared<tagFollower>();
    follower->band = this;
    m_reach = radius + source->m_reach;
    const std::lock_guard lock(source->m_pixelMutex);
    std::erase_if(source->m_followers, [](const auto& known) { return known.expired(); });
    source->m_followers.push_back(follower);
    m_following = follower;
}

void XDMBand::StopFollowing()
{
    if (!m_following) return;
    const std::lock_guard lock(m_following->mutex);
    m_following->band = nullptr;
}
