#include "dialogs/XThumbnail.h"

#include "foundation/raster/XDMBandComplex.h"
#include "foundation/raster/XDMBandGDAL.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XDefaultDisplay.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/surface/XBackBuffer.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace {

constexpr int kLeastSide = 8; // of a raster that is nearly a line

bool IsRaised(const std::atomic<int>* abort)
{
    return abort && abort->load(std::memory_order_relaxed) != 0;
}

/// The first bands of a file in a composite; complex ones as their magnitudes, which it owns.
class XFirstBands
{
public:
    XFirstBands(XRSFile& file, int mode, const int (&rgb)[3]) : composite(mode)
    {
        for (int ch = 0; ch < composite.GetNumberOfChannels(); ++ch) {
            XDMBand* band = file.GetBandAt(rgb[mode == 0 ? 0 : 2 - ch]);
            if (!band) continue;
            m_read.push_back(band);
            if (XfnIsComplexType(band->GetDataType())) {
                auto magnitude = std::make_unique<XDMBandComplex>();
                if (!magnitude->Create(band)) continue;
                band = magnitude.get();
                m_magnitudes.push_back(std::move(magnitude));
            }
            composite.SetBand(band, ch);
        }
    }

    /// Bytes that decoding a level of all of them takes. Other readers than GDAL have their levels
    /// at hand.
    std::int64_t CalcBytes(int level) const
    {
        std::int64_t sum = 0;
        for (const XDMBand* band : m_read)
            if (const auto* foreign = dynamic_cast<const XDMBandGDAL*>(band))
                sum += foreign->CalcLevelBytes(std::min(level, band->GetLevel()));
        return sum;
    }

private:
    std::vector<std::unique_ptr<XDMBandComplex>> m_magnitudes;

public:
    XDMComposite composite; // before the magnitudes that it shows

private:
    std::vector<const XDMBand*> m_read;
};

/// The extent with the halves of the outer pixels, and a surface of its shape.
int SetUpSurface(const XRSFile& file, const XDMComposite& composite, int maxSide,
                 XBackBuffer& buffer, double (&box)[4])
{
    composite.GetBoundRect(box[0], box[2], box[1], box[3]);
    const double halfX = file.GetXPixelSize() / 2.0, halfY = file.GetYPixelSize() / 2.0;
    if (box[0] > box[2]) std::swap(box[0], box[2]);
    if (box[1] > box[3]) std::swap(box[1], box[3]);
    box[0] -= halfX;
    box[2] += halfX;
    box[1] -= halfY;
    box[3] += halfY;
    const double width = box[2] - box[0], height = box[3] - box[1];
    if (!(width > 0.0) || !(height > 0.0) || !std::isfinite(width) || !std::isfinite(height))
        return 0;
    const double scale = maxSide / std::max(width, height);
    const auto side = [&](double length) {
        return std::clamp(static_cast<int>(std::lround(length * scale)),
                          std::min(kLeastSide, maxSide), maxSide);
    };
    if (!buffer.Resize(nullptr, side(width), side(height))) return 0;
    return buffer.ZoomFit(box[0], box[1], box[2], box[3]);
}

} // namespace

int XfnDrawThumbnail(XRSFile& file, int maxSide, std::int64_t budgetBytes, std::atomic<int>* abort,
                     QImage& picture, XString& message)
{
    picture = QImage();
    message.Empty();
    int rgb[3];
    const int mode = XfnDefaultBands(&file, rgb);
    if (mode < 0) {
        message = "No preview: the file holds no raster band.";
        return 0;
    }
    XFirstBands first(file, mode, rgb);
    XBackBuffer buffer;
    double box[4] = {};
    if (maxSide < 1 || !SetUpSurface(file, first.composite, maxSide, buffer, box)) {
        message = "No preview: the raster covers no area.";
        return 0;
    }
    const int level =
        first.composite.GetHighestLevelForTarget(&buffer, box[0], box[1], box[2], box[3]);
    if (first.CalcBytes(level) > budgetBytes) {
        message = XfnIsValidXDMLevelData(&file)
                      ? "No quick preview: the reduced levels of the file are large."
                      : "No quick preview: the file is large and has no reduced levels.";
        return 0;
    }
    first.composite.SetDrawLevel(level);
    // of a damaged file a sample is taken, and what can be read is drawn
    if (!XfnDefaultStretch(&first.composite, level, abort) && !IsRaised(abort))
        XfnDefaultStretch(&first.composite, abort);
    const int isWhole =
        first.composite.Draw(&buffer, box[0], box[1], box[2], box[3], 1, nullptr, abort);
    if (IsRaised(abort)) return 0;
    picture = buffer.GetImage().copy();
    if (!isWhole) message = "A part of the file cannot be read.";
    return 1;
}
