#include "foundation/raster/XDrawSampler.h"

#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XTile.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

/// Samples picked one by one from a level: for turned and bent pictures.
class XDrawPicker
{
public:
    XDrawPicker(XDrawTiles& tiles, std::size_t sampleSize) : m_tiles(tiles), m_size(sampleSize) {}

    /// Copies the sample at each (columns[i], rows[i]); a column of -1 leaves zeros. Where a tile
    /// fails the column becomes -1.
    void Pick(int* columns, const int* rows, int n, unsigned char* out)
    {
        switch (m_size) {
        case 1:
            PickAs<std::uint8_t>(columns, rows, n, out);
            break;
        case 2:
            PickAs<std::uint16_t>(columns, rows, n, out);
            break;
        case 4:
            PickAs<std::uint32_t>(columns, rows, n, out);
            break;
        case 8:
            PickAs<std::uint64_t>(columns, rows, n, out);
            break;
        case 16:
            PickAs<tagPair>(columns, rows, n, out);
            break;
        default:
            break;
        }
    }

    void Forget() { m_data = nullptr; } ///< the tiles are about to be trimmed

private:
    struct tagPair
    {
        std::uint64_t first = 0, second = 0;
    };

    template <class T>
    void PickAs(int* columns, const int* rows, int n, unsigned char* out)
    {
        T* samples = reinterpret_cast<T*>(out);
        for (int i = 0; i < n; ++i) {
            samples[i] = T{};
            if (columns[i] < 0) continue;
            const unsigned x = static_cast<unsigned>(columns[i] - m_x);
            const unsigned y = static_cast<unsigned>(rows[i] - m_y);
            if (m_data && x < m_width && y < m_height) {
                samples[i] =
                    static_cast<const T*>(m_data)[static_cast<std::size_t>(y) * m_width + x];
            } else if (Open(columns[i], rows[i])) {
                --i; // once more, in the tile now open
            } else {
                columns[i] = -1;
            }
        }
    }

    int Open(int column, int row)
    {
        const int tx = column / m_tiles.GetTileWidth();
        const int ty = row / m_tiles.GetTileHeight();
        const XTile* tile = m_tiles.Get(tx, ty);
        m_data = tile ? tile->GetData() : nullptr;
        if (!tile) return 0;
        m_x = tx * m_tiles.GetTileWidth();
        m_y = ty * m_tiles.GetTileHeight();
        m_width = static_cast<unsigned>(tile->GetWidth());
        m_height = static_cast<unsigned>(tile->GetHeight());
        return 1;
    }

    XDrawTiles& m_tiles;
    std::size_t m_size;
    const void* m_data = nullptr; // of the tile that the last sample came from
    int m_x = 0, m_y = 0;
    unsigned m_width = 0, m_height = 0;
};

void MaskStates(const int* columns, int n, std::uint16_t* states)
{
    for (int i = 0; i < n; ++i)
        states[i] = columns[i] < 0 ? std::uint16_t{0} : states[i];
}

/// The level of one row of states and what the other says about data.
void JoinStates(const std::uint16_t* data, int n, std::uint16_t* states)
{
    for (int i = 0; i < n; ++i)
        states[i] = static_cast<std::uint16_t>((data[i] & ~0xFF) | (states[i] & 0xFF));
}

/// Nearest pixel through a turned or bent mapping.
class XDrawTurnedSampler : public XDrawSampler
{
public:
    XDrawTurnedSampler(const tagXDrawChannel& channel, const std::atomic<int>* abort, int x0, int n)
        : XDrawSampler(channel, abort, x0, n),
          m_size(static_cast<std::size_t>(XfnGetDataTypeSize(channel.dataType))),
          m_picker(m_tiles, m_size),
          m_positionX(Count()),
          m_positionY(Count()),
          m_columns(Count()),
          m_rows(Count()),
          m_samples(Count() * m_size),
          m_stateRow(XfnGetStateRow(channel.dataType, 0))
    {}

    void Fill(int y, std::uint16_t* states) override
    {
        m_picker.Forget();
        m_channel.mapping.GetPositions(m_x0, y, m_count, m_positionX.data(), m_positionY.data());
        XfnPlacePixels(m_positionX.data(), m_positionY.data(), m_count, m_channel.levelWidth,
                       m_channel.levelHeight, m_columns.data(), m_rows.data());
        m_picker.Pick(m_columns.data(), m_rows.data(), m_count, m_samples.data());
        m_stateRow(m_samples.data(), nullptr, m_count, m_channel.cut, states);
        MaskStates(m_columns.data(), m_count, states);
    }

protected:
    std::size_t Count() const { return static_cast<std::size_t>(m_count); }

    std::size_t m_size;
    XDrawPicker m_picker;
    std::vector<double> m_positionX, m_positionY;
    std::vector<int> m_columns, m_rows;
    std::vector<unsigned char> m_samples;
    XDrawStateRow m_stateRow;
};

