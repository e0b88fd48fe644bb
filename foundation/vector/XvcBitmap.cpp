#include "foundation/vector/XvcBitmap.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFile.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XPath.h"
#include "foundation/platform/XQtText.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XBmpReader.h"
#include "foundation/vector/XDibImage.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XvcDib.h"

#include <QImage>
#include <QImageReader>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <mutex>
#include <new>
#include <vector>

X_IMPLEMENT_CLASS(XvcBitmap, XvcBoxObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr std::int64_t kFreePixels = 1 << 20;
constexpr std::int64_t kPixelsPerByte = 1024;

// The picture with the image that is drawn of it, made once for all objects that share it.
struct tagSharedDib : tagXvcDib
{
    mutable std::once_flag imageOnce;
    mutable QImage image;
};

// Raises the limit that the reader has for the whole process while one picture is read, whose
// size was checked.
class AllocationLimit
{
public:
    explicit AllocationLimit(std::int64_t bytes) : m_before(QImageReader::allocationLimit())
    {
        const auto megabytes =
            static_cast<int>(std::min<std::int64_t>(bytes / (1 << 20) + 1, 1 << 30));
        if (m_before != 0 && m_before < megabytes) QImageReader::setAllocationLimit(megabytes);
    }
    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;
    ~AllocationLimit() { QImageReader::setAllocationLimit(m_before); }

private:
    int m_before;
};

XString GetSentence(const XString& path, const XString& reason)
{
    return "The picture " + XfnGetFileName(path) + " cannot be read. " + reason;
}

int ReadWhole(const XString& path, std::vector<unsigned char>& bytes, XString& reason)
{
    try {
        XFile file(path, XFile::kModeRead);
        bytes.resize(static_cast<std::size_t>(std::max<std::int64_t>(file.GetLength(), 0)));
        bytes.resize(file.Read(bytes.data(), bytes.size()));
        return 1;
    } catch (const XFileException& exception) {
        reason = exception.GetErrorMessage();
    } catch (const std::exception&) {
        reason = "It is larger than memory.";
    }
    return 0;
}

// One step of the polygon clipping of I. E. Sutherland and G. W. Hodgman, Communications of the ACM
// 17(1), 1974: keeps what lies on the inner side of one side of the unit square.
template <class Depth>
void ClipToSide(std::vector<tagXVector3>& ring, const Depth& getDepth)
{
    std::vector<tagXVector3> kept;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const tagXVector3& a = ring[i];
        const tagXVector3& b = ring[(i + 1) % ring.size()];
        const double depthA = getDepth(a);
        const double depthB = getDepth(b);
        if (depthA >= 0.0) kept.push_back(a);
        if ((depthA >= 0.0) != (depthB >= 0.0)) {
            const double share = depthA / (depthA - depthB);
            kept.push_back({a.x + (b.x - a.x) * share, a.y + (b.y - a.y) * share});
        }
    }
    ring.swap(kept);
}

} // namespace

XvcBitmap::XvcBitmap() = default;
XvcBitmap::~XvcBitmap() = default;

XvcBitmap::XvcBitmap(const XvcBitmap& other) : XvcBoxObj()
{
    *this = other;
}

XvcBitmap& XvcBitmap::operator=(const XvcBitmap& other)
{
    if (this == &other) return *this;
    XvcBoxObj::operator=(other);
    m_picture = other.m_picture;
    m_keyedImage = other.m_keyedImage ? std::make_unique<QImage>(*other.m_keyedImage) : nullptr;
    m_fileName = other.m_fileName;
    m_alpha = other.m_alpha;
    m_borderFlag = other.m_borderFlag;
    m_transparent = other.m_transparent;
    m_hasIndexMap = other.m_hasIndexMap;
    std::copy(std::begin(other.m_indexMap), std::end(other.m_indexMap), m_indexMap);
    std::copy(std::begin(other.m_mapBox), std::end(other.m_mapBox), m_mapBox);
    return *this;
}

