#include "foundation/vector/XBmpReader.h"
#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcDib.h"
#include "foundation/vector/XvcRaster.h"
#include "tests/support/XVectorSamples.h"

#include <QImage>
#include <QTemporaryDir>

#include <climits>
#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>

namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();
const std::vector<std::pair<std::uint32_t, char>> kKey = {
    {0xFF0000, 'R'}, {0x00FF00, 'G'}, {0x0000FF, 'B'}, {0xFFFFFF, 'W'}, {0x808080, 'h'}};

// Bytes from words: "BM" as it stands, 12 a byte, 12s two bytes, 12l four, x0A1B bytes in hex.
XSampleBytes Bytes(const std::string& words)
{
    XSampleBytes bytes;
    const auto put = [&](long long value, int size) {
        for (int i = 0; i < size; ++i)
            bytes.push_back(static_cast<unsigned char>(value >> 8 * i));
    };
    for (std::size_t at = 0; at < words.size();) {
        const std::size_t end = std::min(words.find(' ', at), words.size());
        const std::string word = words.substr(at, end - at);
        at = end + 1;
        if (word.empty()) continue;
        if (word == "BM") {
            bytes.insert(bytes.end(), {'B', 'M'});
        } else if (word[0] == 'x') {
            for (std::size_t i = 1; i + 1 < word.size(); i += 2)
                put(std::stoi(word.substr(i, 2), nullptr, 16), 1);
        } else {
            put(std::stoll(word), word.back() == 'l' ? 4 : word.back() == 's' ? 2 : 1);
        }
    }
    return bytes;
}

// A file with a header of 40 bytes; `tail` is what stands between that and the pixels.
XSampleBytes Bmp(int width, int height, int bits, int compression, const std::string& tail,
                 const std::string& pixels, int colours = 0)
{
    const auto number = [](int value) { return std::to_string(value) + "l "; };
    const int offset = 54 + static_cast<int>(Bytes(tail).size());
    return Bytes("BM 0l 0l " + number(offset) + "40l " + number(width) + number(height) + "1s " +
                 std::to_string(bits) + "s " + number(compression) + "0l 2835l 2835l " +
                 number(colours) + "0l " + tail + " " + pixels);
}

const char* const kPalette = "x00000000 x0000FF00 x00FF0000 xFF000000 xFFFFFF00"; // K R G B W

struct BmpCase
{
    const char* name;
    XSampleBytes file;
    const char* picture; // three pixels wide, two high; null: refused
    int depth;
};

