#include "host/gallery/XVectorScene.h"

#include "foundation/platform/XQtText.h"
#include "foundation/vector/XAttributeTable.h"
#include "foundation/vector/XVectorIO.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcPolygon.h"
#include "foundation/vector/XvcPolyline.h"

#include <QDir>

#include <cmath>
#include <cstring>
#include <memory>

namespace {

constexpr double kX = 293750; // about the middle of the scene
constexpr double kY = 9115745;
constexpr int kUtm25South = 31985;

XvcLayer& AddLayer(XvcBase& base, const char* name)
{
    auto* layer = new XvcLayer;
    layer->SetName(name);
    base.AddTail(layer);
    return *layer;
}

void AddDistricts(XvcBase& base)
{
    struct tagDistrict
    {
        const char* name;
        double x, y, radius;
        int people;
        double share;
    };
    const tagDistrict districts[] = {{"Harbour", 900, 700, 560, 4210, 0.31},
                                     {"Old Town", -100, 300, 780, 12875, 0.62},
                                     {"Mangrove", -1200, -500, 640, 318, 0.04},
                                     {"Southbank", 700, -800, 600, 7702, 0.48}};
    XvcLayer& layer = AddLayer(base, "Districts");
    const auto table = std::make_shared<XAttributeTable>();
    const int name = table->AddColumn("name", XAttributeTable::kText);
    const int people = table->AddColumn("inhabitants", XAttributeTable::kInteger);
    const int share = table->AddColumn("built-up share", XAttributeTable::kReal);
    for (const tagDistrict& district : districts) {
        auto* polygon = new XvcPolygon;
        for (int i = 0; i < 24; ++i) {
            const double angle = i * 3.14159265358979323846 / 12;
            const double radius = district.radius * (1 + 0.16 * std::sin(3 * angle + district.x));
            polygon->Add(kX + district.x + radius * std::cos(angle),
                         kY + district.y + radius * std::sin(angle), 0);
        }
        polygon->SetName(district.name);
        polygon->SetFillStyle(tagXFillStyle(tagXFillStyle::kNone));
        layer.AddTail(polygon);
        table->AddRow();
        table->SetText(name, district.name, std::strlen(district.name));
        table->SetInteger(people, district.people);
        table->SetReal(share, district.share);
    }
    table->Seal();
    int row = 0;
    for (__POSITION* pos = layer.GetHeadPosition(); pos;)
        static_cast<XvcObj*>(layer.GetNext(pos))->SetRecord(table->GetRecord(row++));
    layer.SetAttributes(table);
}

void AddRoads(XvcBase& base)
{
    XvcLayer& layer = AddLayer(base, "Roads");
    for (const double bend : {-0.35, 0.1, 0.6}) {
        auto* road = new XvcPolyline;
        for (int i = -12; i <= 12; ++i)
            road->Add(kX + i * 160, kY + bend * i * 150 + 260 * std::sin(i * 0.5 + bend * 9), 0);
        layer.AddTail(road);
    }
}

void AddStations(XvcBase& base)
{
    XvcLayer& layer = AddLayer(base, "Stations");
    for (int i = 0; i < 9; ++i)
        layer.AddTail(new XvcPoint(kX - 1500 + (i * 37 % 30) * 100, kY - 1000 + i * 260));
}

} // namespace

QString XfnWriteSketch(const QString& folder)
{
    XvcBase base;
    auto* line = new XvcPolyline;
    line->Add(1200, 300, 0);
    line->Add(1800, 900, 0);
    AddLayer(base, "Sketch").AddTail(line);
    base.CalcRange();
    const QString path = QDir(folder).filePath("sketch.xvc");
    XString error;
    return XfnExportXVC(XfnFromQString(path), &base, error) ? path : QString();
}

QString XfnWriteVectorScene(const QString& folder)
{
    XvcBase base;
    XSpatialReference reference;
    reference.importFromEPSG(kUtm25South);
    base.SetSR(&reference);
    AddDistricts(base);
    AddRoads(base);
    AddStations(base);
    base.CalcRange();
    const QString path = QDir(folder).filePath("town.xvc");
    XString error;
    return XfnExportXVC(XfnFromQString(path), &base, error) ? path : QString();
}
