#pragma once

#include "foundation/vector/XSymbolOutline.h"
#include "foundation/vector/XvcBoxObj.h"

#include <memory>

/// A drawing of a size in pixels, with the shape of a symbol.
///
/// The box is the drawing's truth; its size in pixels is that of the box divided by the world length
/// of a pixel (SetWorldPerPixel), rounded. Setting the size in pixels keeps the centre. It holds
/// the outline of a symbol (XSymbolOutline), stretched to the box and drawn in the object's
/// colours; at first the square with its diagonals. The records of a metafile are not played.
class XAPI XvcEMF : public XvcBoxObj
{
    X_DECLARE_CLASS(XvcEMF)
public:
    static constexpr int kMaxPixels = 32767;
    static constexpr int kFirstPixels = 64;

    XvcEMF();

    int GetWidth() const; ///< pixels, at least 1; kFirstPixels at first
    int GetHeight() const;
    /// Held within 1 to kMaxPixels. Proportions are the caller's: see GetLock.
    void SetWidth(int pixels) { SetSize(pixels, GetHeight()); }
    void SetHeight(int pixels) { SetSize(GetWidth(), pixels); }
    void SetSize(int width, int height);
    int GetOriginalWidth() const { return m_originalWidth; } ///< pixels, kFirstPixels at first
    int GetOriginalHeight() const { return m_originalHeight; }
    void SetOriginalSize(int width, int height); ///< held as the size, which becomes the same
    int GetLock() const { return m_lock; }       ///< editors keep the original proportions
    void SetLock(int flag)
    {
        m_lock = flag ? 1 : 0;
        Touch();
    }
    /// World length of a pixel, 1 at first; others than positive numbers are ignored. The size in
    /// pixels stays.
    double GetWorldPerPixel() const { return m_worldPerPixel; }
    void SetWorldPerPixel(double length);

    tagXVector3 GetCenter() const;                      ///< 1.7e308 when the box is not set
    void SetCenter(double x, double y, double z = 0.0); ///< keeps the size

    const XSymbolOutline& GetOutline() const { return *m_outline; }
    /// @return 0 with a sentence in `error`; then the outline is as it was
    int SetOutline(const XString& text, XString& error);

    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;

protected:
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;

private:
    void SetBoxAbout(const tagXVector3& center, double width, double height);

    int m_originalWidth = kFirstPixels;
    int m_originalHeight = kFirstPixels;
    int m_lock = 1;
    double m_worldPerPixel = 1.0;
    std::shared_ptr<const XSymbolOutline> m_outline; // never null
};