std::vector<BmpCase> BmpCases()
{
    const std::string core = "BM 0l 0l 41l 12l 3s 2s 1s 8s x000000 x0000FF x00FF00 xFF0000 xFFFFFF";
    const std::string v4 = "BM 0l 0l 122l 108l 3l 2l 1s 32s 3l 0l 0l 0l 0l 0l x0000FF00 x00FF0000 "
                           "xFF000000 x000000FF x" +
                           std::string(104, '0');
    return {
        {"24 bits, the lower row first",
         Bmp(3, 2, 24, 0, "", "x0000FF00FF00FF0000000000 xFFFFFF000000FFFFFF000000"), "WKW\nRGB",
         24},
        {"the upper row first",
         Bmp(3, -2, 24, 0, "", "x0000FF00FF00FF0000000000 xFFFFFF000000FFFFFF000000"), "RGB\nWKW",
         24},
        {"no padding behind the last row",
         Bmp(3, 2, 24, 0, "", "x0000FF00FF00FF0000000000 xFFFFFF000000FFFFFF"), "WKW\nRGB", 24},
        {"a row too few", Bmp(3, 2, 24, 0, "", "x0000FF00FF00FF0000000000"), nullptr, 0},
        {"8 bits", Bmp(3, 2, 8, 0, kPalette, "x01020300 x04000400", 5), "WKW\nRGB", 8},
        {"an index beyond the palette", Bmp(3, 2, 8, 0, kPalette, "x01FF0300 x04000400", 5),
         "WKW\nRKB", 8},
        {"4 bits", Bmp(3, 2, 4, 0, kPalette, "x12300000 x40400000", 5), "WKW\nRGB", 4},
        {"1 bit", Bmp(3, 2, 1, 0, "x0000FF00 xFFFFFF00", "xA0000000 x40000000"), "RWR\nWRW", 1},
        {"16 bits", Bmp(3, 2, 16, 0, "", "x007CE0031F000000 xFF7F0000FF7F0000"), "WKW\nRGB", 16},
        {"32 bits, the fourth byte free",
         Bmp(3, 2, 32, 0, "", "x0000FF0000FF0000FF000000 xFFFFFF0000000000FFFFFF00"), "WKW\nRGB",
         32},
        {"16 bits by masks",
         Bmp(3, 2, 16, 3, "63488l 2016l 31l", "x00F8E0071F000000 xFFFF0000FFFF0000"), "WKW\nRGB",
         32},
        {"masks with a gap",
         Bmp(3, 2, 16, 3, "63489l 2016l 31l", "x00F8E0071F000000 xFFFF0000FFFF0000"), nullptr, 0},
        {"opacity by a mask", Bytes(v4 + " x0000FFFF00FF0000FF0000FF xFFFFFFFF00000000FFFFFFFF"),
         "WKW\nRKB", 32},
        {"run-length 8",
         Bmp(3, 2, 8, 1, kPalette, "x0101 x0102 x0103 x0000 x0003040004 x00 x0000 x0001", 5),
         "WKW\nRGB", 8},
        {"run-length 8 with a skip", Bmp(3, 2, 8, 1, kPalette, "x0104 x00020001 x0203 x0001", 5),
         "KBB\nWKK", 8},
        {"run-length 4", Bmp(3, 2, 4, 2, kPalette, "x0003 x1230 x0000 x0340 x0001", 5), "WKW\nRGB",
         4},
        {"a run that leaves the row", Bmp(3, 2, 8, 1, kPalette, "xFF01 xFF02 x0000 xFF04 x0001", 5),
         "WWW\nRRR", 8},
        {"a run that ends early", Bmp(3, 2, 8, 1, kPalette, "x0003 x01", 5), nullptr, 0},
        {"a small code for a large picture", Bmp(60000, 60000, 8, 1, kPalette, "x0001", 5), nullptr,
         0},
        {"the core header", Bytes(core + " x01020300 x04000400"), "WKW\nRGB", 8},
        {"no width", Bmp(0, 2, 24, 0, "", "x00"), nullptr, 0},
        {"the least height", Bmp(3, INT_MIN, 24, 0, "", "x00"), nullptr, 0},
        {"2 bits", Bmp(3, 2, 2, 0, kPalette, "x00000000 x00000000"), nullptr, 0},
        {"another compression", Bmp(3, 2, 24, 4, "", "x00"), nullptr, 0},
        {"more colours than bytes", Bytes("BM 0l 0l 54l 40l 3l 2l 1s 8s 0l 0l 0l 0l 256l 0l x00"),
         nullptr, 0},
        {"pixels within the header",
         Bytes("BM 0l 0l 20l 40l 3l 2l 1s 24s 0l 0l 0l 0l 0l 0l x" + std::string(60, '0')), nullptr,
         0},
    };
}

class VectorPictures : public testing::Test
{
protected:
    XString Write(const XSampleBytes& bytes, const char* name)
    {
        const XString path((m_folder.filePath(name)).toUtf8().constData());
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        return path;
    }

    QTemporaryDir m_folder;
};

TEST_F(VectorPictures, BmpFiles)
{
    for (const BmpCase& row : BmpCases()) {
        SCOPED_TRACE(row.name);
        XvcBitmap bitmap;
        bitmap.SetBound(0, 2, 3, 0);
        XString error;
        const XString path = Write(row.file, "it.bmp");
        ASSERT_EQ(bitmap.ReadBMP(path, error) != 0, row.picture != nullptr) << error.GetString();
        EXPECT_EQ(error.Find("it.bmp") > 0, row.picture == nullptr);
        if (!row.picture) continue;
        EXPECT_EQ(DrawAsText(bitmap, 3, 2, kKey), row.picture);
        EXPECT_EQ(bitmap.GetColorDepth(), row.depth);
        EXPECT_EQ(bitmap.GetFileName(), path);

        tagXvcDib dib;
        for (std::size_t cut = 0; cut + 4 < row.file.size(); ++cut) { // none may be read beyond
            const XSampleBytes part(row.file.begin(), row.file.begin() + static_cast<long>(cut));
            XfnReadBmp(part.data(), part.size(), dib, error);
        }
        for (std::size_t i = 0; i < row.file.size(); ++i) {
            XSampleBytes hostile = row.file;
            hostile[i] ^= 0xFF;
            XfnReadBmp(hostile.data(), hostile.size(), dib, error);
        }
    }
}

