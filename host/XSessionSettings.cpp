#include "host/XSessionSettings.h"

#include <QDir>
#include <QSettings>

#include <cmath>

bool XSessionSettings::TakeFirstRun()
{
    QSettings settings;
    if (settings.value("session/started", false).toBool()) return false;
    settings.setValue("session/started", true);
    return true;
}

QStringList XSessionSettings::GetRecentFiles() const
{
    return QSettings().value("files/recent").toStringList();
}

void XSessionSettings::SetRecentFiles(const QStringList& paths)
{
    QSettings().setValue("files/recent", paths);
}

QString XSessionSettings::GetLastFolder() const
{
    const QString folder = QSettings().value("files/folder").toString();
    if (!folder.isEmpty()) return folder;
    const QDir here = QDir::current(); // a desktop starts programs in the root
    return here.isRoot() ? QDir::homePath() : here.path();
}

void XSessionSettings::SetLastFolder(const QString& folder)
{
    QSettings().setValue("files/folder", folder);
}

QStringList XSessionSettings::GetUnofferedFiles() const
{
    return QSettings().value("levels/unoffered").toStringList();
}

void XSessionSettings::AddUnofferedFile(const QString& path)
{
    constexpr int kMost = 200;
    QStringList paths = GetUnofferedFiles();
    paths.removeAll(path);
    paths.append(path);
    while (paths.size() > kMost)
        paths.removeFirst();
    QSettings().setValue("levels/unoffered", paths);
}

QRect XSessionSettings::GetWindowRect() const
{
    return QSettings().value("window/rect").toRect();
}

bool XSessionSettings::IsWindowMaximized() const
{
    return QSettings().value("window/maximized", false).toBool();
}

QByteArray XSessionSettings::GetWindowLayout() const
{
    return QSettings().value("window/layout").toByteArray();
}

void XSessionSettings::SetWindow(const QRect& rect, bool isMaximized, const QByteArray& layout)
{
    QSettings settings;
    settings.setValue("window/rect", rect);
    settings.setValue("window/maximized", isMaximized);
    settings.setValue("window/layout", layout);
}

ZoomFormat XSessionSettings::GetZoomFormat() const
{
    return QSettings().value("status/percent", false).toBool() ? ZoomFormat::Percent
                                                               : ZoomFormat::Ratio;
}

void XSessionSettings::SetZoomFormat(ZoomFormat format)
{
    QSettings().setValue("status/percent", format == ZoomFormat::Percent);
}

GeoFormat XSessionSettings::GetGeoFormat() const
{
    return QSettings().value("status/dms", false).toBool() ? GeoFormat::Dms : GeoFormat::Decimal;
}

void XSessionSettings::SetGeoFormat(GeoFormat format)
{
    QSettings().setValue("status/dms", format == GeoFormat::Dms);
}

bool XSessionSettings::IsProgressive() const
{
    return QSettings().value("view/progressive", true).toBool();
}

void XSessionSettings::SetProgressive(bool isOn)
{
    QSettings().setValue("view/progressive", isOn);
}

bool XSessionSettings::IsButtonPanelShown() const
{
    return QSettings().value("view/buttons", false).toBool();
}

void XSessionSettings::SetButtonPanelShown(bool isOn)
{
    QSettings().setValue("view/buttons", isOn);
}

namespace {

std::uint32_t ReadColor(const char* key, std::uint32_t first)
{
    bool isNumber = false;
    const unsigned value = QSettings().value(key).toString().toUInt(&isNumber, 16);
    return 0xFF000000u | ((isNumber ? value : first) & 0x00FFFFFFu);
}

void WriteColor(const char* key, std::uint32_t color)
{
    QSettings().setValue(key, QString::number(color & 0x00FFFFFFu, 16));
}

} // namespace

std::uint32_t XSessionSettings::GetBackground() const
{
    return ReadColor("view/background", 0);
}

void XSessionSettings::SetBackground(std::uint32_t color)
{
    WriteColor("view/background", color);
}

tagXDrawStyle XSessionSettings::GetDrawStyle() const
{
    const QSettings settings;
    tagXDrawStyle style;
    style.lineColor = ReadColor("draw/lineColour", style.lineColor);
    style.fillColor = ReadColor("draw/fillColour", style.fillColor);
    style.line = settings.value("draw/line", style.line).toInt();
    style.fill = settings.value("draw/fill", style.fill).toInt();
    bool isNumber = false;
    const double thickness = settings.value("draw/thickness").toString().toDouble(&isNumber);
    if (isNumber && std::isfinite(thickness)) style.thickness = thickness;
    return style;
}

void XSessionSettings::SetDrawStyle(const tagXDrawStyle& style)
{
    WriteColor("draw/lineColour", style.lineColor);
    WriteColor("draw/fillColour", style.fillColor);
    QSettings settings;
    settings.setValue("draw/line", style.line);
    settings.setValue("draw/fill", style.fill);
    settings.setValue("draw/thickness", QString::number(style.thickness, 'g', 12));
}
