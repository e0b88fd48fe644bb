#include "tests/support/XRawRaster.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

struct tagXRun
{
    int exitCode;
    QString out, err;
};

// The built program, as a shell without a display runs it.
tagXRun RunProgram(const QStringList& arguments, const QString& folder)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR"})
        environment.remove(name);
    environment.insert("XDG_CONFIG_HOME", folder);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(folder);
    process.start(TQL_VIEW_PROGRAM, arguments);
    EXPECT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), QString::fromLocal8Bit(process.readAllStandardOutput()),
            QString::fromLocal8Bit(process.readAllStandardError())};
}

class XRenderTest : public ::testing::Test
{
protected:
    XRenderTest()
    {
        // three bands, 4 x 2: columns in band 1, rows in band 2, all the same in band 3
        XfnWriteRawRaster(dir.filePath("small.dat"), {4, 2, 3},
                          std::vector<unsigned char>{0,   50,  100, 150, 0,   50,  100, 150, //
                                                     20,  20,  20,  20,  220, 220, 220, 220, //
                                                     255, 255, 255, 255, 255, 255, 255, 255});
    }
    tagXRun Run(const QStringList& arguments) { return RunProgram(arguments, dir.path()); }
    QImage Picture()
    {
        return QImage(dir.filePath("out.png")).convertToFormat(QImage::Format_RGB32);
    }

    QTemporaryDir dir;
};

TEST_F(XRenderTest, APictureOfTheRastersOwnSizeHasItsPixels)
{
    const tagXRun run = Run({"--render", "out.png", "--bands", "1,2,3", "small.dat"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.err, "");
    const QImage picture = Picture();
    ASSERT_EQ(picture.size(), QSize(4, 2));
    const int columns[4] = {0, 50, 100, 150};
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(picture.pixel(x, y), qRgb(columns[x], y == 0 ? 20 : 220, 255))
                << x << ' ' << y;
}

TEST_F(XRenderTest, SizeAndExtentKeepTheAspect)
{
    ASSERT_EQ(Run({"--render", "out.png", "--size", "40x40", "--bands", "1", "small.dat"}).exitCode,
              0);
    QImage picture = Picture();
    ASSERT_EQ(picture.size(), QSize(40, 40));
    EXPECT_EQ(picture.pixel(35, 20), qRgb(150, 150, 150));
    EXPECT_EQ(picture.pixel(35, 5), qRgb(0, 0, 0)) << "above the image, which is half as high";
    EXPECT_EQ(picture.pixel(35, 11), qRgb(150, 150, 150));
    // the second column of the first row: pixel centres are whole numbers, y runs up
    ASSERT_EQ(Run({"--render", "out.png", "--size", "8x8", "--bands", "1,2,3", "--extent",
                   "0.6,-0.4,1.4,0.4", "small.dat"})
                  .exitCode,
              0);
    picture = Picture();
    for (const QPoint corner : {QPoint(0, 0), QPoint(7, 0), QPoint(0, 7), QPoint(7, 7)})
        EXPECT_EQ(picture.pixel(corner), qRgb(50, 20, 255));
}

TEST_F(XRenderTest, WhatGoesWrongHasACodeAndASentence)
{
    QFile text(dir.filePath("text.tif"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("hello");
    text.close();
    QFile old(dir.filePath("old.png"));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("kept");
    old.close();
    QImage same(5, 4, QImage::Format_RGB32);
    same.fill(Qt::red);
    ASSERT_TRUE(same.save(dir.filePath("same.png")));
    QFile source(dir.filePath("same.png"));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    const QByteArray sourceBytes = source.readAll();
    source.close();
    ASSERT_TRUE(QFile::link("same.png", dir.filePath("link.png")));
    struct tagXRow
    {
        const char* name;
        QStringList arguments;
        int exitCode;
        const char* says;
    };
    const tagXRow rows[] = {
        {"usage", {"--bogus"}, 2, "--bogus"},
        {"usage of render", {"--render", "out.png"}, 2, "exactly one"},
        {"missing", {"--render", "out.png", "none.tif"}, 1, "does not exist"},
        {"no raster", {"--render", "old.png", "text.tif"}, 1, "text.tif"},
        {"no such band", {"--render", "old.png", "--bands", "4", "small.dat"}, 1, "Band 4"},
        {"unknown picture format", {"--render", "out.xyz", "small.dat"}, 1, ".xyz"},
        {"extent elsewhere",
         {"--render", "old.png", "--extent", "900,900,901,901", "small.dat"},
         1,
         "does not meet"},
        {"onto its source", {"--render", "same.png", "same.png"}, 2, "would replace"},
        {"onto its source by a link", {"--render", "link.png", "same.png"}, 2, "would replace"},
        {"no such part", {"--render", "old.png", "NETCDF:none.nc:Band1"}, 1, "NETCDF:"},
        {"no such folder", {"--render", "nowhere/out.png", "small.dat"}, 1, "nowhere"},
    };
    for (const tagXRow& row : rows) {
        const tagXRun run = Run(row.arguments);
        EXPECT_EQ(run.exitCode, row.exitCode) << row.name;
        EXPECT_TRUE(run.err.startsWith("tqlview: ")) << row.name << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(row.says)) << row.name << run.err.toStdString();
        EXPECT_EQ(run.out, "") << row.name;
    }
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    EXPECT_EQ(old.readAll(), "kept");
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    EXPECT_EQ(source.readAll(), sourceBytes);
    EXPECT_EQ(QDir(dir.path()).entryList({"out*", "*.png.*"}, QDir::Files).size(), 0)
        << "no leavings";
}

TEST_F(XRenderTest, HelpAndVersionNeedNoDisplay)
{
    const tagXRun help = Run({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.startsWith("Usage: tqlview"));
    const tagXRun version = Run({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_TRUE(version.out.startsWith("tqlview "));
    EXPECT_EQ(help.err + version.err, "");
}

TEST_F(XRenderTest, TheSampleSceneComesInColours)
{
    ASSERT_EQ(
        Run({"--render", "out.png", "--size", "200x200", QString(TQL_SAMPLE_DATA) + "/L7_ETMs.tif"})
            .exitCode,
        0);
    const QImage picture = Picture();
    int coloured = 0;
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x)
            coloured += qRed(picture.pixel(x, y)) != qBlue(picture.pixel(x, y));
    EXPECT_GT(coloured, 20000);
}

} // namespace
