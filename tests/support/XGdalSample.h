#pragma once

#include "foundation/base/XString.h"

#include <QByteArray>
#include <QString>

#include <cpl_error.h>
#include <cpl_string.h>
#include <gdal_priv.h>

#include <functional>
#include <vector>

/// Writes an image file for a test.
struct tagXGdalSample
{
    const char* driver = "GTiff";
    GDALDataType type = GDT_Byte;
    int width = 0;
    int height = 0;
    int bands = 1;
    const char* options = "";     ///< creation options, "TILED=YES COMPRESS=DEFLATE"
    std::vector<int> overviews{}; ///< factors of nearest neighbour overviews
    std::function<double(int x, int y, int band)> value{}; ///< nothing is written without it
    std::function<void(GDALDataset&)> prepare{};           ///< before the pixels
};

/// @return the path; empty when the file could not be made
inline XString XfnWriteGdalSample(const QString& path, const tagXGdalSample& sample)
{
    GDALAllRegister();
    const QByteArray name = path.toUtf8();
    CPLStringList options(CSLTokenizeString(sample.options));
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(sample.driver);
    GDALDataset* dataset = driver ? driver->Create(name, sample.width, sample.height, sample.bands,
                                                   sample.type, options.List())
                                  : nullptr;
    if (!dataset) return XString();
    if (sample.prepare) sample.prepare(*dataset);
    CPLErr result = CE_None;
    std::vector<double> row(static_cast<std::size_t>(sample.width));
    for (int band = 0; sample.value && band < sample.bands; ++band) {
        for (int y = 0; y < sample.height && result == CE_None; ++y) {
            for (int x = 0; x < sample.width; ++x)
                row[static_cast<std::size_t>(x)] = sample.value(x, y, band);
            result = dataset->GetRasterBand(band + 1)->RasterIO(GF_Write, 0, y, sample.width, 1,
                                                                row.data(), sample.width, 1,
                                                                GDT_Float64, 0, 0, nullptr);
        }
    }
    if (!sample.overviews.empty() && result == CE_None)
        result = dataset->BuildOverviews("NEAREST", static_cast<int>(sample.overviews.size()),
                                         const_cast<int*>(sample.overviews.data()), 0, nullptr,
                                         nullptr, nullptr);
    GDALClose(dataset);
    return result == CE_None ? XString(name.constData()) : XString();
}

/// A file of one band or several with these values, in one call.
inline XString XfnWriteGdalSample(const QString& path, int width, int height,
                                  std::function<double(int x, int y, int band)> value,
                                  int bands = 1, const char* options = "")
{
    return XfnWriteGdalSample(path, {.width = width,
                                     .height = height,
                                     .bands = bands,
                                     .options = options,
                                     .value = std::move(value)});
}
