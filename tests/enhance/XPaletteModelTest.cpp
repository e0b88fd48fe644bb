#include "enhance/XPaletteModel.h"

#include "enhance/XPaletteFile.h"
#include "foundation/raster/XPalette.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

tagXPaletteTable MakeRamp() // red, green and blue differ, so that a swapped channel shows
{
    tagXPaletteTable table;
    for (int i = 0; i < 256; ++i)
        table.SetColor(i, XfnMakeColor(static_cast<unsigned>(i), static_cast<unsigned>(255 - i),
                                       static_cast<unsigned>(i / 2)));
    return table;
}

TEST(XPalette, SpansAreInterpolatedBetweenAnchors)
{
    const struct
    {
        const char* reason;
        std::vector<std::pair<int, int>> anchors; // entry, red
        int entry, red;
    } kCases[] = {
        {"one anchor changes nothing", {{10, 200}}, 9, 77},
        {"truncated, not rounded", {{0, 0}, {3, 2}}, 2, 1}, // 1.33
        {"before the first anchor", {{10, 0}, {20, 100}}, 9, 77},
        {"behind the last anchor", {{10, 0}, {20, 100}}, 21, 77},
        {"the last anchor is not rewritten", {{10, 0}, {20, 101}}, 20, 101},
        // slope -1/3, base 100 - trunc(-10/3) = 103: 10 * -1/3 + 103 = 99.67
        {"a falling span takes a level from its first entry", {{10, 100}, {13, 99}}, 10, 99},
        {"and not where the product is whole", {{12, 100}, {15, 99}}, 12, 100},
        {"the middle anchor ends one span and begins the next",
         {{0, 0}, {10, 50}, {20, 0}},
         15,
         25},
    };
    for (const auto& row : kCases) {
        tagXPaletteTable table;
        table.red.fill(77);
        for (const auto& [entry, red] : row.anchors) {
            table.red[static_cast<std::size_t>(entry)] = static_cast<unsigned char>(red);
            table.anchors[static_cast<std::size_t>(entry)] = 1;
        }
        table.anchors[200] = 7; // out of a file: no anchor
        XfnInterpolatePalette(table);
        EXPECT_EQ(table.red[static_cast<std::size_t>(row.entry)], row.red) << row.reason;
        EXPECT_EQ(table.anchors[200], 7);
    }
    // no span leaves the bytes between its ends, but for the level that truncation takes
    for (int a = 0; a < 255; a += 3)
        for (int b = a + 1; b < 256; b += 7)
            for (const int ends : {0x00FF, 0xFF00, 0xFFFE, 0x0100, 0x0001}) {
                tagXPaletteTable table;
                table.green[static_cast<std::size_t>(a)] = static_cast<unsigned char>(ends >> 8);
                table.green[static_cast<std::size_t>(b)] = static_cast<unsigned char>(ends);
                table.anchors[static_cast<std::size_t>(a)] = 1;
                table.anchors[static_cast<std::size_t>(b)] = 1;
                XfnInterpolatePalette(table);
                const int low = std::min(ends >> 8, ends & 255),
                          high = std::max(ends >> 8, ends & 255);
                for (int x = a; x < b; ++x) {
                    ASSERT_GE(table.green[static_cast<std::size_t>(x)], low - 1) << a << " " << b;
                    ASSERT_LE(table.green[static_cast<std::size_t>(x)], high) << a << " " << b;
                }
            }
}

TEST(XPaletteModel, TheListKeepsTheUsersTable)
{
    XPaletteModel model;
    tagXPaletteTable own = MakeRamp();
    own.anchors[9] = 1;
    model.SetTable(own);
    own = model.GetTable();
    model.Open(1);
    EXPECT_EQ(model.GetSelection(), 1);
    EXPECT_EQ(model.GetTable().GetColor(100), XfnMakeColor(100, 100, 100));
    EXPECT_EQ(model.GetTable().anchors[9], 0) << "a palette has no anchors";
    EXPECT_EQ(model.Undo(), XPaletteModel::XRestored::Nothing) << "opening is no edit";
    model.Select(2);
    model.Select(10);
    EXPECT_EQ(model.GetTable().GetColor(255), XfnMakeColor(255, 3, 85)) << "the leftover of 2";
    EXPECT_EQ(model.GetListTable(10).GetColor(255), XfnMakeColor(254, 0, 0))
        << "of none in the list";
    EXPECT_FALSE(model.Select(69));
    EXPECT_FALSE(model.Select(-1));
    model.Select(0);
    EXPECT_EQ(model.GetTable(), own);
    EXPECT_FALSE(model.Select(0)) << "once more changes nothing";
    // rotated and left from position 0 it is the rotated one that comes back
    model.RotateForward();
    const tagXPaletteTable rotated = model.GetTable();
    model.Select(5);
    model.Select(0);
    EXPECT_EQ(model.GetTable(), rotated);
}

