#include "foundation/vector/XvcRaster.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XSentinels.h"
#include "foundation/surface/XVertBuffer.h"

#include <QImage>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <mutex>
#include <new>
#include <type_traits>

X_IMPLEMENT_CLASS(XvcRaster, XvcBoxObj)

// One block of samples, with the image that is drawn of it, made once for all that share it.
struct tagXvcRasterData
{
    int xSize = 0;
    int ySize = 0;
    int numBands = 0;
    int dataType = 0;
    std::unique_ptr<unsigned char[]> samples;
    mutable std::once_flag imageOnce;
    mutable QImage image;

    std::size_t GetBandBytes() const;
    bool SetShape(int width, int height, int bands, int type);
    bool Allocate();
};

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr int kMaxBands = 65535;
constexpr int kSampleBytes[] = {0, 1, 1, 2, 2, 4, 4, 4, 8}; // by type code
constexpr int kTypeCount = 9;
constexpr int kUInt8 = 1;

template <class Sample>
Sample ReadAt(const unsigned char* samples, std::size_t index)
{
    Sample value;
    std::memcpy(&value, samples + index * sizeof(Sample), sizeof(Sample));
    return value;
}

// Writes one band as values of 0 to 255 into every fourth byte; a sample that is none makes the
// pixel see-through, in whichever band it stands.
template <class Sample>
void PutBand(const unsigned char* samples, std::size_t row0, int width, int height, QImage& image,
             int channel, int channelCount)
{
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    double low = std::numeric_limits<double>::infinity();
    double high = -low;
    if (std::is_same_v<Sample, std::uint8_t>) {
        low = 0.0;
        high = 255.0;
    } else {
        for (std::size_t i = 0; i < count; ++i) {
            const double value = static_cast<double>(ReadAt<Sample>(samples, row0 + i));
            if (!XfnIsSet(value)) continue;
            low = std::min(low, value);
            high = std::max(high, value);
        }
    }
    // halves, since the span of two doubles may be no double
    const double span = high / 2.0 - low / 2.0;
    for (int row = 0; row < height; ++row) {
        uchar* out = image.scanLine(row);
        const std::size_t first =
            row0 + static_cast<std::size_t>(row) * static_cast<std::size_t>(width);
        for (int x = 0; x < width; ++x, out += 4) {
            const double value =
                static_cast<double>(ReadAt<Sample>(samples, first + static_cast<std::size_t>(x)));
            if (!XfnIsSet(value)) {
                out[3] = 0;
                continue;
            }
            const double share = span > 0.0 ? (value / 2.0 - low / 2.0) / span : 0.5;
            const auto level = static_cast<uchar>(std::lround(share * 255.0));
            for (int i = 0; i < channelCount; ++i)
                out[channel + i] = level;
        }
    }
}

using PutBandOf = void (*)(const unsigned char*, std::size_t, int, int, QImage&, int, int);

PutBandOf ChoosePutBand(int dataType)
{
    constexpr PutBandOf kTable[kTypeCount] = {nullptr,
                                              PutBand<std::uint8_t>,
                                              PutBand<std::int8_t>,
                                              PutBand<std::uint16_t>,
                                              PutBand<std::int16_t>,
                                              PutBand<std::uint32_t>,
                                              PutBand<std::int32_t>,
                                              PutBand<float>,
                                              PutBand<double>};
    return kTable[dataType];
}

QImage MakeImage(const tagXvcRasterData& data)
{
    QImage image(data.xSize, data.ySize, QImage::Format_ARGB32);
    if (image.isNull()) return image; // memory does not hold it
    image.fill(0xFF000000u);
    const PutBandOf putBand = ChoosePutBand(data.dataType);
    const std::size_t bandSamples =
        static_cast<std::size_t>(data.xSize) * static_cast<std::size_t>(data.ySize);
    if (data.numBands < 3) {
        putBand(data.samples.get(), 0, data.xSize, data.ySize, image, 0, 3);
        return image;
    }
    for (int band = 0; band < 3; ++band) { // bytes of a pixel are blue, green, red, as bands are
        putBand(data.samples.get(), static_cast<std::size_t>(band) * bandSamples, data.xSize,
                data.ySize, image, band, 1);
    }
    return image;
}

} // namespace

std::size_t tagXvcRasterData::GetBandBytes() const
{
    return static_cast<std::size_t>(xSize) * static_cast<std::size_t>(ySize) *
           static_cast<std::size_t>(kSampleBytes[dataType]);
}

