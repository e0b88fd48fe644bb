#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "tests/support/XRawRaster.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

namespace {

// The rasters hold the same pixels at full resolution.
void ExpectSamePixels(const QString& a, const QString& b)
{
    XRSFile files[2];
    XString error;
    ASSERT_TRUE(XRSFileIO::Open(XfnFromQString(a), &files[0], error)) << error.GetString();
    ASSERT_TRUE(XRSFileIO::Open(XfnFromQString(b), &files[1], error)) << error.GetString();
    ASSERT_EQ(files[0].GetNumOfBands(), files[1].GetNumOfBands());
    for (int i = 0; i < files[0].GetNumOfBands(); ++i) {
        tagXArr2 blocks[2];
        for (int k = 0; k < 2; ++k) {
            XDMBand& band = *files[k].GetBandAt(i);
            tagXArr2* block = &blocks[k];
            ASSERT_TRUE(band.ReadSubset(block, 0, 0, band.GetXSize() - 1, 0, band.GetYSize() - 1,
                                        nullptr, &error))
                << error.GetString();
        }
        ASSERT_EQ(blocks[0].dataType, blocks[1].dataType);
        ASSERT_EQ(blocks[0].width, blocks[1].width);
        ASSERT_EQ(blocks[0].GetByteSize(), blocks[1].GetByteSize());
        EXPECT_EQ(std::memcmp(blocks[0].base, blocks[1].base, blocks[0].GetByteSize()), 0) << i;
    }
    double boxes[2][4];
    for (int k = 0; k < 2; ++k)
        files[k].GetBoundRect(boxes[k][0], boxes[k][1], boxes[k][2], boxes[k][3]);
    for (int i = 0; i < 4; ++i)
        EXPECT_DOUBLE_EQ(boxes[0][i], boxes[1][i]);
    EXPECT_TRUE(files[0].GetSR()->IsEmpty() == files[1].GetSR()->IsEmpty());
    if (!files[0].GetSR()->IsEmpty()) {
        EXPECT_TRUE(files[0].GetSR()->IsSame(files[1].GetSR()));
    }
}

class XConvertTest : public ::testing::Test
{
protected:
    void Start(QProcess& process, const QStringList& arguments)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name :
             {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR"})
            environment.remove(name);
        environment.insert("XDG_CONFIG_HOME", dir.path());
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(dir.path());
        process.start(TQL_VIEW_PROGRAM, arguments);
    }
    int Convert(const QString& in, const QString& out)
    {
        QProcess process;
        Start(process, {"--convert", in, out});
        EXPECT_TRUE(process.waitForFinished(60000));
        err = QString::fromLocal8Bit(process.readAllStandardError());
        EXPECT_EQ(process.readAllStandardOutput(), "");
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    QStringList Names()
    {
        return QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir dir;
    QString err;
};

TEST_F(XConvertTest, ThereAndBackHoldsTheSamePixels)
{
    const QString scene = QString(TQL_SAMPLE_DATA) + "/L7_ETMs.tif";
    ASSERT_EQ(Convert(scene, "scene.xdm"), 0) << err.toStdString();
    EXPECT_TRUE(err.contains("50 %")) << err.toStdString();
    EXPECT_TRUE(err.contains("100 %")) << err.toStdString();
    ExpectSamePixels(scene, dir.filePath("scene.xdm"));
    for (const char* out : {"back.tif", "back.img", "back.bil", "again.xdm"}) {
        SCOPED_TRACE(out);
        ASSERT_EQ(Convert("scene.xdm", out), 0) << err.toStdString();
        ExpectSamePixels(scene, dir.filePath(out));
    }
    ASSERT_EQ(Convert(scene, "copy.img"), 0) << err.toStdString();
    ExpectSamePixels(scene, dir.filePath("copy.img"));
    EXPECT_EQ(Names().filter("tmp").size() + Names().filter(".tql").size(), 0) << "no leavings";
}

TEST_F(XConvertTest, WhatGoesWrongHasACodeASentenceAndNoLeavings)
{
    XfnWriteRawRaster(dir.filePath("small.dat"), {4, 2, 3}, std::vector<float>(24, 1.5f));
    QFile text(dir.filePath("text.tif"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("hello");
    text.close();
    ASSERT_EQ(Convert("small.dat", "small.xdm"), 0);
    QByteArray damaged;
    {
        QFile file(dir.filePath("small.xdm"));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        damaged = file.readAll();
    }
    damaged[65] = static_cast<char>(damaged[65] ^ 1); // within the first tile
    QFile bad(dir.filePath("bad.xdm"));
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write(damaged);
    bad.close();
    const QStringList before = Names();
    const struct
    {
        const char* name;
        const char* in;
        const char* out;
        int exitCode;
        const char* says;
    } rows[] = {
        {"no output", "small.dat", "", 2, "two files"},
        {"missing", "none.tif", "o.xdm", 1, "does not exist"},
        {"no raster", "text.tif", "o.xdm", 1, "text.tif"},
        {"onto itself", "small.dat", "./small.dat", 1, "replace"},
        {"unknown format", "small.dat", "o.xyzzy", 1, "o.xyzzy"},
        {"no pixels in it", "small.xdm", "o.vrt", 1, "virtual"},
        {"a type the format lacks", "small.dat", "o.png", 1, "Float32"},
        {"the same from the native format", "small.xdm", "text.png", 1, "Float32"},
        {"no such folder", "small.dat", "nowhere/o.xdm", 1, "nowhere"},
        {"no such folder for the others", "small.dat", "nowhere/o.tif", 1, "nowhere"},
        {"damage, to the native format", "bad.xdm", "o.xdm", 1, "damaged"},
        {"damage, to another one", "bad.xdm", "text.tif", 1, "damaged"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Convert(row.in, row.out), row.exitCode);
        EXPECT_TRUE(err.contains("tqlview: ")) << err.toStdString();
        EXPECT_TRUE(err.contains(row.says)) << err.toStdString();
        EXPECT_EQ(Names(), before);
    }
    ASSERT_TRUE(text.open(QIODevice::ReadOnly));
    EXPECT_EQ(text.readAll(), "hello") << "what was there stays";
}

TEST_F(XConvertTest, AnInterruptLeavesNothing)
{
    // noise, which takes its time to pack
    std::vector<unsigned short> noise(4000 * 4000);
    unsigned state = 1;
    for (unsigned short& v : noise)
        v = static_cast<unsigned short>((state = state * 1664525u + 1013904223u) >> 16);
    XfnWriteRawRaster(dir.filePath("noise.dat"), {4000, 4000, 1}, noise);
    const QStringList before = Names();
    for (const char* out : {"noise.xdm", "noise.tif"}) {
        SCOPED_TRACE(out);
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        Start(process, {"--convert", "noise.dat", out});
        ASSERT_TRUE(process.waitForReadyRead(60000)); // the first percent
        ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
        ASSERT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        if (process.exitCode() == 0) { // was faster than the signal
            QFile::remove(dir.filePath(out));
            continue;
        }
        EXPECT_EQ(process.exitCode(), 1);
        EXPECT_TRUE(process.readAll().contains("stopped"));
        EXPECT_EQ(Names(), before);
    }
}

} // namespace