TEST(XPaletteModel, EditsOfEntriesAndAnchors)
{
    XPaletteModel model;
    model.SetTable(tagXPaletteTable());
    model.Open(1);
    model.SetCurrent(100);
    EXPECT_TRUE(model.SetCurrentColor(XfnMakeColor(200, 0, 0)));
    EXPECT_EQ(model.GetTable().GetColor(99), XfnMakeColor(99, 99, 99)) << "a plain entry is alone";
    EXPECT_TRUE(model.ToggleAnchor());
    model.SetCurrent(0);
    EXPECT_TRUE(model.ToggleAnchor()) << "an end becomes an anchor";
    EXPECT_FALSE(model.ToggleAnchor() || model.RemoveAnchor()) << "and stays one";
    model.SetCurrent(100);
    model.SetCurrentColor(XfnMakeColor(0, 100, 0));
    EXPECT_EQ(model.GetTable().GetColor(50), XfnMakeColor(0, 50, 0)) << "an anchor moves its spans";
    EXPECT_TRUE(model.RemoveAnchor());
    EXPECT_FALSE(model.RemoveAnchor()) << "a plain entry has none to lose";
    model.Select(7);
    model.Select(0);
    EXPECT_EQ(model.GetTable().GetColor(50), XfnMakeColor(0, 50, 0)) << "kept as the user's table";
}

TEST(XPaletteModel, RotatingAndPushing)
{
    const tagXPaletteTable ramp = MakeRamp();
    const struct
    {
        void (XPaletteModel::*move)();
        int at, from; // entry `at` then has the colour of entry `from`; -1 black
        int end, endFrom;
    } kCases[] = {{&XPaletteModel::RotateForward, 11, 10, 0, 255},
                  {&XPaletteModel::RotateBackward, 9, 10, 255, 0},
                  {&XPaletteModel::PushForward, 11, 10, 0, -1},
                  {&XPaletteModel::PushBackward, 9, 10, 255, -1}};
    for (const auto& row : kCases) {
        XPaletteModel model;
        tagXPaletteTable table = ramp;
        table.anchors[10] = 1;
        model.SetTable(table);
        (model.*row.move)();
        EXPECT_EQ(model.GetTable().GetColor(row.at), ramp.GetColor(row.from));
        EXPECT_EQ(model.GetTable().GetColor(row.end),
                  row.endFrom < 0 ? 0u : ramp.GetColor(row.endFrom));
        EXPECT_EQ(model.GetTable().anchors, table.anchors);
    }
}

TEST(XPaletteModel, UndoTakesBackEditsAndWholeDrags)
{
    XPaletteModel model;
    model.SetTable(MakeRamp());
    model.Open(3);
    const tagXPaletteTable opened = model.GetTable();
    model.SetCurrentColor(0x00123456u);
    const tagXPaletteTable edited = model.GetTable();
    model.StartDrag(0);
    for (int x = 1; x < 5; ++x)
        if (model.DragTo(x)) model.RotateForward();
    model.EndDrag();
    using Restored = XPaletteModel::XRestored;
    EXPECT_EQ(model.Undo(), Restored::AppliedTable) << "the picture had followed";
    EXPECT_EQ(model.GetTable(), edited);
    EXPECT_EQ(model.Undo(), Restored::Table);
    EXPECT_EQ(model.GetTable(), opened);
    EXPECT_EQ(model.GetSelection(), 3);
    EXPECT_EQ(model.Undo(), Restored::Nothing);
    EXPECT_EQ(model.Redo(), Restored::Table);
    EXPECT_EQ(model.GetTable(), edited);
    model.ToggleAnchor();
    EXPECT_EQ(model.Redo(), Restored::Nothing) << "a new edit ends the way forward";
}