TEST_F(VectorPictures, ARefusedFileLeavesThePictureOfBefore)
{
    XvcBitmap bitmap;
    XString error;
    const XString good = Write(BmpCases()[0].file, "good.bmp");
    ASSERT_TRUE(bitmap.ReadBMP(good, error));
    const unsigned char* const bits = bitmap.GetBits();
    XSampleBytes huge = Bytes("xFFD8FFC0 x0011 x08 xFFFFFFFF x03 x011100 x021100 x031100 xFFD9");
    for (const XString& path : {Write({}, "empty.bmp"), Write(Bytes("BM"), "two.bmp"),
                                Write(huge, "huge.jpg"), XString("/nowhere/none.bmp")}) {
        SCOPED_TRACE(path.GetString());
        error.Empty();
        EXPECT_FALSE(bitmap.ReadBMP(path, error));
        EXPECT_FALSE(error.IsEmpty());
        error.Empty();
        EXPECT_FALSE(bitmap.ReadJPG(path, error));
        EXPECT_FALSE(error.IsEmpty());
        EXPECT_EQ(bitmap.GetBits(), bits);
        EXPECT_EQ(bitmap.GetFileName(), good);
    }
}

TEST_F(VectorPictures, JpegFiles)
{
    QImage colour(24, 16, QImage::Format_RGB32);
    colour.fill(Qt::red);
    QImage gray(16, 24, QImage::Format_Grayscale8);
    gray.fill(0x80);
    const struct
    {
        const QImage& image;
        int depth;
        char letter;
    } cases[] = {{colour, 24, 'R'}, {gray, 8, 'h'}};
    for (const auto& row : cases) {
        const QString name = m_folder.filePath("it.jpg");
        ASSERT_TRUE(row.image.save(name, "jpg", 100));
        XvcBitmap bitmap;
        XString error;
        ASSERT_TRUE(bitmap.ReadJPG(name.toUtf8().constData(), error)) << error.GetString();
        EXPECT_EQ(bitmap.GetColorDepth(), row.depth);
        EXPECT_EQ(bitmap.GetWidth(), row.image.width());
        EXPECT_EQ(bitmap.GetHeight(), row.image.height());
        bitmap.SetBound(0, 1, 1, 0);
        const std::vector<std::pair<std::uint32_t, char>> key = {
            {0xFE0000, 'R'}, {0xFF0000, 'R'}, {0x808080, 'h'}};
        EXPECT_EQ(DrawAsText(bitmap, 1, 1, key), std::string(1, row.letter));
    }
}

TEST_F(VectorPictures, PixelsAreShared)
{
    tagBITMAPINFO info{};
    info.bmiHeader.biSize = 44; // hosts write it so
    info.bmiHeader.biWidth = 4;
    info.bmiHeader.biHeight = 4;
    info.bmiHeader.biBitCount = 24;
    const std::vector<unsigned char> white(48, 0xFF);
    auto first = std::make_unique<XvcBitmap>();
    EXPECT_FALSE(first->SetBits(white.data())); // no header tells how many
    ASSERT_TRUE(first->SetDIB(&info, white.data()));
    first->SetName("first");
    XvcBitmap clone;
    clone.CloneWithoutBits(*first);
    EXPECT_EQ(clone.GetBits(), first->GetBits());
    EXPECT_EQ(clone.GetBitmapInfo(), first->GetBitmapInfo());
    EXPECT_EQ(clone.GetName(), "first");
    first.reset();
    EXPECT_EQ(std::memcmp(clone.GetBits(), white.data(), 48), 0);
    EXPECT_LT(sizeof(XvcBitmap), 1024u); // a thousand clones of any picture take below 1 MiB
    info.bmiHeader.biBitCount = 3;
    EXPECT_FALSE(clone.SetDIB(&info, white.data()));
    EXPECT_NE(clone.GetBits(), nullptr);
    EXPECT_TRUE(clone.SetBitmapInfo(nullptr));
    EXPECT_EQ(clone.GetWidth(), 0);

    const unsigned char samples[] = {1, 2, 3, 4, 5, 6};
    XvcRaster raster;
    ASSERT_TRUE(raster.SetData(samples, 3, 2, 1, 1));
    XvcRaster other;
    other.CloneWithoutData(&raster);
    EXPECT_EQ(other.GetData(), raster.GetData());
    raster.SetData(nullptr);
    EXPECT_EQ(raster.GetXSize(), 0);
    EXPECT_EQ(std::memcmp(other.GetData(), samples, sizeof samples), 0);
}

