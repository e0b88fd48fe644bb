#pragma once

#include "foundation/base/XApi.h"
#include "foundation/raster/XTileMemory.h"

#include <cstddef>
#include <memory>

class XFileMap;

/// A decoded piece of one level of one band.
///
/// Row-major without gaps; a tile at the right or bottom edge holds only the pixels that exist.
/// Whoever makes a tile fills it through GetFillData and then publishes it as
/// std::shared_ptr<const XTile>; from then on it never changes, so any thread may read it.
///
/// A tile may also be a view of samples that lie so in a mapped file, which it keeps mapped. When
/// that file is cut while it is open, such a tile reads as zeros from there on and IsLost says so:
/// who makes something lasting of a tile's samples asks afterwards.
class XAPI XTile
{
public:
    /// Samples of undefined value. Throws std::bad_alloc.
    /// @param dataType  code of XRasterTypes.h
    XTile(int dataType, int width, int height);
    /// A view of the samples at `data`, which lie in `map` and are aligned for their type.
    XTile(int dataType, int width, int height, const unsigned char* data,
          std::shared_ptr<const XFileMap> map);
    XTile(const XTile&) = delete;
    XTile& operator=(const XTile&) = delete;
    ~XTile();

    int GetWidth() const { return m_width; }
    int GetHeight() const { return m_height; }
    int GetDataType() const { return m_dataType; }
    int GetSampleSize() const { return m_sampleSize; }
    const void* GetData() const { return m_data; }
    std::size_t GetByteSize() const { return m_byteSize; }
    std::size_t GetRowBytes() const { return static_cast<std::size_t>(m_width) * m_sampleSize; }
    const unsigned char* GetRow(int y) const { return m_data + GetRowBytes() * y; }

    unsigned char* GetFillData() { return m_memory.get(); } ///< null in a view
    /// 1 when the samples are those of a mapped file that was cut. Cheap.
    int IsLost() const;

private:
    int m_dataType;
    int m_width;
    int m_height;
    int m_sampleSize;
    std::size_t m_byteSize;
    XTileMemory m_memory;
    const unsigned char* m_data;
    std::shared_ptr<const XFileMap> m_map;
};