/// Bilinear through a turned or bent mapping.
template <class R>
class XDrawTurnedMixer final : public XDrawTurnedSampler
{
public:
    XDrawTurnedMixer(const tagXDrawChannel& channel, const std::atomic<int>* abort, int x0, int n)
        : XDrawTurnedSampler(channel, abort, x0, n),
          m_load(XfnGetLoadRow(channel.dataType)),
          m_stateReals(XfnGetStateRow(sizeof(R) == 4 ? kXFloat : kXDouble, 0)),
          m_tapColumns(Count()),
          m_tapRows(Count()),
          m_partX(Count()),
          m_partY(Count()),
          m_mean(Count()),
          m_nearest(Count())
    {
        for (std::vector<R>& tap : m_taps)
            tap.resize(Count());
    }

    void Fill(int y, std::uint16_t* states) override
    {
        XDrawTurnedSampler::Fill(y, m_nearest.data());
        const int lastX = m_channel.levelWidth - 1;
        const int lastY = m_channel.levelHeight - 1;
        for (int corner = 0; corner < 4; ++corner) {
            for (int i = 0; i < m_count; ++i) {
                if (m_columns[i] < 0) {
                    m_tapColumns[i] = -1;
                    continue;
                }
                const double leftAt = std::floor(m_positionX[i] - 0.5);
                const double upperAt = std::floor(m_positionY[i] - 0.5);
                m_partX[i] = static_cast<R>(m_positionX[i] - 0.5 - leftAt);
                m_partY[i] = static_cast<R>(m_positionY[i] - 0.5 - upperAt);
                m_tapColumns[i] = std::clamp(static_cast<int>(leftAt) + (corner & 1), 0, lastX);
                m_tapRows[i] = std::clamp(static_cast<int>(upperAt) + (corner >> 1), 0, lastY);
            }
            m_picker.Pick(m_tapColumns.data(), m_tapRows.data(), m_count, m_samples.data());
            m_load(m_samples.data(), m_count, m_channel.cut, m_taps[corner].data());
            for (int i = 0; i < m_count; ++i) // a neighbour in a tile that failed has no value
                if (m_tapColumns[i] < 0) m_taps[corner][i] = std::numeric_limits<R>::quiet_NaN();
        }
        const R* taps[4] = {m_taps[0].data(), m_taps[1].data(), m_taps[2].data(), m_taps[3].data()};
        XfnMixTaps(taps, m_partX.data(), m_partY.data(), static_cast<R>(m_channel.skip), m_count,
                   m_mean.data());
        m_stateReals(m_mean.data(), nullptr, m_count, m_channel.cut, states);
        JoinStates(m_nearest.data(), m_count, states);
    }

private:
    XDrawLoadRow m_load;
    XDrawStateRow m_stateReals;
    std::vector<int> m_tapColumns, m_tapRows;
    std::vector<R> m_partX, m_partY, m_mean, m_taps[4];
    std::vector<std::uint16_t> m_nearest;
};

/// Bilinear where columns and rows are independent: two source rows are mixed first, whole, and the
/// columns are then picked from the mixture.
template <class R>
class XDrawStraightMixer final : public XDrawSampler
{
public:
    XDrawStraightMixer(const tagXDrawChannel& channel, const std::atomic<int>* abort, int x0, int n)
        : XDrawSampler(channel, abort, x0, n),
          m_load(XfnGetLoadRow(channel.dataType)),
          m_stateReals(XfnGetStateRow(sizeof(R) == 4 ? kXFloat : kXDouble, 0)),
          m_stateNearest(XfnGetStateRow(sizeof(R) == 4 ? kXFloat : kXDouble, 1)),
          m_size(static_cast<std::size_t>(XfnGetDataTypeSize(channel.dataType)))
    {
        const std::size_t count = static_cast<std::size_t>(n);
        m_left.resize(count), m_right.resize(count), m_near.resize(count), m_inside.resize(count);
        m_part.resize(count), m_mean.resize(count), m_nearest.resize(count);
        const int last = channel.levelWidth - 1;
        m_first = last;
        m_end = 0;
        for (int i = 0; i < n; ++i) {
            const double at = channel.mapping.GetColumnAt(x0 + i);
            m_inside[i] = at >= 0.0 && at < channel.levelWidth ? 0 : -1;
            if (m_inside[i]) continue;
            const double leftAt = std::floor(at - 0.5);
            m_part[i] = static_cast<R>(at - 0.5 - leftAt);
            m_left[i] = std::clamp(static_cast<int>(leftAt), 0, last);
            m_right[i] = std::clamp(static_cast<int>(leftAt) + 1, 0, last);
            m_near[i] = static_cast<int>(at);
            m_first = std::min(m_first, m_left[i]);
            m_end = std::max(m_end, m_right[i] + 1);
        }
        for (int i = 0; i < n; ++i) { // indices count from the first column that is needed
            m_left[i] = m_inside[i] ? 0 : m_left[i] - m_first;
            m_right[i] = m_inside[i] ? 0 : m_right[i] - m_first;
            m_near[i] = m_inside[i] ? 0 : m_near[i] - m_first;
        }
        const std::size_t span = static_cast<std::size_t>(std::max(m_end - m_first, 0));
        for (tagRow& row : m_rows)
            row.reals.resize(span);
        m_values.resize(span), m_weights.resize(span);
    }

