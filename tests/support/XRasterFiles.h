#pragma once

#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"

#include <gtest/gtest.h>

#include <memory>

/// The path of one of the sample rasters.
inline XString SamplePath(const char* name)
{
    return XfnFormat("%s/raster/%s", TQL_TEST_DATA, name);
}

/// Opens a file that has to open; null when it did not, or has no band.
inline std::unique_ptr<XRSFile> OpenFile(const XString& path)
{
    auto file = std::make_unique<XRSFile>();
    XString error;
    EXPECT_TRUE(XRSFileIO::Open(path, file.get(), error)) << error.GetString();
    return file->GetNumOfBands() > 0 ? std::move(file) : nullptr;
}
