#include "foundation/raster/XTile.h"

#include "foundation/raster/XRasterTypes.h"

XTile::XTile(int dataType, int width, int height)
    : m_dataType(dataType),
      m_width(width),
      m_height(height),
      m_sampleSize(XfnGetDataTypeSize(dataType)),
      m_byteSize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                 static_cast<std::size_t>(m_sampleSize)),
      m_data(std::make_unique_for_overwrite<unsigned char[]>(m_byteSize))
{}