TEST_F(VectorPictures, Looks)
{
    const struct
    {
        const char* what;
        void (*change)(XvcBitmap&);
        const char* picture;
    } cases[] = {
        {"as it is", [](XvcBitmap&) {}, "WKW\nRGB"},
        {"a wide box", [](XvcBitmap& b) { b.SetBound(0, 2, 6, 0); }, "WWKKWW\nRRGGBB"},
        {"a box set the other way round", [](XvcBitmap& b) { b.SetBound(3, 0, 0, 2); }, "WKW\nRGB"},
        {"no opacity", [](XvcBitmap& b) { b.SetAlpha(-3); }, "KKK\nKKK"},
        {"no number for the opacity", [](XvcBitmap& b) { b.SetAlpha(kNan); }, "WKW\nRGB"},
        {"white is see-through", [](XvcBitmap& b) { b.SetTransparent(1); }, "KKK\nRGB"},
        {"then green is",
         [](XvcBitmap& b) {
             b.SetTransparent(1);
             DrawAsText(b, 3, 2, kKey);
             b.SetBackColor(0x0000FF00u);
         },
         "WKW\nRKB"},
        {"a box that is not set", [](XvcBitmap& b) { b.SetRightBottom(kXNotSet, 0); }, "KKK\nKKK"},
    };
    for (int bits = 0; bits < 2; ++bits) { // 24 bits a pixel and a palette go different ways
        for (const auto& row : cases) {
            SCOPED_TRACE(row.what);
            XvcBitmap bitmap;
            XString error;
            ASSERT_TRUE(bitmap.ReadBMP(Write(BmpCases()[bits ? 0 : 4].file, "it.bmp"), error));
            bitmap.SetBound(0, 2, 3, 0);
            row.change(bitmap);
            EXPECT_EQ(DrawAsText(bitmap, std::strlen(row.picture) > 7 ? 6 : 3, 2, kKey),
                      row.picture);
        }
    }
}

TEST_F(VectorPictures, BorderAndIndexMap)
{
    const auto lines = [](XvcBitmap& bitmap) {
        std::string text;
        const auto recording = RecordObject(bitmap);
        for (const auto& command : recording->GetCommands()) {
            if (command.kind != XVertRecording::XKind::Polygon) continue;
            const double* at = recording->GetVertices(command.first);
            for (std::size_t i = 0; i < 2 * command.count; ++i)
                text += std::to_string(static_cast<int>(std::lround(at[i]))) + " ";
        }
        return text;
    };
    XvcBitmap bitmap;
    bitmap.SetBound(100, 80, 200, 40);
    EXPECT_EQ(lines(bitmap), "");
    bitmap.SetBorderFlag(1);
    EXPECT_EQ(lines(bitmap), "100 40 100 80 200 80 200 40 ");
    bitmap.SetBorderFlag(0);
    const auto setCorners = [&](double left, double bottom, double right, double top) {
        const tagXVector3 corners[4] = {{left, bottom}, {left, top}, {right, top}, {right, bottom}};
        bitmap.SetInexMap(corners);
    };
    setCorners(125, 35, 126, 36);
    EXPECT_EQ(lines(bitmap), ""); // no region is known yet
    bitmap.SetMapBox(124, 34, 134, 38);
    EXPECT_EQ(lines(bitmap), "110 50 110 60 120 60 120 50 ");
    setCorners(130, 30, 150, 36);
    EXPECT_EQ(lines(bitmap), "160 40 160 60 200 60 200 40 "); // cut at the box
    setCorners(0, 0, 0, 0);
    EXPECT_EQ(lines(bitmap), "");
    setCorners(kNan, 35, 126, 36);
    EXPECT_EQ(lines(bitmap), "");
    EXPECT_EQ(bitmap.GetIndexMap()[2].y, 36.0);
}

