#pragma once

#include "foundation/reference/XSpatialReference.h"
#include "host/XStatusText.h"

#include <QString>

#include <memory>

class XCoordinateTransformation;
class XLayerStack;
class XLayerTree;
class XStatusWidget;
class XTQSpaceView;

/// A coordinate system as the read-outs need it.
struct tagXWorldSystem
{
    WorldUnit unit = WorldUnit::Unknown;
    double metresPerUnit = 0; ///< linear systems only
    int code = 0;             ///< EPSG, 0 when unknown
    QString name;
};
tagXWorldSystem XfnDescribeSystem(const XSpatialReference& reference);

/// "EPSG:31985 SIRGAS 2000 / UTM zone 25S", "no coordinate system", "unknown coordinate system".
QString XfnSystemText(const tagXWorldSystem& system);

/// Keeps the read-outs of the status bar true: the samples under the pointer, where that is, and the
/// scale of the view. User interface thread; view, layers and status bar outlive it.
class XReadOut
{
public:
    XReadOut(XTQSpaceView& view, XLayerTree& tree, XStatusWidget& status);
    ~XReadOut();

    void OnPointer(int xPx, int yPx); ///< device pixels of the view
    void OnViewChanged();             ///< the mapping or the picture is another
    void OnSystemChanged();           ///< the view's coordinate system may be another

    void SetZoomFormat(ZoomFormat format);
    void SetGeoFormat(GeoFormat format);

    /// The position under the pointer as text that names its system; the centre of the view while
    /// the pointer has not been over it. Empty when a geographic position is asked for and there is
    /// none.
    QString GetPositionText() const;
    QString GetGeographicText() const;

private:
    void Show();
    void ShowScale();
    QString MakeSamples(double x, double y);
    void GetPoint(double& x, double& y) const;
    bool GetGeographic(double x, double y, double& latDeg, double& lonDeg) const;

    XTQSpaceView& m_view;
    XLayerTree& m_tree;
    XLayerStack& m_layers;
    XStatusWidget& m_status;
    ZoomFormat m_zoomFormat = ZoomFormat::Ratio;
    GeoFormat m_geoFormat = GeoFormat::Decimal;
    tagXWorldSystem m_system;
    XSpatialReference m_reference;
    std::unique_ptr<XCoordinateTransformation> m_toGeographic;
    bool m_hasPointer = false;
    int m_xPx = 0;
    int m_yPx = 0;
    QString m_samples;       // the last ones read,
    int m_samplesPx[2] = {}; // and where
};
