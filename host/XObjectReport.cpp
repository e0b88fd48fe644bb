#include "host/XObjectReport.h"

#include "foundation/platform/XQtText.h"
#include "foundation/vector/XAttributeTable.h"
#include "foundation/vector/XvcLayer.h"
#include "host/XLayerReport.h"
#include "host/XObjectSize.h"
#include "host/XReadOut.h"
#include "host/XVectorStack.h"
#include "host/XVectorVisit.h"

#include <QFileInfo>
#include <QMap>

#include <algorithm>
#include <cmath>
#include <map>

namespace {

using Rows = std::vector<std::pair<QString, QString>>;

// Six digits that count, and all those before the point: never an exponent that one has to work out.
QString Number(double value)
{
    constexpr double kLeast = 1e-4, kMost = 1e15;
    const double size = std::fabs(value);
    if (!(size < kMost) || (size > 0 && size < kLeast)) return QString::number(value, 'g', 6);
    const int digits = size > 0 ? static_cast<int>(std::floor(std::log10(size))) : 0;
    QString text = QString::number(value, 'f', std::max(0, 5 - digits));
    if (!text.contains('.')) return text;
    while (text.endsWith('0'))
        text.chop(1);
    return text.endsWith('.') ? text.chopped(1) : text;
}

void AddExtent(Rows& rows, const tagXVectorRange& range, WorldUnit unit)
{
    const auto span = [unit](double from, double to) {
        return XfnNumberText(from, unit) + " to " + XfnNumberText(to, unit);
    };
    rows.emplace_back("West to east", span(range.minX, range.maxX));
    rows.emplace_back("South to north", span(range.minY, range.maxY));
}

// What the coordinates of a file's objects are in now.
const XSpatialReference& GetSystem(const tagXVectorFile& file)
{
    return file.isPlaced ? *file.base->GetSR() : file.reference;
}

// Values of files may hold anything; a row of a table is one line.
QString OneLine(const XString& text)
{
    return XfnToQString(text).simplified();
}

void AddSize(Rows& rows, const tagXObjectSize& size)
{
    const bool isMetric = size.isMetric;
    const auto length = [isMetric](double value) {
        return isMetric ? XfnLengthText(value) : Number(value) + " units";
    };
    if (size.hasArea) {
        rows.emplace_back("Area",
                          isMetric ? XfnAreaText(size.area) : Number(size.area) + " square units");
        rows.emplace_back("Perimeter", length(size.length));
    } else if (size.hasLength) {
        rows.emplace_back("Length", length(size.length));
    }
}

void AddPlace(Rows& rows, const XvcObj& object, const XSpatialReference& world)
{
    const tagXVectorRange& range = object.GetRange();
    if (range.IsEmpty()) {
        rows.emplace_back("Position", "none that could be shown");
        return;
    }
    const tagXWorldSystem system = XfnDescribeSystem(world);
    const double x = (range.minX + range.maxX) / 2;
    const double y = (range.minY + range.maxY) / 2;
    const bool isPoint = range.minX == range.maxX && range.minY == range.maxY;
    rows.emplace_back(isPoint ? "Position" : "Centre", XfnPositionText(x, y, system.unit));
    if (!isPoint) AddExtent(rows, range, system.unit);
    rows.emplace_back("Coordinates", XfnSystemText(system));
}

void AddAttributes(Rows& rows, const XvcObj& object)
{
    int row = -1;
    const XAttributeTable* table = XfnGetAttributes(&object, row);
    if (!table || table->GetNumOfColumns() == 0) return;
    rows.emplace_back("Attributes", QString());
    for (int column = 0; column < table->GetNumOfColumns(); ++column) {
        QString value = OneLine(table->GetText(row, column));
        if (value.isNull()) value = ""; // a null one would be a heading
        rows.emplace_back(OneLine(table->GetColumnName(column)), value);
    }
}

QString Scaled(double value, const char* unit)
{
    return Number(value) + " " + QString::fromUtf8(unit);
}

} // namespace

QString XfnLengthText(double metres)
{
    if (!std::isfinite(metres)) return QString();
    return std::fabs(metres) < 1000 ? Scaled(metres, "m") : Scaled(metres / 1000, "km");
}

QString XfnAreaText(double squareMetres)
{
    if (!std::isfinite(squareMetres)) return QString();
    const double size = std::fabs(squareMetres);
    if (size < 1e4) return Scaled(squareMetres, "m²");
    return size < 1e6 ? Scaled(squareMetres / 1e4, "ha") : Scaled(squareMetres / 1e6, "km²");
}

