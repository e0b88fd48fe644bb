#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"
#include "foundation/surface/XBufferMapping.h"

#include <QImage>

#include <cstdint>

class XBackBuffer;

/// The rasters of a picture as they were drawn last, so that vectors can move over them without
/// drawing them anew. Holds one picture. Threads: no lock.
class XAPI XRasterKeeper
{
public:
    /// What else than the place decides about the pixels. Numbers of other rasters differ.
    struct tagState
    {
        std::uint64_t number = 0;
        tagXColor backColor = 0;

        friend bool operator==(const tagState&, const tagState&) = default;
    };

    int Has(const XBufferMapping& mapping, const tagState& state) const;
    int Restore(XBackBuffer& surface, const tagState& state) const; ///< 0: nothing of it is kept
    void Keep(const XBackBuffer& surface, const tagState& state);
    void Drop() { m_pixels = QImage(); }

private:
    QImage m_pixels;
    XBufferMapping m_mapping;
    tagState m_state;
};
