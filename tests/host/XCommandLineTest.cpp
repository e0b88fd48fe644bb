#include "host/XCommandLine.h"

#include <gtest/gtest.h>

namespace {

TEST(XCommandLineTest, WhatIsWrongIsSaidAndTheRestIsUnderstood)
{
    struct tagXRow
    {
        const char* name;
        QStringList words;
        CommandMode mode;
        QStringList files;
    };
    const tagXRow rows[] = {
        {"nothing opens a window", {}, CommandMode::Window, {}},
        {"files in order", {"b.tif", "a.tif"}, CommandMode::Window, {"b.tif", "a.tif"}},
        {"a file like an option", {"--", "--help"}, CommandMode::Window, {"--help"}},
        {"options of the toolkit go with their value",
         {"-style", "fusion", "--platform", "xcb", "a.tif"},
         CommandMode::Window,
         {"a.tif"}},
        {"help wins over nonsense", {"--size", "x", "--help"}, CommandMode::Help, {}},
        {"version", {"a.tif", "--version"}, CommandMode::Version, {}},
        {"unknown option", {"--frob", "a.tif"}, CommandMode::Wrong, {}},
        {"unknown short option", {"-x"}, CommandMode::Wrong, {}},
        {"render", {"--render", "o.png", "a.tif"}, CommandMode::Render, {"a.tif"}},
        {"render, joined", {"a.tif", "--render=o.png"}, CommandMode::Render, {"a.tif"}},
        {"render without a picture", {"a.tif", "--render"}, CommandMode::Wrong, {}},
        {"render without a raster", {"--render", "o.png"}, CommandMode::Wrong, {}},
        {"render of two", {"--render", "o.png", "a", "b"}, CommandMode::Wrong, {}},
        {"render options need render", {"--bands", "1", "a"}, CommandMode::Wrong, {}},
        {"convert", {"--convert", "a.tif", "b.xdm"}, CommandMode::Convert, {"b.xdm"}},
        {"convert, joined", {"--convert=a.tif", "b.xdm"}, CommandMode::Convert, {"b.xdm"}},
        {"convert without an output", {"--convert", "a.tif"}, CommandMode::Wrong, {}},
        {"convert of three", {"--convert", "a", "b", "c"}, CommandMode::Wrong, {}},
        {"convert and a size", {"--convert", "a", "b", "--size", "5x5"}, CommandMode::Wrong, {}},
        {"convert and render",
         {"--convert", "a", "b", "--render", "c.png"},
         CommandMode::Wrong,
         {}},
        {"size of nothing", {"--render", "o.png", "--size", "0x5", "a"}, CommandMode::Wrong, {}},
        {"size beyond memory",
         {"--render", "o.png", "--size", "32767x32767", "a"},
         CommandMode::Wrong,
         {}},
        {"two bands", {"--render", "o.png", "--bands", "1,2", "a"}, CommandMode::Wrong, {}},
        {"bands count from 1",
         {"--render", "o.png", "--bands", "0,1,2", "a"},
         CommandMode::Wrong,
         {}},
        {"an extent upside down",
         {"--render", "o.png", "--extent", "0,9,9,0", "a"},
         CommandMode::Wrong,
         {}},
        {"an extent of no numbers",
         {"--render", "o.png", "--extent", "0,0,nan,1", "a"},
         CommandMode::Wrong,
         {}},
        {"a decimal comma cannot be told from a separator",
         {"--render", "o.png", "--extent", "0,5,1,5,2,5,3,5", "a"},
         CommandMode::Wrong,
         {}},
        {"geometry", {"--geometry", "800x600+5-7", "a"}, CommandMode::Window, {"a"}},
        {"geometry of one side", {"--geometry", "800", "a"}, CommandMode::Wrong, {}},
    };
    for (const tagXRow& row : rows) {
        const tagXCommandLine line = XfnParseCommandLine(row.words);
        EXPECT_EQ(line.mode, row.mode) << row.name << ": " << line.message.toStdString();
        if (row.mode == CommandMode::Wrong) {
            EXPECT_TRUE(line.message.endsWith('.')) << row.name;
        } else if (row.mode != CommandMode::Help && row.mode != CommandMode::Version) {
            EXPECT_EQ(line.files, row.files) << row.name;
        }
    }
}

TEST(XCommandLineTest, ValuesArriveWhereTheyBelong)
{
    const tagXCommandLine line =
        XfnParseCommandLine({"--render", "o.png", "--size=640x480", "--bands", "4,3,2", "--extent",
                             "-1.5,2,1e3,7.25", "scene.tif"});
    ASSERT_EQ(line.mode, CommandMode::Render) << line.message.toStdString();
    EXPECT_EQ(line.render.output, "o.png");
    EXPECT_EQ(line.render.file, "scene.tif");
    EXPECT_EQ(line.render.size, QSize(640, 480));
    EXPECT_EQ(line.render.bands[0], 4);
    EXPECT_EQ(line.render.bands[1], 3);
    EXPECT_EQ(line.render.bands[2], 2);
    const double expected[4] = {-1.5, 2, 1000, 7.25};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(line.render.extent[i], expected[i]) << i;

    const tagXCommandLine gray =
        XfnParseCommandLine({"--render", "o.png", "--bands", "5", "scene.tif"});
    EXPECT_EQ(gray.render.bands[0], 5);
    EXPECT_EQ(gray.render.bands[2], 5);

    const tagXCommandLine placed = XfnParseCommandLine({"--geometry=300x200-10+20"});
    EXPECT_EQ(placed.windowSize, QSize(300, 200));
    ASSERT_TRUE(placed.hasWindowPos);
    EXPECT_EQ(placed.windowPos, QPoint(-10, 20));
}

TEST(XCommandLineTest, TheHelpNamesEveryOption)
{
    const QString help = XfnHelpText();
    for (const char* option : {"--render", "--convert", "--size", "--bands", "--extent",
                               "--geometry", "--help", "--version"})
        EXPECT_TRUE(help.contains(option)) << option;
    for (const QString& line : help.split('\n'))
        EXPECT_LE(line.size(), 90) << line.toStdString();
}

} // namespace
