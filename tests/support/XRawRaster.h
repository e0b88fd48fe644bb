#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <complex>
#include <initializer_list>
#include <type_traits>
#include <vector>

/// Writes small rasters as a raw file with a text header beside it, of any sample type, for tests
/// that need a file rather than a band in memory.
struct tagXRawRaster
{
    int width = 0;
    int height = 0;
    int bands = 1;
    /// Lines for the header, such as "wavelength = {480, 560, 660}" or a map info.
    QByteArray extraHeader{};
};

template <class T>
constexpr int XfnRawTypeCode()
{
    if constexpr (std::is_same_v<T, unsigned char>)
        return 1;
    else if constexpr (std::is_same_v<T, short>)
        return 2;
    else if constexpr (std::is_same_v<T, float>)
        return 4;
    else if constexpr (std::is_same_v<T, double>)
        return 5;
    else if constexpr (std::is_same_v<T, std::complex<float>>)
        return 6;
    else if constexpr (std::is_same_v<T, unsigned short>)
        return 12;
}

/// @param samples  band after band, rows from the top; the width, height and bands of `raster`
/// @return the path of the data file, which is the one to open; empty on failure
template <class T>
QString XfnWriteRawRaster(const QString& path, const tagXRawRaster& raster,
                          const std::vector<T>& samples)
{
    QFile data(path);
    QFile header(path.section('.', 0, -2) + ".hdr");
    const auto count = static_cast<qint64>(samples.size() * sizeof(T));
    if (!data.open(QIODevice::WriteOnly) || !header.open(QIODevice::WriteOnly)) return QString();
    if (data.write(reinterpret_cast<const char*>(samples.data()), count) != count) return QString();
    header.write("ENVI\nheader offset = 0\nfile type = ENVI Standard\ninterleave = bsq\n"
                 "byte order = 0\n");
    header.write("samples = " + QByteArray::number(raster.width) +
                 "\nlines = " + QByteArray::number(raster.height) +
                 "\nbands = " + QByteArray::number(raster.bands) + "\ndata type = " +
                 QByteArray::number(XfnRawTypeCode<T>()) + "\n" + raster.extraHeader + "\n");
    return path;
}