void XvcBitmap::CloneWithoutBits(const XvcBitmap* source)
{
    if (source) *this = *source;
}

const tagBITMAPINFO* XvcBitmap::GetBitmapInfo() const
{
    return m_picture ? &m_picture->info : nullptr;
}

const unsigned char* XvcBitmap::GetBits() const
{
    return m_picture ? m_picture->bits.get() : nullptr;
}

void XvcBitmap::TakePicture(std::shared_ptr<const tagXvcDib> picture, const XString& fileName)
{
    Touch();
    m_picture = std::move(picture);
    m_keyedImage.reset();
    m_fileName = fileName;
}

int XvcBitmap::SetBitmapInfo(const tagBITMAPINFO* info)
{
    Touch();
    if (!info) {
        TakePicture(nullptr, XString());
        return 1;
    }
    auto made = std::make_shared<tagSharedDib>();
    XString reason;
    if (!made->SetInfo(*info, reason)) return 0;
    TakePicture(std::move(made), XString());
    return 1;
}

int XvcBitmap::SetBits(const void* bits)
{
    Touch();
    if (!m_picture) return 0;
    auto made = std::make_shared<tagSharedDib>();
    made->info = m_picture->info;
    if (bits) {
        if (!made->AllocateBits()) return 0;
        std::memcpy(made->bits.get(), bits, made->GetBitsBytes());
    }
    TakePicture(std::move(made), XString());
    return 1;
}

int XvcBitmap::SetDIB(const tagBITMAPINFO* info, const void* bits)
{
    Touch();
    XvcBitmap made;
    if (!info || !bits || !made.SetBitmapInfo(info) || !made.SetBits(bits)) return 0;
    TakePicture(std::move(made.m_picture), XString());
    return 1;
}

int XvcBitmap::ReadBMP(const XString& path, XString& error)
{
    std::vector<unsigned char> bytes;
    auto made = std::make_shared<tagSharedDib>();
    XString reason;
    if (!ReadWhole(path, bytes, reason) || !XfnReadBmp(bytes.data(), bytes.size(), *made, reason)) {
        error = GetSentence(path, reason);
        return 0;
    }
    TakePicture(std::move(made), path);
    return 1;
}

int XvcBitmap::ReadJPG(const XString& path, XString& error)
{
    XString reason;
    tagXFileStatus status;
    if (!XFile::GetStatus(path, status) || status.isDirectory) {
        error = GetSentence(path, "There is no such file.");
        return 0;
    }
    QImageReader reader(XfnToQString(path), "jpg");
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    const std::int64_t pixels = std::int64_t(size.width()) * size.height();
    if (!size.isValid() || pixels <= 0) {
        error = GetSentence(path, "It is no JPEG file.");
        return 0;
    }
    if (size.width() > tagXvcDib::kMaxSide || size.height() > tagXvcDib::kMaxSide ||
        pixels > kFreePixels + kPixelsPerByte * status.size) {
        error = GetSentence(path, "It claims more pixels than its bytes can hold.");
        return 0;
    }
    const AllocationLimit limit(4 * pixels);
    QImage image;
    auto made = std::make_shared<tagSharedDib>();
    if (!reader.read(&image)) {
        error = GetSentence(path, "Its pixels are damaged or do not fit into memory.");
        return 0;
    }
    if (!XfnFillDib(image, *made, reason)) {
        error = GetSentence(path, reason);
        return 0;
    }
    TakePicture(std::move(made), path);
    return 1;
}

int XvcBitmap::GetWidth() const
{
    return m_picture ? m_picture->GetWidth() : 0;
}

int XvcBitmap::GetHeight() const
{
    return m_picture ? m_picture->GetHeight() : 0;
}

int XvcBitmap::GetColorDepth() const
{
    return m_picture ? m_picture->info.bmiHeader.biBitCount : 0;
}

