#include "host/XLayerReport.h"

#include "foundation/base/XSentinels.h"
#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMBandGDAL.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRasterTypes.h"
#include "host/XLayerPlacement.h"
#include "host/XLayerStack.h"
#include "host/XRasterOpener.h"
#include "host/XReadOut.h"

#include <QFileInfo>

#include <algorithm>

namespace {

using Rows = std::vector<std::pair<QString, QString>>;

QString Real(double value)
{
    return XfnSampleText(value);
}

// The files' own names of types carry a line end for text reports.
QString TypeText(const XRSFile& file)
{
    QStringList types;
    for (int i = 0; i < file.GetNumOfBands(); ++i) {
        const QString type =
            QString(XfnGetDataTypeLabel(file.GetBandAt(i)->GetDataType())).trimmed();
        if (!types.contains(type)) types.append(type);
    }
    return types.join(", ");
}

QString NullText(const XRSFile& file)
{
    QStringList values;
    for (int i = 0; i < file.GetNumOfBands(); ++i) {
        const XDMBand& band = *file.GetBandAt(i);
        const QString value = band.HasNullValue() ? Real(band.GetNullValue()) : QString("none");
        if (!values.contains(value)) values.append(value);
    }
    return values.join(", ");
}

std::vector<std::pair<int, int>> StoredSizes(const XDMBand& band)
{
    if (const auto* foreign = dynamic_cast<const XDMBandGDAL*>(&band))
        return foreign->GetStoredSizes();
    std::vector<std::pair<int, int>> sizes;
    for (int level = 1; level < band.GetNumOfLevels(); ++level) {
        int width = 0;
        int height = 0;
        band.GetLevelSize(level, width, height);
        if (!band.IsVirtualLevel(level)) sizes.emplace_back(width, height);
    }
    return sizes;
}

QString OverviewText(const XDMBand& band)
{
    QStringList sizes;
    for (const auto& [width, height] : StoredSizes(band))
        sizes.append(QString("%1 x %2").arg(width).arg(height));
    return sizes.isEmpty() ? QString("none") : sizes.join(", ");
}

void AddStatistics(Rows& rows, const tagXLayer& layer)
{
    std::vector<int> shown;
    const XBandChoice& choice = *layer.bands;
    if (choice.IsColour())
        shown = {choice.GetBand(0), choice.GetBand(1), choice.GetBand(2)};
    else
        shown = {choice.GetGrayBand()};
    std::vector<int> told;
    for (const int index : shown) {
        const XDMBand* band = layer.file->GetBandAt(index);
        if (!band || std::find(told.begin(), told.end(), index) != told.end()) continue;
        told.push_back(index);
        const QString name = QString("Band %1").arg(index + 1);
        if (!XfnIsSet(band->GetBandMin()) || !XfnIsSet(band->GetBandMax())) {
            rows.emplace_back(name, "no valid sample");
            continue;
        }
        rows.emplace_back(name, QString("%1%2 to %3, mean %4, deviation %5")
                                    .arg(band->HasEstimatedStatistics() ? "estimated: " : "",
                                         Real(band->GetBandMin()), Real(band->GetBandMax()),
                                         Real(band->GetBandMean()), Real(band->GetBandStdDev())));
    }
}

} // namespace

QString XfnByteSizeText(long long bytes)
{
    static const char* const units[] = {"KiB", "MiB", "GiB", "TiB"};
    if (bytes < 1024) return QString("%1 bytes").arg(bytes);
    double size = static_cast<double>(bytes) / 1024;
    int unit = 0;
    while (size >= 1023.95 && unit < 3) {
        size /= 1024;
        ++unit;
    }
    return QString("%1 %2").arg(QString::number(size, 'f', 1), units[unit]);
}

std::vector<std::pair<QString, QString>> XfnLayerReport(const tagXLayer& layer)
{
    Rows rows;
    const XRSFile& file = *layer.file;
    const XDMBand* first = file.GetBandAt(0);
    if (!first) return rows;
    const QFileInfo info(layer.path);
    rows.emplace_back("File", info.fileName());
    rows.emplace_back("Size",
                      QString("%1 x %2 pixels").arg(first->GetXSize()).arg(first->GetYSize()));
    rows.emplace_back("Bands", QString::number(file.GetNumOfBands()));
    rows.emplace_back("Type", TypeText(file));
    const tagXWorldSystem system = XfnDescribeSystem(*first->GetSR());
    rows.emplace_back("Coordinates", XfnSystemText(system));
    if (system.unit != WorldUnit::Pixel)
        rows.emplace_back("Pixel size",
                          Real(first->GetXPixelSize()) + " x " + Real(first->GetYPixelSize()));
    const QString placement = XfnPlacementText(layer.miss);
    if (!placement.isEmpty()) rows.emplace_back("Place", placement);
    rows.emplace_back("Overviews", OverviewText(*first));
    rows.emplace_back("No data", NullText(file));
    AddStatistics(rows, layer);
    rows.emplace_back("Format", XfnToQString(file.GetFormatName()));
    if (!XfnIsPlainPath(layer.path)) {
        rows.emplace_back("Source", layer.path);
    } else {
        rows.emplace_back("File size",
                          info.exists() ? XfnByteSizeText(info.size()) : QString("gone since"));
        rows.emplace_back("Folder", info.path());
    }
    const QString notes = XfnToQString(file.GetNotes()).trimmed();
    if (!notes.isEmpty()) rows.emplace_back("Notes", notes);
    return rows;
}
