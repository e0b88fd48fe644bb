#include "foundation/raster/XDrawAhead.h"
#include "foundation/raster/XDrawGrid.h"
#include "foundation/raster/XDrawJob.h"
#include "foundation/raster/XDrawRowWriter.h"
#include "foundation/raster/XDrawTiles.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XTile.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace {

/// Draws cell by cell: the pieces of the surface on which every channel stays within one tile.
class XDrawCells
{
public:
    explicit XDrawCells(const tagXDrawJob& job);
    int Run();

private:
    struct tagSource
    {
        const tagXDrawChannel* channel = nullptr;
        std::optional<XDrawTiles> tiles;
        const tagXDrawAxis* columns = nullptr;
        const tagXDrawAxis* rows = nullptr;
        XDrawStateRow stateRow = nullptr;
        XDrawStateRow stateIndexedRow = nullptr;
        std::size_t sampleSize = 0;
        std::vector<std::uint16_t> states;
        const XTile* tile = nullptr; // of the cell being drawn
    };
    int OpenTiles(std::size_t column, std::size_t row);
    void DrawCell(tagXDrawSpan columns, tagXDrawSpan rows);
    void MakeShortRow(std::size_t row, tagXDrawSpan columns, std::uint32_t* words) const;
    void ComposeRow(std::size_t row, tagXDrawSpan columns);
    static const void* SamplesOf(const tagSource& source, std::size_t row, std::size_t first);
    static const int* IndexOf(const tagSource& source, tagXDrawSpan columns);
    int IsRowRepeated(std::size_t row) const;
    void MakeWords(const void* const src[3], const int* index, int n, std::uint32_t* words) const;

    const tagXDrawJob& m_job;
    const std::shared_ptr<const XDrawGrid> m_grid;
    std::vector<tagSource> m_sources; // the channels that have a band
    XDrawRowWriter m_writer;
    int m_isComplete = 1;
};

XDrawCells::XDrawCells(const tagXDrawJob& job)
    : m_job(job), m_grid(std::make_shared<const XDrawGrid>(job)), m_writer(job, job.x1 - job.x0)
{
    m_sources.reserve(3);
    for (int ch = 0; ch < 3; ++ch) {
        const tagXDrawChannel& channel = job.channels[ch];
        if (!channel.band) continue;
        tagSource& source = m_sources.emplace_back();
        source.channel = &channel;
        source.tiles.emplace(channel.band, channel.level, job.abort);
        source.tiles->SetMessage(job.message);
        source.columns = &m_grid->GetColumns(ch);
        source.rows = &m_grid->GetRows(ch);
        source.stateRow = XfnGetStateRow(channel.dataType, 0);
        source.stateIndexedRow = XfnGetStateRow(channel.dataType, 1);
        source.sampleSize = static_cast<std::size_t>(XfnGetDataTypeSize(channel.dataType));
        source.states.resize(static_cast<std::size_t>(job.x1 - job.x0));
    }
}

/// 0 when no channel covers the cell or one of its tiles cannot be read.
int XDrawCells::OpenTiles(std::size_t column, std::size_t row)
{
    int isCovered = 0;
    for (tagSource& source : m_sources) {
        source.tile = nullptr;
        const int tx = source.columns->tile[column];
        const int ty = source.rows->tile[row];
        if (tx < 0 || ty < 0) continue;
        source.tile = source.tiles->Get(tx, ty);
        if (!source.tile) {
            m_isComplete = 0;
            return 0;
        }
        isCovered = 1;
    }
    return isCovered;
}

const void* XDrawCells::SamplesOf(const tagSource& source, std::size_t row, std::size_t first)
{
    const std::size_t offset = static_cast<std::size_t>(source.rows->within[row]) *
                                   static_cast<std::size_t>(source.tile->GetWidth()) +
                               first;
    return static_cast<const unsigned char*>(source.tile->GetData()) + offset * source.sampleSize;
}

/// Null when the samples of the columns lie in a row: positions rise evenly, so the ends tell.
const int* XDrawCells::IndexOf(const tagSource& source, tagXDrawSpan columns)
{
    const int* within = source.columns->within.data() + columns.begin;
    const int last = static_cast<int>(columns.end - columns.begin) - 1;
    return within[last] - within[0] == last ? nullptr : within;
}

int XDrawCells::IsRowRepeated(std::size_t row) const
{
    return std::all_of(m_sources.begin(), m_sources.end(), [row](const tagSource& source) {
        return source.rows->within[row] == source.rows->within[row - 1];
    });
}

