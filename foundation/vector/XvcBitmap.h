#pragma once

#include "foundation/surface/XBitmapInfo.h"
#include "foundation/vector/XvcBoxObj.h"

#include <memory>

class QImage;
struct XVectorPaint;
struct tagXvcDib;

/// A picture in world coordinates: it fills its box, whatever its own proportions are.
///
/// Pixels: a device independent bitmap, immutable once it is set and shared by count. Assignment
/// and CloneWithoutBits share them, so a copy costs the same for a picture of any size; the last
/// object that has them frees them, and recordings of a vertex buffer count as one. Drawing
/// uses the same bytes, without a copy, save for pictures of 4 bits a pixel, of 32 whose fourth
/// bytes are free and not all 255, and transparent ones of other than 4 and 8 bits.
/// Transparency: the opacity (SetAlpha) holds for the whole picture. SetTransparent leaves out the
/// pixels whose colour is that of the back colour (its opacity does not count). An opacity in the
/// file counts as well.
/// Border: a frame along the box in the line colour, style and thickness.
/// Index map: the picture shows the region of the map box, and on it stands the outline of four
/// corners given in the coordinates of that region, in the line colour, cut at the box.
class XAPI XvcBitmap : public XvcBoxObj
{
    X_DECLARE_CLASS(XvcBitmap)
public:
    static constexpr int kIndexMapCorners = 4;

    XvcBitmap();
    XvcBitmap(const XvcBitmap& other);
    XvcBitmap& operator=(const XvcBitmap& other);
    ~XvcBitmap() override;

    /// Header and palette, null without a picture. The same pointer for all that share it.
    const tagBITMAPINFO* GetBitmapInfo() const;
    const unsigned char* GetBits() const; ///< rows as in the header; null when there are none
    /// Sets header and palette (as many entries as the header says), copied, and drops the bits;
    /// null drops the picture. The header's own size field is not looked at.
    /// @return 0 for a header that no picture can have; then all is as it was
    int SetBitmapInfo(const tagBITMAPINFO* info);
    /// Copies the bits that the header set before asks for; null drops them.
    /// @return 0 when there is no header or no memory
    int SetBits(const void* bits);
    /// Both at once. File name and opacity of the file are forgotten.
    int SetDIB(const tagBITMAPINFO* info, const void* bits);

    /// @return 0 with a sentence in `error` that names the file; the picture of before stays
    int ReadBMP(const XString& path, XString& error);
    /// Turned as the file says; gray pictures get 8 bits a pixel, others 24. At most 1 Mi pixels
    /// and 1024 more a byte of the file. The user interface thread only.
    int ReadJPG(const XString& path, XString& error);
    const XString& GetFileName() const { return m_fileName; } ///< the path read last, or empty

    int GetWidth() const; ///< pixels; 0 without a picture
    int GetHeight() const;
    int GetColorDepth() const; ///< bits a pixel

    int GetBorderFlag() const { return m_borderFlag; }
    void SetBorderFlag(int flag)
    {
        m_borderFlag = flag ? 1 : 0;
        Touch();
    }
    int GetTransparent() const { return m_transparent; }
    void SetTransparent(int flag);
    double GetAlpha() const { return m_alpha; }
    void SetAlpha(double opacity); ///< held within 0 to 1; NaN changes nothing
    void SetBackColor(tagXColor color) override;

    /// Four corners, never null; all 0 at first.
    const tagXVector3* GetIndexMap() const { return m_indexMap; }
    void SetInexMap(const tagXVector3* corners); ///< four; null takes the outline away
    int HasIndexMap() const { return m_hasIndexMap; }
    /// The region that the picture shows. Without one, or one without an area, no outline is drawn.
    void SetMapBox(double minX, double minY, double maxX, double maxY);
    void GetMapBox(double& minX, double& minY, double& maxX, double& maxY) const;

    /// Takes over all attributes of `source` and shares its pixels.
    void CloneWithoutBits(const XvcBitmap& source) { *this = source; }
    void CloneWithoutBits(const XvcBitmap* source);

    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;

protected:
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;

private:
    void TakePicture(std::shared_ptr<const tagXvcDib> picture, const XString& fileName);
    const QImage& GetImage(tagXColor seeThrough);
    void AddIndexMap(XVertBuffer* buffer, const tagXVector3 (&corners)[kCornerCount],
                     const XVectorPaint& paint) const;

    std::shared_ptr<const tagXvcDib> m_picture; // null without one
    std::unique_ptr<QImage> m_keyedImage;       // without the see-through colour; made when needed
    XString m_fileName;
    double m_alpha = 1.0;
    int m_borderFlag = 0;
    int m_transparent = 0;
    int m_hasIndexMap = 0;
    tagXVector3 m_indexMap[kIndexMapCorners];
    double m_mapBox[4] = {0.0, 0.0, 0.0, 0.0};
};
