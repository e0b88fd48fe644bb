#include "foundation/raster/XDMVand.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "foundation/vector/XVectorIO.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPoint.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <fstream>

namespace {

TEST(XRSFileVector, LoadsAsAVand)
{
    const QTemporaryDir folder;
    const XString json = folder.filePath(QStringLiteral("a.geojson")).toUtf8().constData();
    const XString drawing = folder.filePath(QStringLiteral("b.xvc")).toUtf8().constData();
    std::ofstream(json) << R"({"type":"Feature","properties":{"name":"here"},)"
                           R"("geometry":{"type":"Point","coordinates":[127,37]}})";
    XvcBase made;
    made.AddTail(new XvcLayer);
    XString error;
    ASSERT_TRUE(XfnExportXVC(drawing, &made, error));
    XSpatialReference given;
    given.importFromEPSG(5186);

    XRSFile file;
    ASSERT_TRUE(XRSFileIO::LoadFileVector(&file, XRSFileIO::GetIDFromExt("GEOJSON"), json, &given,
                                          error, nullptr))
        << error.GetString();
    ASSERT_EQ(file.GetNumOfVands(), 1);
    EXPECT_TRUE(file.GetVandAt(0)->GetSR()->IsGeographic()); // the file's own
    EXPECT_EQ(file.GetVandAt(0)->GetName(), "a");
    EXPECT_EQ(file.GetFilePath(), json);
    double minX = 0, minY = 0, minZ = 0, maxX = 0, maxY = 0, maxZ = 0;
    file.GetVandAt(0)->GetRange(minX, minY, minZ, maxX, maxY, maxZ);
    EXPECT_EQ(minX, 127.0);
    EXPECT_EQ(maxY, 37.0);

    // a file that tells no reference takes the one given, or is of unknown coordinates
    ASSERT_TRUE(XRSFileIO::LoadFileVector(&file, kXFormatXVC, drawing, &given, error, nullptr));
    EXPECT_TRUE(file.GetVandAt(0)->GetSR()->IsSame(&given));
    ASSERT_TRUE(XRSFileIO::LoadFileVector(&file, kXFormatXVC, drawing, nullptr, error, nullptr));
    EXPECT_EQ(file.GetVandAt(0)->GetSR()->GetCoordType(), 2);

    // a refusal leaves the file as it was
    for (const int id : {0, int(kXFormatTIF), int(kXFormatXVC), int(kXFormatDXF), 2000}) {
        EXPECT_FALSE(XRSFileIO::LoadFileVector(&file, id, json, nullptr, error, nullptr)) << id;
        EXPECT_GE(error.Find(json), 0);
        EXPECT_EQ(file.GetFilePath(), drawing);
    }
}

} // namespace