    void Fill(int y, std::uint16_t* states) override
    {
        const double at = m_channel.mapping.GetRowAt(y);
        if (!(at >= 0.0 && at < m_channel.levelHeight) || m_end <= m_first) {
            std::fill_n(states, m_count, std::uint16_t{0});
            return;
        }
        const int last = m_channel.levelHeight - 1;
        const double upperAt = std::floor(at - 0.5);
        const int upperRow = std::clamp(static_cast<int>(upperAt), 0, last);
        const int lowerRow = std::clamp(static_cast<int>(upperAt) + 1, 0, last);
        const R* upper = Load(upperRow, lowerRow);
        const R* lower = Load(lowerRow, upperRow);
        const R part = static_cast<R>(at - 0.5 - upperAt);
        const int span = m_end - m_first;
        if (m_channel.isEveryData && !m_tiles.HasFailed()) {
            XfnLerpRows(upper, lower, part, span, m_values.data());
            XfnLerpColumns(m_values.data(), m_left.data(), m_right.data(), m_part.data(), m_count,
                           m_mean.data());
            m_stateReals(m_mean.data(), nullptr, m_count, m_channel.cut, states);
        } else {
            XfnMixRows(upper, lower, part, static_cast<R>(m_channel.skip), span, m_values.data(),
                       m_weights.data());
            XfnMixColumns(m_values.data(), m_weights.data(), m_left.data(), m_right.data(),
                          m_part.data(), m_count, m_mean.data());
            m_stateReals(m_mean.data(), nullptr, m_count, m_channel.cut, states);
            const R* nearest = static_cast<int>(at) == upperRow ? upper : lower;
            m_stateNearest(nearest, m_near.data(), m_count, m_channel.cut, m_nearest.data());
            JoinStates(m_nearest.data(), m_count, states);
        }
        MaskStates(m_inside.data(), m_count, states);
    }

private:
    struct tagRow
    {
        int number = -1;
        std::vector<R> reals;
    };

    /// The needed columns of a source row as reals. Keeps two rows; never gives up `other`.
    const R* Load(int number, int other)
    {
        for (const tagRow& row : m_rows)
            if (row.number == number) return row.reals.data();
        tagRow& row = m_rows[0].number == other ? m_rows[1] : m_rows[0];
        row.number = number;
        const int tileWidth = m_tiles.GetTileWidth();
        const int ty = number / m_tiles.GetTileHeight();
        for (int begin = m_first; begin < m_end;) {
            const int tx = begin / tileWidth;
            const int end = std::min(m_end, (tx + 1) * tileWidth);
            R* out = row.reals.data() + (begin - m_first);
            const XTile* tile = m_tiles.Get(tx, ty);
            if (tile) {
                const std::size_t offset =
                    static_cast<std::size_t>(number - ty * m_tiles.GetTileHeight()) *
                        static_cast<std::size_t>(tile->GetWidth()) +
                    static_cast<std::size_t>(begin - tx * tileWidth);
                m_load(static_cast<const unsigned char*>(tile->GetData()) + offset * m_size,
                       end - begin, m_channel.cut, out);
            } else {
                std::fill_n(out, end - begin, std::numeric_limits<R>::quiet_NaN());
            }
            begin = end;
        }
        return row.reals.data();
    }

    XDrawLoadRow m_load;
    XDrawStateRow m_stateReals;
    XDrawStateRow m_stateNearest;
    std::size_t m_size;
    int m_first = 0, m_end = 0; // source columns [first, end)
    std::vector<int> m_left, m_right, m_near, m_inside;
    std::vector<R> m_part, m_mean, m_values, m_weights;
    std::vector<std::uint16_t> m_nearest;
    tagRow m_rows[2];
};

} // namespace

XDrawSampler::XDrawSampler(const tagXDrawChannel& channel, const std::atomic<int>* abort, int x0,
                           int n)
    : m_channel(channel), m_tiles(channel.band, channel.level, abort), m_x0(x0), m_count(n)
{}

std::unique_ptr<XDrawSampler> XDrawSampler::Make(const tagXDrawChannel& channel,
                                                 const std::atomic<int>* abort, int isBilinear,
                                                 int x0, int n)
{
    const bool isStraight = channel.mapping.GetKind() == XDrawMapping::Kind::Separable;
    const bool isWide = XfnIsWideType(channel.dataType);
    if (!isBilinear) return std::make_unique<XDrawTurnedSampler>(channel, abort, x0, n);
    if (isStraight && isWide)
        return std::make_unique<XDrawStraightMixer<double>>(channel, abort, x0, n);
    if (isStraight) return std::make_unique<XDrawStraightMixer<float>>(channel, abort, x0, n);
    if (isWide) return std::make_unique<XDrawTurnedMixer<double>>(channel, abort, x0, n);
    return std::make_unique<XDrawTurnedMixer<float>>(channel, abort, x0, n);
}
