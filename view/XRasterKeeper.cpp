#include "view/XRasterKeeper.h"

#include "foundation/surface/XBackBuffer.h"

#include <cstring>

int XRasterKeeper::Has(const XBufferMapping& mapping, const tagState& state) const
{
    return !m_pixels.isNull() && m_mapping == mapping && m_state == state;
}

int XRasterKeeper::Restore(XBackBuffer& surface, const tagState& state) const
{
    QImage& pixels = surface.GetImage();
    if (!Has(surface.GetMapping(), state) || pixels.size() != m_pixels.size() ||
        pixels.sizeInBytes() != m_pixels.sizeInBytes())
        return 0;
    std::memcpy(pixels.bits(), m_pixels.constBits(),
                static_cast<std::size_t>(m_pixels.sizeInBytes()));
    return 1;
}

void XRasterKeeper::Keep(const XBackBuffer& surface, const tagState& state)
{
    m_pixels = surface.GetImage().copy();
    m_mapping = surface.GetMapping();
    m_state = state;
}
