#include "foundation/raster/XDMFileSaver.h"

#include "foundation/raster/XDMBandXDM.h"
#include "foundation/raster/XDMFileModel.h"
#include "foundation/raster/XDMFileWriter.h"
#include "foundation/raster/XDMLevelKernels.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRasterTypes.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <system_error>
#include <thread>

namespace {

constexpr unsigned kMaxThreads = 4;

/// Memory that one thread uses for tile after tile.
struct tagWorkspace
{
    std::vector<unsigned char> finerTile;
    std::vector<unsigned char> window;
    std::vector<unsigned char> tile;
    tagXArr2 block;
};

/// Bands of one size that follow each other. They are written side by side, so that a pixel
/// interleaved source is decoded once.
struct tagBandGroup
{
    int firstBand = 0;
    int bandCount = 0;
    std::vector<tagXDMFileLevel> levels;
    /// For values that may not be mixed: [level][column] is the column of the finer level that the
    /// column shows, likewise rows; nothing at level 0.
    std::vector<std::vector<int>> columns;
    std::vector<std::vector<int>> rows;
};

/// Which finer positions the positions of each level show. `sizes` are those of one axis.
///
/// Taking every second one would drift by half a pixel a level; so each position takes, of those
/// that the finer level shows, the one closest to its own centre in full resolution.
std::vector<std::vector<int>> PickPositions(const std::vector<int>& sizes)
{
    std::vector<std::vector<int>> picks(sizes.size());
    std::vector<int> shown(static_cast<std::size_t>(sizes[0])); // full resolution, finer level
    for (int i = 0; i < sizes[0]; ++i)
        shown[static_cast<std::size_t>(i)] = i;
    for (std::size_t level = 1; level < sizes.size(); ++level) {
        std::vector<int> now;
        for (int i = 0; i < sizes[level]; ++i) {
            const int target = XfnPickPixel(i, sizes[level], sizes[0]);
            auto place = std::lower_bound(shown.begin(), shown.end(), target);
            if (place == shown.end() ||
                (place != shown.begin() && target - *(place - 1) < *place - target))
                --place;
            picks[level].push_back(static_cast<int>(place - shown.begin()));
            now.push_back(*place);
        }
        shown.swap(now);
    }
    return picks;
}

/// Values of the band are numbers of things, which have no mean.
bool IsNominal(const XDMBand& band)
{
    return band.GetBandType() >= kXBandClassMap || band.HasColorTable() || band.GetNumOfGIS() > 0 ||
           band.GetColorInterpretation() == 2;
}

class XSaveJob
{
public:
    XSaveJob(XRSFile& file, const tagXSaveControl& control) : m_file(file), m_control(control) {}

    int Run(const XString& path, XDMCompression compression, XString& error);

private:
    int Describe(XDMCompression compression, tagXDMFileInfo& info, XString& error);
    void MakeGroups(const tagXDMFileInfo& info);
    int WriteLevel(const tagBandGroup& group, int level, XString& error);
    int WriteFullTile(int band, const tagXDMFileLevel& level, int tx, int ty, tagWorkspace& work,
                      XString& message);
    int WriteReducedTile(const tagBandGroup& group, int band, int level, int tx, int ty,
                         tagWorkspace& work, XString& message);
    int GatherWindow(int band, const tagXDMFileLevel& finer, int finerLevel, int x0, int x1, int y0,
                     int y1, tagWorkspace& work, XString& message);

