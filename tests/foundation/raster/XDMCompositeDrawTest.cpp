#include "foundation/raster/XDMComposite.h"

#include "tests/support/XBandPlaces.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::uint32_t kBelow = 0xFF204060u;

/// What the plain renderer finds: one screen pixel after the other, from its centre back to the
/// sample.
struct tagPlainChannel
{
    int isPresent = 0; // has a band under the pixel that has data
    int level = 0;
};

tagPlainChannel PlainSample(const XDMComposite& composite, int ch, double x, double y)
{
    tagPlainChannel plain;
    auto* band = static_cast<XDMBandMemory*>(composite.GetBand(ch));
    if (!band || composite.GetHideFlag(ch)) return plain;
    composite.ConvWorldToPixelCoord(x, y, ch);
    const double column = std::floor(x + 0.5), row = std::floor(y + 0.5);
    if (!(column >= 0 && row >= 0 && column < band->GetXSize() && row < band->GetYSize()))
        return plain;
    const std::size_t at =
        static_cast<std::size_t>(row) * band->GetXSize() + static_cast<std::size_t>(column);
    const auto* samples = static_cast<const unsigned char*>(band->GetData());
    double re = 0.0, im = 0.0;
    XfnReadComplexSample(samples + at * XfnGetDataTypeSize(band->GetDataType()),
                         band->GetDataType(), re, im);
    const double value = XfnIsComplexType(band->GetDataType()) ? std::hypot(re, im) : re;
    if (std::isnan(value) || value == band->GetNullValue()) return plain;
    plain.isPresent = 1;
    const double low = composite.GetCutMin(ch), high = composite.GetCutMax(ch);
    plain.level = value >= high  ? 255
                  : value <= low ? 0
                                 : static_cast<int>((value - low) * 255.0 / (high - low) + 0.5);
    return plain;
}

std::uint32_t PlainPixel(const XDMComposite& composite, const XBackBuffer& buffer, int px, int py)
{
    double x = px + 0.5, y = py + 0.5;
    buffer.ConvPixelToWorldCoord(x, y);
    std::uint32_t word = 0xFF000000u;
    int isCovered = 0;
    for (int ch = 0; ch < composite.GetNumberOfChannels(); ++ch) {
        const tagPlainChannel plain = PlainSample(composite, ch, x, y);
        isCovered |= plain.isPresent;
        const int level = composite.GetLUT(ch)[plain.level];
        if (composite.GetMode() == 0)
            for (int c = 0; c < 3; ++c)
                word |= std::uint32_t{composite.GetCLT(c)[level]} << (8 * c);
        else
            word |= std::uint32_t{plain.isPresent ? composite.GetCLT(ch)[level]
                                                  : composite.GetDefValue(ch)}
                    << (8 * ch);
    }
    return isCovered ? word : kBelow;
}

/// How many pixels differ from the plain renderer by more than one level in a component.
int CountWrong(const XDMComposite& composite, const XBackBuffer& buffer)
{
    int wrong = 0;
    for (int y = 0; y < buffer.GetHeight(); ++y) {
        for (int x = 0; x < buffer.GetWidth(); ++x) {
            const std::uint32_t wanted = PlainPixel(composite, buffer, x, y);
            const std::uint32_t got = buffer.GetRow(y)[x];
            for (const int shift : {0, 8, 16, 24}) {
                const int off = static_cast<int>(wanted >> shift & 0xFFu) -
                                static_cast<int>(got >> shift & 0xFFu);
                if (std::abs(off) > 1) {
                    ++wrong;
                    break;
                }
            }
        }
    }
    return wrong;
}

struct tagView
{
    const char* name;
    double perPixelX, perPixelY;
    double centreX, centreY; // in raster pixels
    double angle;
};

// 700 x 300 tiles wide enough to cross borders of 256 in both directions; centres off any half
const tagView kViews[] = {
    {"one to one across tile borders", 1.0, 1.0, 255.87, 257.31, 0.0},
    {"one to one from the corner", 1.0, 1.0, 3.23, 2.41, 0.0},
    {"reduced by 1.7", 1.7, 1.7, 300.13, 160.71, 0.0},
    {"enlarged twice", 0.5, 0.5, 256.11, 255.37, 0.0},
    {"enlarged thirteen times, other ratio on y", 0.077, 0.31, 255.93, 256.0713, 0.0},
    {"partly outside on all sides", 9.0, 9.0, 349.27, 149.11, 0.0},
    {"beside the raster", 1.0, 1.0, -400.0, 100.0, 0.0},
    {"turned", 0.9, 0.9, 256.31, 255.13, 33.0},
    {"turned by a right angle", 1.3, 1.3, 256.31, 150.13, 90.0},
    {"upside down", 1.0, 1.0, 256.31, 150.13, 180.0},
};

XBackBuffer MakeView(const tagView& view, const XDMBand& band, int width = 131, int height = 97)
{
    XBackBuffer buffer;
    buffer.Resize(nullptr, width, height);
    double x = view.centreX, y = view.centreY;
    band.ConvPixelToWorldCoord(x, y);
    buffer.SetWorldToCenter(x, y);
    buffer.SetWorldPerPixel(view.perPixelX * band.GetXPixelSize(),
                            view.perPixelY * band.GetYPixelSize());
    buffer.SetRotationAngle(view.angle);
    buffer.GetImage().fill(kBelow);
    return buffer;
}

