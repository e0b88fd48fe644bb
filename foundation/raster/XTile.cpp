#include "foundation/raster/XTile.h"

#include "foundation/platform/XFileMap.h"
#include "foundation/raster/XRasterTypes.h"

XTile::XTile(int dataType, int width, int height, const unsigned char* data,
             std::shared_ptr<const XFileMap> map)
    : m_dataType(dataType),
      m_width(width),
      m_height(height),
      m_sampleSize(XfnGetDataTypeSize(dataType)),
      m_byteSize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                 static_cast<std::size_t>(m_sampleSize)),
      m_data(data),
      m_map(std::move(map))
{}

XTile::XTile(int dataType, int width, int height) : XTile(dataType, width, height, nullptr, nullptr)
{
    m_memory = XfnNewTileMemory(m_byteSize);
    m_data = m_memory.get();
}

XTile::~XTile() = default;

int XTile::IsLost() const
{
    return m_map && m_map->IsLost();
}