    XRSFile& m_file;
    const tagXSaveControl& m_control;
    XDMFileWriter m_writer;
    std::vector<tagBandGroup> m_groups;
    std::unique_ptr<XSaveProgress> m_progress;
    std::atomic<int> m_stop{0}; // raised by the first failure and by whoever stops the job
};

int XSaveJob::Describe(XDMCompression compression, tagXDMFileInfo& info, XString& error)
{
    XString reason;
    for (int i = 0; i < m_file.GetNumOfBands(); ++i) {
        if (XSaveProgress(m_control, 1).IsStopped()) return 0; // statistics may take a while
        const XDMBand& band = *m_file.GetBandAt(i);
        tagXDMFileBand record;
        if (!XfnDescribeToXDM(band, record, reason)) {
            error = XfnFormat("Band %d cannot be written: %s.", i + 1, reason);
            return 0;
        }
        record.compression = static_cast<int>(compression);
        record.levels = XDMBandXDM::MakeFileLevels(band.GetXSize(), band.GetYSize());
        info.bands.push_back(std::move(record));
    }
    if (XfnDescribeToXDM(m_file, info, reason)) return 1;
    error = XfnFormat("The file cannot be written: %s.", reason);
    return 0;
}

void XSaveJob::MakeGroups(const tagXDMFileInfo& info)
{
    long long total = 0;
    for (int i = 0; i < m_file.GetNumOfBands(); ++i) {
        const auto& levels = info.bands[static_cast<std::size_t>(i)].levels;
        if (m_groups.empty() || m_groups.back().levels != levels) {
            tagBandGroup group;
            group.firstBand = i;
            group.levels = levels;
            std::vector<int> widths, heights;
            for (const tagXDMFileLevel& level : levels) {
                widths.push_back(level.width);
                heights.push_back(level.height);
            }
            group.columns = PickPositions(widths);
            group.rows = PickPositions(heights);
            m_groups.push_back(std::move(group));
        }
        ++m_groups.back().bandCount;
        for (const tagXDMFileLevel& level : levels)
            total += level.GetTileColumns() * level.GetTileRows();
    }
    m_progress = std::make_unique<XSaveProgress>(m_control, total);
}

int XSaveJob::WriteFullTile(int band, const tagXDMFileLevel& level, int tx, int ty,
                            tagWorkspace& work, XString& message)
{
    XDMBand& source = *m_file.GetBandAt(band);
    int tileWidth, tileHeight;
    source.GetTileSize(0, tileWidth, tileHeight);
    if (tileWidth == level.tileWidth && tileHeight == level.tileHeight) {
        const auto tile = source.GetTile(0, tx, ty, &m_stop, message);
        return tile &&
               m_writer.WriteTile(band, 0, tx, ty, tile->GetData(), tile->GetByteSize(), message);
    }
    const int x0 = tx * level.tileWidth;
    const int y0 = ty * level.tileHeight;
    tagXArr2* block = &work.block;
    return source.ReadSubset(block, 0, x0, std::min(x0 + level.tileWidth, level.width) - 1, y0,
                             std::min(y0 + level.tileHeight, level.height) - 1, &m_stop,
                             &message) &&
           m_writer.WriteTile(band, 0, tx, ty, block->base, block->GetByteSize(), message);
}

int XSaveJob::GatherWindow(int band, const tagXDMFileLevel& finer, int finerLevel, int x0, int x1,
                           int y0, int y1, tagWorkspace& work, XString& message)
{
    const int dataType = m_file.GetBandAt(band)->GetDataType();
    const std::size_t size = static_cast<std::size_t>(XfnGetDataTypeSize(dataType));
    const std::size_t rowBytes = size * static_cast<std::size_t>(x1 - x0);
    work.window.resize(rowBytes * static_cast<std::size_t>(y1 - y0));
    for (int ty = y0 / finer.tileHeight; ty * finer.tileHeight < y1; ++ty) {
        for (int tx = x0 / finer.tileWidth; tx * finer.tileWidth < x1; ++tx) {
            const int left = tx * finer.tileWidth;
            const int top = ty * finer.tileHeight;
            const int width = std::min(finer.tileWidth, finer.width - left);
            const int height = std::min(finer.tileHeight, finer.height - top);
            work.finerTile.resize(size * static_cast<std::size_t>(width) *
                                  static_cast<std::size_t>(height));
            if (!m_writer.ReadTile(band, finerLevel, tx, ty, work.finerTile.data(),
                                   work.finerTile.size(), message))
                return 0;
            const int beginX = std::max(x0, left);
            const int endX = std::min(x1, left + width);
            const int endY = std::min(y1, top + height);
            for (int y = std::max(y0, top); y < endY; ++y)
                std::memcpy(work.window.data() + rowBytes * static_cast<std::size_t>(y - y0) +
                                size * static_cast<std::size_t>(beginX - x0),
                            work.finerTile.data() +
                                size * (static_cast<std::size_t>(width) *
                                            static_cast<std::size_t>(y - top) +
                                        static_cast<std::size_t>(beginX - left)),
                            size * static_cast<std::size_t>(endX - beginX));
        }
    }
    return 1;
}

int XSaveJob::WriteReducedTile(const tagBandGroup& group, int band, int level, int tx, int ty,
                               tagWorkspace& work, XString& message)
{
    const std::size_t at = static_cast<std::size_t>(level);
    const tagXDMFileLevel& out = group.levels[at];
    const tagXDMFileLevel& finer = group.levels[at - 1];
    const int x0 = tx * out.tileWidth;
    const int y0 = ty * out.tileHeight;
    const int x1 = std::min(x0 + out.tileWidth, out.width);
    const int y1 = std::min(y0 + out.tileHeight, out.height);
    const XDMBand& source = *m_file.GetBandAt(band);
    const std::size_t size = static_cast<std::size_t>(XfnGetDataTypeSize(source.GetDataType()));
    work.tile.resize(size * static_cast<std::size_t>(x1 - x0) * static_cast<std::size_t>(y1 - y0));
    if (IsNominal(source)) {
        const int* columns = group.columns[at].data();
        const int* rows = group.rows[at].data();
        const int left = columns[x0];
        const int top = rows[y0];
        const int right = columns[x1 - 1] + 1;
        if (!GatherWindow(band, finer, level - 1, left, right, top, rows[y1 - 1] + 1, work,
                          message))
            return 0;
        unsigned char* to = work.tile.data();
        for (int y = y0; y < y1; ++y) {
            const unsigned char* row =
                work.window.data() + size * static_cast<std::size_t>(right - left) *
                                         static_cast<std::size_t>(rows[y] - top);
            for (int x = x0; x < x1; ++x, to += size)
                std::memcpy(to, row + size * static_cast<std::size_t>(columns[x] - left), size);
        }
    } else {
        const tagXLevelAxis x = XfnMakeLevelAxis(x0, x1, out.width, finer.width);
        const tagXLevelAxis y = XfnMakeLevelAxis(y0, y1, out.height, finer.height);
        if (!GatherWindow(band, finer, level - 1, x.begin, x.end, y.begin, y.end, work, message))
            return 0;
        XfnAverageLevel(work.window.data(), source.GetDataType(), source.GetNullValue(), x, y,
                        work.tile.data());
    }
    return m_writer.WriteTile(band, level, tx, ty, work.tile.data(), work.tile.size(), message);
}

int XSaveJob::WriteLevel(const tagBandGroup& group, int level, XString& error)
{
    const tagXDMFileLevel& size = group.levels[static_cast<std::size_t>(level)];
    const long long columns = size.GetTileColumns();
    const long long count = columns * size.GetTileRows() * group.bandCount;
    std::atomic<long long> next{0};
    std::mutex mutex;
    const auto fail = [&](const XString& message) {
        const std::lock_guard lock(mutex);
        if (m_stop.exchange(1) == 0) error = message; // what follows a failure is no news
    };
    const auto work = [&] {
        try {
            tagWorkspace workspace;
            for (long long i = next++; i < count && !m_stop; i = next++) {
                if (m_progress->IsStopped()) return fail(XString());
                const int band = group.firstBand + static_cast<int>(i % group.bandCount);
                const int tx = static_cast<int>(i / group.bandCount % columns);
                const int ty = static_cast<int>(i / group.bandCount / columns);
                XString message;
                if (!(level == 0
                          ? WriteFullTile(band, size, tx, ty, workspace, message)
                          : WriteReducedTile(group, band, level, tx, ty, workspace, message)))
                    return fail(message);
                m_progress->Step();
            }
        } catch (const std::bad_alloc&) {
            fail("There is not enough memory to write the file.");
        }
    };
    const unsigned wanted = std::clamp(std::thread::hardware_concurrency(), 1u, kMaxThreads);
    std::vector<std::thread> threads;
    try {
        for (unsigned i = 1; i < wanted && i < count; ++i)
            threads.emplace_back(work);
    } catch (const std::system_error&) {
        // the threads that there are do it all
    }
    work();
    for (std::thread& thread : threads)
        thread.join();
    return m_stop == 0;
}

int XSaveJob::Run(const XString& path, XDMCompression compression, XString& error)
{
    error.Empty();
    if (m_file.GetNumOfBands() < 1) {
        error = XfnFormat("\"%s\" is not written: there is no band.", path);
        return 0;
    }
    tagXDMFileInfo info;
    if (!Describe(compression, info, error)) return 0;
    MakeGroups(info);
    if (m_progress->IsStopped() || !m_writer.Create(path, info, error)) return 0;
    m_progress->Report(0);
    for (const tagBandGroup& group : m_groups)
        for (std::size_t level = 0; level < group.levels.size(); ++level)
            if (!WriteLevel(group, static_cast<int>(level), error)) return 0;
    for (int band = 0; band < m_file.GetNumOfBands(); ++band)
        if (!m_file.GetBandAt(band)->IsIntact(error)) return 0;
    return m_writer.Commit(error);
}

} // namespace

int XDMFileSaver::Save(XRSFile& file, const XString& path, XDMCompression compression,
                       const tagXSaveControl& control, XString& error)
{
    try {
        return XSaveJob(file, control).Run(path, compression, error);
    } catch (const std::bad_alloc&) {
        error = XfnFormat("\"%s\": there is not enough memory to write it.", path);
        return 0;
    }
}