void XDrawCells::MakeWords(const void* const src[3], const int* index, int n,
                           std::uint32_t* words) const
{
    const auto* const bytes = reinterpret_cast<const std::uint8_t* const*>(src);
    const auto* const shorts = reinterpret_cast<const std::uint16_t* const*>(src);
    switch (m_job.shortcut) {
    case XDrawShortcut::Rgb8:
        if (index)
            XfnRgb8IndexedRow(bytes, index, n, m_job.words8, words);
        else
            XfnRgb8Row(bytes, n, m_job.words8, words);
        break;
    case XDrawShortcut::Gray8:
        XfnGray8Row(bytes[0], index, n, m_job.words8[0], words);
        break;
    case XDrawShortcut::Rgb16:
        XfnRgb16Row(shorts, index, n, m_job.components16, words);
        break;
    case XDrawShortcut::Gray16:
        XfnGray16Row(shorts[0], index, n, m_job.components16[0], m_job.words8[0], words);
        break;
    case XDrawShortcut::None:
        break;
    }
}

void XDrawCells::MakeShortRow(std::size_t row, tagXDrawSpan columns, std::uint32_t* words) const
{
    const int* index = IndexOf(m_sources[0], columns);
    const std::size_t first =
        index ? 0 : static_cast<std::size_t>(m_sources[0].columns->within[columns.begin]);
    // channels without a band have tables of one value: any samples will do for them
    const void* src[3] = {};
    for (const void*& place : src)
        place = SamplesOf(m_sources[0], row, first);
    for (const tagSource& source : m_sources)
        src[source.channel - m_job.channels] = SamplesOf(source, row, first);
    MakeWords(src, index, static_cast<int>(columns.end - columns.begin), words);
}

void XDrawCells::ComposeRow(std::size_t row, tagXDrawSpan columns)
{
    const int n = static_cast<int>(columns.end - columns.begin);
    const std::uint16_t* states[3] = {};
    for (tagSource& source : m_sources) {
        if (!source.tile) continue;
        const int* index = IndexOf(source, columns);
        const std::size_t first =
            index ? 0 : static_cast<std::size_t>(source.columns->within[columns.begin]);
        (index ? source.stateIndexedRow : source.stateRow)(
            SamplesOf(source, row, first), index, n, source.channel->cut, source.states.data());
        states[source.channel - m_job.channels] = source.states.data();
    }
    m_writer.Compose(states, n);
}

void XDrawCells::DrawCell(tagXDrawSpan columns, tagXDrawSpan rows)
{
    const int n = static_cast<int>(columns.end - columns.begin);
    const bool isShort = m_job.shortcut != XDrawShortcut::None && m_grid->IsShared();
    for (std::size_t row = rows.begin; row < rows.end; ++row) {
        if (row % 16 == 0 && m_job.IsAborted()) return; // a coarse cell may fill the screen
        std::uint32_t* surface = m_job.bits +
                                 (static_cast<std::size_t>(m_job.y0) + row) * m_job.stride +
                                 static_cast<std::size_t>(m_job.x0) + columns.begin;
        const bool isRepeated = row > rows.begin && IsRowRepeated(row);
        if (isShort && m_job.alpha == 255) {
            if (isRepeated)
                std::copy_n(surface - m_job.stride, n, surface);
            else
                MakeShortRow(row, columns, surface);
        } else if (isShort) {
            if (!isRepeated) MakeShortRow(row, columns, m_writer.GetWords());
            m_writer.StoreWords(n, surface);
        } else {
            if (!isRepeated) ComposeRow(row, columns);
            m_writer.Store(n, surface);
        }
    }
}

int XDrawCells::Run()
{
    if (m_sources.empty()) return 1;
    XDrawAhead ahead(m_job, m_grid);
    int cell = 0;
    for (const tagXDrawSpan& rows : m_grid->GetRowSpans()) {
        for (const tagXDrawSpan& columns : m_grid->GetColumnSpans()) {
            if (m_job.IsAborted()) return 0;
            ahead.Arrive(cell++);
            if (OpenTiles(columns.begin, rows.begin)) DrawCell(columns, rows);
        }
        for (tagSource& source : m_sources)
            source.tiles->Trim();
    }
    return m_isComplete && !m_job.IsAborted();
}

} // namespace

int XfnDrawCells(const tagXDrawJob& job)
{
    return XDrawCells(job).Run();
}