TEST_F(VectorPictures, CornersOfABox)
{
    XvcBitmap box;
    box.SetBound(30, 10, 10, 20); // drawn from the lower right to the upper left
    box.CalcRange();
    const std::pair<tagXVector3, int> hits[] = {
        {{10, 10}, 4}, {{10.4, 20}, 5}, {{30, 19.7}, 6}, {{30, 10}, 7}, {{20, 15}, 0}};
    for (const auto& [at, kind] : hits) {
        tagXHitFlag flag{77, 0};
        EXPECT_EQ(box.HitTest(at, 0.5, flag), &box);
        EXPECT_EQ(flag.kind, kind);
    }
    tagXHitFlag flag{77, 0};
    EXPECT_EQ(box.HitTest({31, 15}, 0.5, flag), nullptr);
    EXPECT_EQ(box.HitTest({kNan, 15}, 0.5, flag), nullptr);
    EXPECT_EQ(flag.kind, 77);

    const auto bound = [&] {
        double left, top, right, bottom;
        box.GetBound(left, top, right, bottom);
        return std::vector<double>{left, top, right, bottom};
    };
    EXPECT_NE(box.MoveVertex(7, 5, -3, 0), nullptr); // as an editor makes it larger
    EXPECT_EQ(bound(), (std::vector<double>{10, 20, 35, 7}));
    box.MoveVertex(7, -30, 0, 0); // past the other side ...
    EXPECT_EQ(bound(), (std::vector<double>{5, 20, 10, 7}));
    box.MoveVertex(7, 10, 0, 0); // ... and back, still the same corner
    EXPECT_EQ(bound(), (std::vector<double>{10, 20, 15, 7}));
    EXPECT_EQ(box.MoveVertex(8, 1, 1, 0), nullptr);
    box.MoveVertex(4, kNan, 1, 0);
    box.MoveObject(kXNotSet, 0, 0);
    EXPECT_EQ(bound(), (std::vector<double>{10, 20, 15, 7}));
    box.RotateObject(0, 0, 90); // goes around, stays upright
    EXPECT_EQ(bound(), (std::vector<double>{-16, 19, -11, 6}));
    box.SetPosition(1, 2);
    EXPECT_EQ(bound(), (std::vector<double>{1, 2, 6, -11}));
}

TEST_F(VectorPictures, RasterSamples)
{
    const std::vector<std::pair<std::uint32_t, char>> key = {
        {0x808080, '5'}, {0xFFFFFF, 'W'}, {0xFF0000, 'R'}, {0x0000FF, 'B'}};
    const struct
    {
        const char* what;
        int type;
        std::vector<double> values;
        int bands;
        const char* picture;
    } cases[] = {
        {"bytes as they are", 1, {0, 128, 255, 128}, 1, "K5\nW5"},
        {"signed bytes", 2, {-128, 127, -128, 127}, 1, "KW\nKW"},
        {"large numbers", 5, {0, 4294967295.0, 0, 4294967295.0}, 1, "KW\nKW"},
        {"no number", 7, {kNan, 4, 8, kNan}, 1, "KK\nWK"},
        {"a span beyond doubles", 8, {-1e308, 1e308, -1e308, kXNotSet}, 1, "KW\nKK"},
        {"all alike are half way", 4, {7, 7, 7, 7}, 2, "55\n55"},
        {"blue, green, red", 1, {255, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255}, 3, "BK\nKR"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        XSampleBytes samples;
        for (std::size_t i = 0; i < std::max<std::size_t>(row.values.size(), 4u * row.bands); ++i) {
            const double value = row.values[i % row.values.size()];
            const auto put = [&](auto sample) {
                const auto* from = reinterpret_cast<const unsigned char*>(&sample);
                samples.insert(samples.end(), from, from + sizeof sample);
            };
            if (row.type <= 2) put(static_cast<unsigned char>(static_cast<int>(value)));
            if (row.type == 4) put(static_cast<short>(value));
            if (row.type == 5) put(static_cast<std::uint32_t>(value));
            if (row.type == 7) put(static_cast<float>(value));
            if (row.type == 8) put(value);
        }
        XvcRaster raster;
        raster.SetBound(0, 2, 2, 0);
        ASSERT_TRUE(raster.SetData(samples.data(), 2, 2, row.bands, row.type));
        EXPECT_EQ(raster.GetDataBytes(), samples.size());
        EXPECT_EQ(DrawAsText(raster, 2, 2, key), row.picture);
        EXPECT_FALSE(raster.SetData(samples.data(), 2, -2, 1, 1));
        EXPECT_FALSE(raster.SetData(samples.data(), 2, 2, 1, 9));
        EXPECT_FALSE(raster.SetData(nullptr, 2, 2, 1, 1));
        EXPECT_EQ(raster.GetDataType(), row.type);
    }
}

} // namespace