TEST(XPaletteModel, ValuesOfAnEntry)
{
    constexpr double kInf = std::numeric_limits<double>::infinity();
    const struct
    {
        double low, high;
        int type, entry;
        const char* text;
    } kCases[] = {
        {0, 256, 1, 10, "10 ~ 11"},
        {0, 255, 1, 255, "254 ~ 255"}, // 254.004 and 255
        {0, 4294967040.0, 5, 255, "4278189825 ~ 4294967040"},
        {0, 1, 6, 128, "0.50000000 ~ 0.50390625"},
        {0, kInf, 7, 9, ""},
        {std::nan(""), 3, 1, 9, ""},
        {-1.7e308, 1.7e308, 8, 9, ""}, // the span overflows
        {0, 1e300, 1, 255, "9000000000000000000 ~ 9000000000000000000"},
    };
    for (const auto& row : kCases) {
        XPaletteModel model;
        model.SetValueRange(row.low, row.high, row.type);
        model.SetCurrent(row.entry);
        EXPECT_EQ(model.GetValueText(), row.text);
        EXPECT_EQ(model.GetIndexText(), XfnFormat("%d", row.entry));
    }
}

TEST(XPaletteFile, NamesUnderWhichATableIsSaved)
{
    const struct
    {
        const char *typed, *saved;
    } kCases[] = {{"/a/warm", "/a/warm.pal"},     {"/a/warm.pal", "/a/warm.pal"},
                  {"/a/warm.PAL", "/a/warm.PAL"}, {"/a/warm.txt", "/a/warm.pal"},
                  {"/a/warm.TXT", "/a/warm.TXT"}, {"/txt/warm.txt", "/pal/warm.pal"},
                  {"/a.b/warm", "/a.b/warm.pal"}, {"/a/.pal", "/a/.pal.pal"}};
    for (const auto& row : kCases)
        EXPECT_EQ(XfnGetPaletteSavePath(row.typed), row.saved) << row.typed;
}

TEST(XPaletteFile, BytesOfAFile)
{
    const QTemporaryDir folder;
    const auto at = [&](const char* name) { return folder.filePath(name).toStdString(); };
    tagXPaletteTable table = MakeRamp();
    table.anchors[3] = 1;
    table.anchors[4] = 0x1FF;
    XString message;
    ASSERT_TRUE(XfnWritePalette(at("a.pal").c_str(), table, message));
    QFile file(folder.filePath("a.pal"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    ASSERT_EQ(bytes.size(), 1024);
    EXPECT_EQ(bytes.mid(12, 8).toHex(), "03fc010104fb02ff");
    tagXPaletteTable back;
    back.anchors[9] = 0x300;
    ASSERT_TRUE(XfnReadPalette(at("a.pal").c_str(), back, message));
    EXPECT_EQ(back.blue, table.blue);
    EXPECT_EQ(back.anchors[4], 0xFF);
    EXPECT_EQ(back.anchors[9], 0x300) << "only the low byte is read";

    for (const int length : {0, 1, 3, 4, 1023, 1024, 1025, 70000}) {
        QFile cut(folder.filePath("Cut.PaL"));
        ASSERT_TRUE(cut.open(QIODevice::WriteOnly));
        cut.write(bytes + QByteArray(70000, 'x').left(std::max(0, length - 1024)));
        cut.resize(length);
        cut.close();
        tagXPaletteTable read;
        read.red.fill(9);
        read.anchors.fill(5);
        EXPECT_TRUE(XfnReadPalette(at("Cut.PaL").c_str(), read, message)) << length;
        for (int i = 0; i < 256; ++i) {
            const auto k = static_cast<std::size_t>(i);
            ASSERT_EQ(read.red[k], 4 * i < length ? table.red[k] : 9) << length;
            ASSERT_EQ(read.anchors[k], 4 * i + 3 < length ? table.anchors[k] & 255 : 5) << length;
        }
    }
    QDir(folder.path()).mkdir("d.pal");
    const struct
    {
        const char *name, *message;
    } kRefused[] = {{"a.txt", "Not a valid palette file"},
                    {"a", "Not a valid palette file"},
                    {"none.pal", "Unable to open file for reading"},
                    {"d.pal", "Unable to open file for reading"}};
    for (const auto& row : kRefused) {
        EXPECT_FALSE(XfnReadPalette(at(row.name).c_str(), back, message));
        EXPECT_EQ(message, row.message) << row.name;
        EXPECT_EQ(back.blue, table.blue);
    }
    EXPECT_FALSE(XfnWritePalette(at("none/a.pal").c_str(), table, message));
    EXPECT_EQ(message, "Unable to open file for writing");
}

} // namespace
