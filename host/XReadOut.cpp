#include "host/XReadOut.h"

#include "foundation/base/XSentinels.h"
#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMBandComplex.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XNullSample.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/reference/XCoordinateTransformation.h"
#include "foundation/surface/XBackBuffer.h"
#include "host/XLayerTree.h"
#include "host/XStatusWidget.h"
#include "view/XTQSpaceView.h"

#include <cmath>
#include <type_traits>

tagXWorldSystem XfnDescribeSystem(const XSpatialReference& reference)
{
    tagXWorldSystem system;
    if (reference.GetCoordType() == 1) {
        system.unit = WorldUnit::Pixel;
        return system;
    }
    if (reference.IsEmpty()) return system;
    system.name = XfnToQString(reference.GetName());
    // some formats hold the numbers of a system without its name
    if (system.name.isEmpty() || system.name == "unnamed" || system.name == "unknown") {
        const QString method = XfnToQString(reference.GetMethodName());
        const QString datum = XfnToQString(reference.GetDatumName());
        system.name = method.isEmpty() ? datum : method + ", " + datum;
    }
    reference.GetRefSysCode(&system.code);
    if (reference.IsGeographic()) {
        system.unit = WorldUnit::Degree;
    } else if (reference.IsProjected()) {
        system.unit = WorldUnit::Linear;
        system.metresPerUnit = reference.GetLinearUnits();
    }
    return system;
}

QString XfnSystemText(const tagXWorldSystem& system)
{
    if (system.unit == WorldUnit::Pixel) return "no coordinate system";
    if (system.name.isEmpty()) return "unknown coordinate system";
    return system.code > 0 ? QString("EPSG:%1 %2").arg(QString::number(system.code), system.name)
                           : system.name;
}

namespace {

constexpr int kNameLetters = 20; // of a layer behind its samples

bool IsInside(const XDMComposite& composite, double x, double y)
{
    for (int ch = 0; ch < 3; ++ch) {
        const XDMBand* band = composite.GetBand(ch);
        if (!band) continue;
        double column = x;
        double row = y;
        composite.ConvWorldToPixelCoord(column, row, ch);
        if (column >= -0.5 && row >= -0.5 && column < band->GetXSize() - 0.5 &&
            row < band->GetYSize() - 0.5)
            return true;
    }
    return false;
}

// Whether a sample is the value that stands for no data in its band.
bool IsNull(const XDMBand& band, double value)
{
    if (!band.HasNullValue()) return false;
    if (std::isnan(band.GetNullValue())) return std::isnan(value);
    return XfnDispatchRealType<bool>(band.GetDataType(), [&](auto* type) {
        using Sample = std::remove_cv_t<std::remove_pointer_t<decltype(type)>>;
        bool hasNull = false;
        const Sample null = XfnNullSample<Sample>(band.GetNullValue(), hasNull);
        return hasNull && static_cast<double>(null) == value;
    });
}

int GetDataType(const XDMBand& band)
{
    const auto* part = dynamic_cast<const XDMBandComplex*>(&band);
    return part && part->GetInnerBand() ? part->GetInnerBand()->GetDataType() : band.GetDataType();
}

QString SamplesText(const XDMComposite& composite, const double (&values)[3])
{
    const XDMBand* first = composite.GetBand(0);
    if (first && XfnIsComplexType(GetDataType(*first))) return XfnComplexText(values[0], values[1]);
    double shown[3] = {kXNoData, kXNoData, kXNoData};
    const bool isColour = composite.GetMode() != 0;
    for (int i = 0; i < 3; ++i) {
        const int channel = isColour ? 2 - i : i; // channel 0 is blue, shown last
        const XDMBand* band = composite.GetBand(channel);
        if (band && !IsNull(*band, values[channel])) shown[i] = values[channel];
    }
    return XfnSamplesText(shown, isColour);
}

} // namespace

XReadOut::XReadOut(XTQSpaceView& view, XLayerTree& tree, XStatusWidget& status)
    : m_view(view), m_tree(tree), m_layers(tree.GetRasters()), m_status(status)
{
    m_tree.AddObserver([this](LayerChange change) {
        if (change == LayerChange::Closing) return;
        m_samples.clear();
        m_status.SetLayersNamed(m_layers.GetCount() > 1);
        OnSystemChanged();
        Show();
        ShowScale();
    });
}

XReadOut::~XReadOut() = default;

void XReadOut::OnPointer(int xPx, int yPx)
{
    m_hasPointer = true;
    m_xPx = xPx;
    m_yPx = yPx;
    Show();
}

void XReadOut::OnViewChanged()
{
    ShowScale();
    if (m_hasPointer) Show();
}