QString XfnClassText(const char* className)
{
    static const QMap<QString, QString> names = {
        {"XvcPoint", "Point"},
        {"XvcMPoint", "Points"},
        {"XvcPolypoint", "Points"},
        {"XvcLine", "Line"},
        {"XvcMLine", "Lines"},
        {"XvcPolyline", "Polyline"},
        {"XvcMPolyline", "Polyline of several parts"},
        {"XvcPolygon", "Polygon"},
        {"XvcMPolygon", "Polygon with parts or holes"},
        {"XvcBspline", "Spline"},
        {"XvcArcClosed", "Closed arc"},
        {"XvcText", "Text"},
        {"XvcMText", "Texts"},
        {"XvcTextBox", "Text box"},
        {"XvcBitmap", "Picture"},
        {"XvcRaster", "Raster patch"},
        {"XvcMSymbol", "Symbols"},
        {"XvcGroup2", "Group"},
        {"XvcNorthArrow", "North arrow"},
        {"XvcScaleBar", "Scale bar"},
    };
    const QString name(className);
    return names.value(name, name.startsWith("Xvc") ? name.mid(3) : name);
}

Rows XfnObjectReport(const XvcObj& object, const tagXVectorFile& file, const tagXVectorLayer& layer,
                     const XSpatialReference& world)
{
    Rows rows;
    const QString name = OneLine(object.GetName());
    if (!name.isEmpty()) rows.emplace_back("Name", name);
    rows.emplace_back("Class", XfnClassText(object.GetRuntimeClass()->m_lpszClassName));
    const QString layerName = OneLine(layer.layer->GetName());
    if (!layerName.isEmpty()) rows.emplace_back("Layer", layerName);
    if (!file.path.isEmpty()) rows.emplace_back("File", QFileInfo(file.path).fileName());
    AddAttributes(rows, object);
    rows.emplace_back("Size and Place", QString());
    const tagXObjectSize size = XfnMeasureObject(object, GetSystem(file));
    AddSize(rows, size);
    if (size.parts > 1) rows.emplace_back("Parts", QString::number(size.parts));
    if (size.vertices > 0) rows.emplace_back("Vertices", QString::number(size.vertices));
    AddPlace(rows, object, GetSystem(file).IsEmpty() ? world : GetSystem(file));
    const QString link = OneLine(object.GetLink());
    if (!link.isEmpty()) rows.emplace_back("Link", link);
    return rows;
}

QString XfnReportText(const Rows& rows)
{
    QString text;
    for (const auto& [name, value] : rows)
        if (!value.isNull()) text += name + "\t" + value + "\n";
    return text;
}

Rows XfnVectorReport(const tagXVectorFile& file, const XvcLayer* layer)
{
    Rows rows;
    const QFileInfo info(file.path);
    rows.emplace_back("File", file.path.isEmpty() ? QString("not saved yet") : info.fileName());
    long long count = 0;
    std::map<const XRuntimeClass*, long long> kinds;
    QStringList columns;
    for (const tagXVectorLayer& one : file.layers) {
        if (layer && one.layer != layer) continue;
        XfnVisitObjects(*one.layer, [&](const XvcObj& object) {
            ++count;
            ++kinds[object.GetRuntimeClass()];
            return true;
        });
        const auto& table = one.layer->GetAttributes();
        for (int i = 0; table && i < table->GetNumOfColumns(); ++i)
            if (const QString name = OneLine(table->GetColumnName(i)); !columns.contains(name))
                columns.append(name);
    }
    if (!layer && file.layers.size() > 1)
        rows.emplace_back("Layers", QString::number(file.layers.size()));
    rows.emplace_back("Objects", QString::number(count));
    QMap<QString, long long> classes; // by name, and in its order
    for (const auto& [kind, number] : kinds)
        classes[XfnClassText(kind->m_lpszClassName)] += number;
    QStringList texts;
    for (auto kind = classes.begin(); kind != classes.end(); ++kind)
        texts.append(classes.size() == 1 ? kind.key()
                                         : QString("%1: %2").arg(kind.key()).arg(kind.value()));
    if (!texts.isEmpty()) rows.emplace_back("Kind", texts.join(", "));
    rows.emplace_back("Coordinates", XfnSystemText(XfnDescribeSystem(file.reference)));
    if (file.isGuessed)
        rows.emplace_back("Place", "taken for WGS 84 longitude and latitude");
    else if (!file.isPlaced)
        rows.emplace_back("Place", "shown with its own coordinates");
    const tagXVectorRange& range = layer ? layer->GetRange() : file.base->GetRange();
    if (!range.IsEmpty()) {
        const tagXWorldSystem system = XfnDescribeSystem(GetSystem(file));
        const bool isCarried = file.isPlaced && !GetSystem(file).IsSame(&file.reference);
        if (isCarried) rows.emplace_back("Extent in", XfnSystemText(system));
        AddExtent(rows, range, system.unit);
    }
    if (!columns.isEmpty()) rows.emplace_back("Attributes", columns.join(", "));
    if (layer) return rows;
    if (info.exists()) rows.emplace_back("File size", XfnByteSizeText(info.size()));
    rows.emplace_back("Folder", info.path());
    if (!file.notes.isEmpty()) rows.emplace_back("Notes", file.notes.join("\n"));
    return rows;
}