void XvcBitmap::SetTransparent(int flag)
{
    Touch();
    m_transparent = flag ? 1 : 0;
    m_keyedImage.reset();
}

void XvcBitmap::SetAlpha(double opacity)
{
    Touch();
    if (!std::isnan(opacity)) m_alpha = std::clamp(opacity, 0.0, 1.0);
}

void XvcBitmap::SetBackColor(tagXColor color)
{
    if (color != GetBackColor()) m_keyedImage.reset();
    XvcBoxObj::SetBackColor(color);
}

void XvcBitmap::SetInexMap(const tagXVector3* corners)
{
    Touch();
    m_hasIndexMap = corners ? 1 : 0;
    for (int i = 0; i < kIndexMapCorners; ++i) {
        m_indexMap[i] = corners ? corners[i] : tagXVector3();
    }
}

void XvcBitmap::SetMapBox(double minX, double minY, double maxX, double maxY)
{
    Touch();
    const double box[4] = {minX, minY, maxX, maxY};
    std::copy(std::begin(box), std::end(box), m_mapBox);
}

void XvcBitmap::GetMapBox(double& minX, double& minY, double& maxX, double& maxY) const
{
    minX = m_mapBox[0];
    minY = m_mapBox[1];
    maxX = m_mapBox[2];
    maxY = m_mapBox[3];
}

const QImage& XvcBitmap::GetImage(tagXColor seeThrough)
{
    const auto& shared = static_cast<const tagSharedDib&>(*m_picture);
    std::call_once(shared.imageOnce, [&] { shared.image = XfnMakeDibImage(shared); });
    if (!m_transparent) return shared.image;
    if (!m_keyedImage) {
        m_keyedImage = std::make_unique<QImage>(XfnMakeSeeThrough(shared.image, seeThrough));
    }
    return *m_keyedImage;
}

void XvcBitmap::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                   const tagXDrawAttrs* attrs)
{
    tagXVector3 corners[kCornerCount];
    if (!buffer || !GetCorners(warp, corners)) return;
    const auto& [lowerLeft, upperLeft, upperRight, lowerRight] = corners;
    if (GetBits() && m_picture->IsBottomUp()) {
        buffer->AddImage(GetImage(GetBackColor()), lowerLeft, lowerRight, upperLeft, m_alpha);
    } else if (GetBits()) {
        buffer->AddImage(GetImage(GetBackColor()), upperLeft, upperRight, lowerLeft, m_alpha);
    }
    const XVectorPaint paint(*this, attrs);
    if (m_borderFlag) {
        buffer->AddPolygon(corners, kCornerCount, paint.GetLine(), nullptr);
    }
    if (m_hasIndexMap) AddIndexMap(buffer, corners, paint);
}

void XvcBitmap::AddIndexMap(XVertBuffer* buffer, const tagXVector3 (&corners)[kCornerCount],
                            const XVectorPaint& paint) const
{
    const double width = m_mapBox[2] - m_mapBox[0];
    const double height = m_mapBox[3] - m_mapBox[1];
    if (!(width > 0.0) || !(height > 0.0) || !XfnIsSet(width) || !XfnIsSet(height)) return;
    std::vector<tagXVector3> ring;
    for (const tagXVector3& corner : m_indexMap) {
        ring.push_back({(corner.x - m_mapBox[0]) / width, (corner.y - m_mapBox[1]) / height});
        if (!XfnIsUsable(ring.back())) return;
    }
    ClipToSide(ring, [](const tagXVector3& v) { return v.x; });
    ClipToSide(ring, [](const tagXVector3& v) { return 1.0 - v.x; });
    ClipToSide(ring, [](const tagXVector3& v) { return v.y; });
    ClipToSide(ring, [](const tagXVector3& v) { return 1.0 - v.y; });
    const tagXVector3 across = corners[3] - corners[0];
    const tagXVector3 up = corners[1] - corners[0];
    for (tagXVector3& vertex : ring) {
        vertex = corners[0] + across * vertex.x + up * vertex.y;
    }
    buffer->AddPolygon(ring.data(), ring.size(), paint.GetLine(), nullptr);
}