void XReadOut::OnSystemChanged()
{
    const bool isEmpty = m_tree.GetRowCount() == 0;
    const XSpatialReference reference =
        isEmpty ? XSpatialReference() : *m_view.GetXDMCompManager()->GetSR();
    const bool isSame =
        reference.IsSame(&m_reference) && reference.GetCoordType() == m_reference.GetCoordType();
    if (!isSame) {
        m_reference = reference;
        m_system = XfnDescribeSystem(reference);
        XSpatialReference geographic;
        geographic.importFromEPSG(4326);
        m_toGeographic = XfnCreateCoordTrans(&m_reference, &geographic);
    }
    m_status.SetSystem(isEmpty ? QString() : XfnSystemText(m_system));
}

void XReadOut::SetZoomFormat(ZoomFormat format)
{
    m_zoomFormat = format;
    ShowScale();
}

void XReadOut::SetGeoFormat(GeoFormat format)
{
    m_geoFormat = format;
    Show();
}

void XReadOut::GetPoint(double& x, double& y) const
{
    const XBackBuffer& buffer = *m_view.GetBackBuffer();
    x = m_hasPointer ? m_xPx : buffer.GetWidth() / 2.0;
    y = m_hasPointer ? m_yPx : buffer.GetHeight() / 2.0;
    buffer.ConvPixelToWorldCoord(x, y);
}

bool XReadOut::GetGeographic(double x, double y, double& latDeg, double& lonDeg) const
{
    if (!m_toGeographic || m_tree.GetRowCount() == 0) return false;
    if (!m_toGeographic->TransformPt(x, y) || !XfnIsSet(x) || !XfnIsSet(y)) return false;
    lonDeg = x;
    latDeg = y;
    return true;
}

// The samples of the current layer, which is named when there are others. While a pass draws, the
// view reads nothing: what was read of this place stays, and dots stand for another.
QString XReadOut::MakeSamples(double x, double y)
{
    const tagXLayer* layer = m_layers.GetAt(m_layers.GetCurrent());
    if (!layer || !IsInside(*layer->composite, x, y)) return QString();
    double values[3] = {};
    if (!m_view.ShowPosValue(m_xPx, m_yPx, values, layer->composite))
        return m_samplesPx[0] == m_xPx && m_samplesPx[1] == m_yPx ? m_samples : QString("\u2026");
    QString text = SamplesText(*layer->composite, values);
    if (m_layers.GetCount() > 1) text += "  in " + XfnShortName(layer->name, kNameLetters);
    m_samples = text;
    m_samplesPx[0] = m_xPx;
    m_samplesPx[1] = m_yPx;
    return text;
}

void XReadOut::Show()
{
    if (!m_hasPointer || m_tree.GetRowCount() == 0) {
        m_status.SetSamples(QString());
        m_status.SetPosition(QString());
        m_status.SetGeographic(QString());
        return;
    }
    double x = 0;
    double y = 0;
    GetPoint(x, y);
    m_status.SetSamples(MakeSamples(x, y));
    m_status.SetPosition(XfnPositionText(x, y, m_system.unit));
    double lat = 0;
    double lon = 0;
    m_status.SetGeographic(GetGeographic(x, y, lat, lon) ? XfnGeographicText(lat, lon, m_geoFormat)
                                                         : QString());
}

void XReadOut::ShowScale()
{
    const tagXLayer* layer = m_layers.GetAt(m_layers.GetCurrent());
    if (m_tree.GetRowCount() == 0) {
        m_status.SetScale(QString());
        return;
    }
    const XBackBuffer& buffer = *m_view.GetBackBuffer();
    const XDMBand* band = layer ? layer->composite->GetFirstBand() : nullptr;
    double metres = m_system.metresPerUnit;
    if (m_system.unit == WorldUnit::Degree) {
        double x = 0;
        double y = 0;
        buffer.GetWorldToCenter(x, y);
        metres = XfnMetresPerDegree(y);
    }
    const double dpi = m_view.logicalDpiX() * m_view.devicePixelRatioF();
    m_status.SetScale(XfnZoomText(buffer.GetWorldPerPixel(), metres,
                                  band ? band->GetXPixelSize() : 0, dpi, m_zoomFormat));
}

QString XReadOut::GetPositionText() const
{
    if (m_tree.GetRowCount() == 0) return QString();
    double x = 0;
    double y = 0;
    GetPoint(x, y);
    return XfnCoordinateForClipboard(x, y, m_system.unit, m_system.code, m_system.name);
}

QString XReadOut::GetGeographicText() const
{
    double x = 0;
    double y = 0;
    GetPoint(x, y);
    double lat = 0;
    double lon = 0;
    if (!GetGeographic(x, y, lat, lon)) return QString();
    return XfnCoordinateForClipboard(lon, lat, WorldUnit::Degree, 4326, "WGS 84");
}
