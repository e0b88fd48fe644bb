#pragma once

#include "foundation/vector/XvcBoxObj.h"

#include <cstddef>
#include <memory>

struct tagXvcRasterData;

/// A patch of raster samples in world coordinates, which fills its box.
///
/// Samples: one band after the other, each in rows from the upper one on, without padding. The type
/// codes are those of raster bands: 1 and 2 unsigned and signed 8-bit, 3 and 4 16-bit, 5 and 6
/// 32-bit integers, 7 float, 8 double. Immutable once set and shared by count, as the pixels of
/// XvcBitmap are.
/// Drawing: one or two bands in gray (the first), three or more with the first three as blue, green
/// and red. Unsigned 8-bit samples are shown as they are, those of other types stretched from the
/// band's least to its greatest. Samples that are not finite, or -1.7e308 or 1.7e308, are see-through.
class XAPI XvcRaster : public XvcBoxObj
{
    X_DECLARE_CLASS(XvcRaster)
public:
    static constexpr int kMaxSide = 65535;

    XvcRaster();
    XvcRaster(const XvcRaster& other);
    XvcRaster& operator=(const XvcRaster& other);
    ~XvcRaster() override;

    /// Copies samples.
    /// @return 0 for sizes below 1 or sides above kMaxSide, more than 65535 bands, an unknown type,
    ///         null, or no memory; then all is as it was
    int SetData(const void* samples, int xSize, int ySize, int numBands, int dataType);
    /// Null: gives up this object's share of the samples, and its sizes. Other pointers are ignored,
    /// since their sizes are not known.
    void SetData(const void* samples);
    const void* GetData() const; ///< null without samples; the same for all that share them
    int GetNumBands() const;
    int GetXSize() const;
    int GetYSize() const;
    int GetDataType() const; ///< 0 without samples
    std::size_t GetDataBytes() const;

    double GetAlpha() const { return m_alpha; }
    void SetAlpha(double opacity); ///< held within 0 to 1; NaN changes nothing

    /// Takes over all attributes of `source` and shares its samples.
    void CloneWithoutData(const XvcRaster& source) { *this = source; }
    void CloneWithoutData(const XvcRaster* source);

    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;

protected:
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;

private:
    std::shared_ptr<const tagXvcRasterData> m_data; // null without samples
    double m_alpha = 1.0;
};