void XvcBitmap::StoreOwn(XArchive& archive) const
{
    archive << kArchiveVersion << m_fileName << m_alpha << m_borderFlag << m_transparent
            << m_hasIndexMap;
    for (const tagXVector3& corner : m_indexMap)
        archive << corner.x << corner.y << corner.z;
    for (const double side : m_mapBox)
        archive << side;
    archive << static_cast<std::uint8_t>(m_picture ? 1 : 0);
    if (!m_picture) return;
    const tagBITMAPINFOHEADER& header = m_picture->info.bmiHeader;
    archive << header.biWidth << header.biHeight << header.biBitCount << header.biXPelsPerMeter
            << header.biYPelsPerMeter << header.biClrUsed
            << static_cast<std::uint8_t>(m_picture->hasAlpha ? 1 : 0);
    archive.Write(m_picture->info.bmiColors,
                  static_cast<std::size_t>(m_picture->GetColourCount()) * sizeof(tagRGBQUAD));
    const bool hasBits = m_picture->bits != nullptr;
    archive << static_cast<std::uint32_t>(hasBits ? m_picture->GetHeight() : 0);
    if (hasBits) archive.Write(m_picture->bits.get(), m_picture->GetBitsBytes());
}

void XvcBitmap::LoadOwn(XArchive& archive)
{
    std::uint8_t version = 0;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    XvcBitmap loaded;
    double alpha = 1.0;
    int borderFlag = 0, transparent = 0;
    archive >> loaded.m_fileName >> alpha >> borderFlag >> transparent >> loaded.m_hasIndexMap;
    for (tagXVector3& corner : loaded.m_indexMap)
        archive >> corner.x >> corner.y >> corner.z;
    for (double& side : loaded.m_mapBox)
        archive >> side;
    std::uint8_t hasPicture = 0;
    archive >> hasPicture;
    if (hasPicture) {
        auto made = std::make_shared<tagSharedDib>();
        tagBITMAPINFO info{};
        tagBITMAPINFOHEADER& header = info.bmiHeader;
        std::uint8_t hasAlpha = 0;
        archive >> header.biWidth >> header.biHeight >> header.biBitCount >>
            header.biXPelsPerMeter >> header.biYPelsPerMeter >> header.biClrUsed >> hasAlpha;
        if (header.biBitCount <= 8 && header.biClrUsed <= 256) {
            archive.ReadExactly(info.bmiColors, header.biClrUsed * sizeof(tagRGBQUAD));
        }
        XString reason;
        if (!made->SetInfo(info, reason)) throw XFileException(XFileException::kInvalidFile);
        made->hasAlpha = hasAlpha != 0 && header.biBitCount == 32;
        const std::uint32_t rows = archive.ReadCount(made->GetRowBytes());
        if (rows != 0) {
            if (rows != static_cast<std::uint32_t>(made->GetHeight()) || !made->AllocateBits()) {
                throw XFileException(XFileException::kInvalidFile);
            }
            archive.ReadExactly(made->bits.get(), made->GetBitsBytes());
        }
        loaded.m_picture = std::move(made);
    }
    m_picture = std::move(loaded.m_picture);
    m_keyedImage.reset();
    m_fileName = loaded.m_fileName;
    m_alpha = 1.0;
    SetAlpha(alpha);
    m_borderFlag = borderFlag ? 1 : 0;
    m_transparent = transparent ? 1 : 0;
    m_hasIndexMap = loaded.m_hasIndexMap ? 1 : 0;
    std::copy(std::begin(loaded.m_indexMap), std::end(loaded.m_indexMap), m_indexMap);
    std::copy(std::begin(loaded.m_mapBox), std::end(loaded.m_mapBox), m_mapBox);
}