TEST(XDMCompositeDraw, EveryTypeAndViewAgreesWithThePlainRenderer)
{
    for (int type = kXUInt8; type <= kXDoubleComplex; ++type) {
        const auto band = XfnMakeBand(type, 700, 300, [&](int x, int y) {
            const int value = XfnPattern(x, y);
            if ((type == kXFloat || type == kXDouble) && value % 17 == 0) return kNaN;
            return type == kXInt8 || type == kXInt8Complex ? value / 2.0 : value * 1.0;
        });
        for (const tagView& view : kViews) {
            for (const int isAlpha : {0, 1}) {
                XDMComposite composite;
                composite.SetBand(band.get(), 0);
                composite.SetCutRange(20.0, 230.0, 0);
                composite.SetDrawLevel(0);
                unsigned char red[256];
                for (int i = 0; i < 256; ++i)
                    red[i] = static_cast<unsigned char>(255 - i);
                composite.SetCLT(red, 2);
                if (isAlpha) composite.SetAlpha(255);
                XBackBuffer buffer = MakeView(view, *band);
                ASSERT_TRUE(XfnDrawAll(composite, buffer)) << view.name;
                EXPECT_EQ(CountWrong(composite, buffer), 0) << "type " << type << ", " << view.name;
            }
        }
    }
}

TEST(XDMCompositeDraw, EveryPlaceOnTheGroundAgreesWithThePlainRenderer)
{
    for (const tagPlace& place : kPlaces) {
        std::unique_ptr<XDMBandMemory> bands[3];
        for (int ch = 0; ch < 3; ++ch) {
            bands[ch] = XfnMakeBand(kXUInt8, 700, 300,
                                    [ch](int x, int y) { return XfnPattern(x + 50 * ch, y + ch); });
            place.place(*bands[ch]);
        }
        for (const tagView& view : kViews) {
            XDMComposite composite(1);
            for (int ch = 0; ch < 3; ++ch)
                composite.SetBand(bands[ch].get(), ch);
            composite.SetDrawLevel(0);
            XBackBuffer buffer = MakeView(view, *bands[0]);
            ASSERT_TRUE(XfnDrawAll(composite, buffer)) << view.name;
            // between exact positions the bent mapping may be a sixty-fourth of a pixel off, and a
            // pixel whose centre lies so near a border shows the neighbour
            const bool isBent = !bands[0]->GetWorldToPixel().IsAffine();
            const int allowed = isBent ? buffer.GetWidth() * buffer.GetHeight() / 25 : 0;
            EXPECT_LE(CountWrong(composite, buffer), allowed) << place.name << ", " << view.name;
        }
    }
}

TEST(XDMCompositeDraw, ChannelsOfDifferentTypesSizesAndPlacesMeet)
{
    auto blue = XfnMakeBand(kXUInt8, 700, 300, XfnPattern);
    auto green = XfnMakeBand(kXUInt16, 350, 150, XfnPattern);
    auto red = XfnMakeBand(kXFloat, 120, 400, XfnPattern);
    XBandGeometry coarse, shifted;
    coarse.SetNorthUp(0.5, -0.5, 2.0, 2.0);
    shifted.SetNorthUp(130.25, 20.25, 1.0, 1.0);
    green->SetGeometry(coarse);
    red->SetGeometry(shifted);
    for (const tagView& view : kViews) {
        XDMComposite composite(1);
        composite.SetBand(blue.get(), 0);
        composite.SetBand(green.get(), 1);
        composite.SetBand(red.get(), 2);
        for (int ch = 0; ch < 3; ++ch) {
            composite.SetCutRange(0.0, 255.0, ch);
            composite.SetDefValue(static_cast<unsigned char>(40 * ch + 11), ch);
        }
        composite.SetDrawLevel(0);
        XBackBuffer buffer = MakeView(view, *blue);
        ASSERT_TRUE(XfnDrawAll(composite, buffer));
        EXPECT_EQ(CountWrong(composite, buffer), 0) << view.name;
    }
}

TEST(XDMCompositeDraw, OneToOneHasNoSeamAtTileBordersForAnyPan)
{
    const auto band = XfnMakeBand(kXUInt8, 600, 530, [](int x, int y) { return (x + y) % 250; });
    XBandGeometry geometry;
    geometry.SetNorthUp(127.123456789, 37.987654321, 1.0 / 3600.0, 1.0 / 3600.0);
    band->SetGeometry(geometry);
    for (const double part : {0.0, 0.25, 0.5, 0.75, 1e-9, 1.0 - 1e-9}) {
        XDMComposite composite;
        composite.SetBand(band.get(), 0);
        XBackBuffer buffer;
        buffer.Resize(nullptr, 400, 401);
        double x = 300.0 + part, y = 260.0 + part;
        band->ConvPixelToWorldCoord(x, y);
        buffer.SetWorldToCenter(x, y);
        buffer.SetWorldPerPixel(band->GetXPixelSize(), band->GetYPixelSize());
        ASSERT_TRUE(XfnDrawAll(composite, buffer));
        for (int row = 0; row < 401; ++row) {
            for (int column = 0; column < 400; ++column) {
                const int step = (buffer.GetRow(row)[column] & 0xFF);
                const int first = (buffer.GetRow(0)[0] & 0xFF);
                ASSERT_EQ(step, (first + row + column) % 250)
                    << part << " " << column << "," << row;
            }
        }
    }
}

} // namespace