bool tagXvcRasterData::SetShape(int width, int height, int bands, int type)
{
    if (width < 1 || width > XvcRaster::kMaxSide || height < 1 || height > XvcRaster::kMaxSide) {
        return false;
    }
    if (bands < 1 || bands > kMaxBands || type < kUInt8 || type >= kTypeCount) return false;
    xSize = width;
    ySize = height;
    numBands = bands;
    dataType = type;
    return true;
}

bool tagXvcRasterData::Allocate()
{
    samples.reset(
        new (std::nothrow) unsigned char[GetBandBytes() * static_cast<std::size_t>(numBands)]);
    return samples != nullptr;
}

XvcRaster::XvcRaster() = default;
XvcRaster::XvcRaster(const XvcRaster& other) = default;
XvcRaster& XvcRaster::operator=(const XvcRaster& other) = default;
XvcRaster::~XvcRaster() = default;

int XvcRaster::SetData(const void* samples, int xSize, int ySize, int numBands, int dataType)
{
    Touch();
    auto made = std::make_shared<tagXvcRasterData>();
    if (!samples || !made->SetShape(xSize, ySize, numBands, dataType) || !made->Allocate()) {
        return 0;
    }
    std::memcpy(made->samples.get(), samples,
                made->GetBandBytes() * static_cast<std::size_t>(numBands));
    m_data = std::move(made);
    return 1;
}

void XvcRaster::SetData(const void* samples)
{
    Touch();
    if (!samples) m_data.reset();
}

const void* XvcRaster::GetData() const
{
    return m_data ? m_data->samples.get() : nullptr;
}

int XvcRaster::GetNumBands() const
{
    return m_data ? m_data->numBands : 0;
}

int XvcRaster::GetXSize() const
{
    return m_data ? m_data->xSize : 0;
}

int XvcRaster::GetYSize() const
{
    return m_data ? m_data->ySize : 0;
}

int XvcRaster::GetDataType() const
{
    return m_data ? m_data->dataType : 0;
}

std::size_t XvcRaster::GetDataBytes() const
{
    return m_data ? m_data->GetBandBytes() * static_cast<std::size_t>(m_data->numBands) : 0;
}

void XvcRaster::SetAlpha(double opacity)
{
    Touch();
    if (!std::isnan(opacity)) m_alpha = std::clamp(opacity, 0.0, 1.0);
}

void XvcRaster::CloneWithoutData(const XvcRaster* source)
{
    if (source) *this = *source;
}

void XvcRaster::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp, const tagXDrawAttrs*)
{
    tagXVector3 corners[kCornerCount];
    if (!buffer || !m_data || !GetCorners(warp, corners)) return;
    const tagXvcRasterData& data = *m_data;
    std::call_once(data.imageOnce, [&] { data.image = MakeImage(data); });
    buffer->AddImage(data.image, corners[1], corners[2], corners[0], m_alpha);
}

void XvcRaster::StoreOwn(XArchive& archive) const
{
    archive << kArchiveVersion << m_alpha << static_cast<std::uint8_t>(m_data ? 1 : 0);
    if (!m_data) return;
    archive << m_data->xSize << m_data->numBands << m_data->dataType
            << static_cast<std::uint32_t>(m_data->ySize);
    archive.Write(m_data->samples.get(), GetDataBytes());
}

void XvcRaster::LoadOwn(XArchive& archive)
{
    std::uint8_t version = 0, hasData = 0;
    double alpha = 1.0;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    archive >> alpha >> hasData;
    std::shared_ptr<tagXvcRasterData> made;
    if (hasData) {
        int width = 0, bands = 0, type = 0;
        archive >> width >> bands >> type;
        made = std::make_shared<tagXvcRasterData>();
        if (!made->SetShape(width, 1, bands, type)) {
            throw XFileException(XFileException::kInvalidFile);
        }
        const std::uint32_t rows =
            archive.ReadCount(made->GetBandBytes() * static_cast<std::size_t>(bands));
        if (rows > static_cast<std::uint32_t>(kMaxSide) ||
            !made->SetShape(width, static_cast<int>(rows), bands, type) || !made->Allocate()) {
            throw XFileException(XFileException::kInvalidFile);
        }
        archive.ReadExactly(made->samples.get(),
                            made->GetBandBytes() * static_cast<std::size_t>(bands));
    }
    m_data = std::move(made);
    m_alpha = 1.0;
    SetAlpha(alpha);
}
