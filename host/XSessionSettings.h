#pragma once

#include "host/XStatusText.h"

#include <QByteArray>
#include <QRect>
#include <QString>
#include <QStringList>

#include <cstdint>

/// The look of objects that are drawn next, as the view takes it.
struct tagXDrawStyle
{
    std::uint32_t lineColor = 0xFF00FFFFu; ///< 0xFFBBGGRR
    std::uint32_t fillColor = 0xFF3C8CFFu;
    int line = 0;          ///< a predefined style of lines
    int fill = 1;          ///< of areas; none
    double thickness = -2; ///< pixels below 0
};

/// What the program remembers from one run to the next, in the user's configuration folder.
///
/// Every reading gives a usable value, whatever the file holds. User interface thread.
class XSessionSettings
{
public:
    /// True once for each user: the first time it is asked.
    bool TakeFirstRun();

    QStringList GetRecentFiles() const;
    void SetRecentFiles(const QStringList& paths);

    QString GetLastFolder() const; ///< where the program was started at first, or home
    void SetLastFolder(const QString& folder);

    /// Files that the user wants no pyramid offered for; the latest 200 are remembered.
    QStringList GetUnofferedFiles() const;
    void AddUnofferedFile(const QString& path);

    QRect GetWindowRect() const; ///< empty at first
    bool IsWindowMaximized() const;
    QByteArray GetWindowLayout() const;
    void SetWindow(const QRect& rect, bool isMaximized, const QByteArray& layout);

    ZoomFormat GetZoomFormat() const;
    void SetZoomFormat(ZoomFormat format);
    GeoFormat GetGeoFormat() const;
    void SetGeoFormat(GeoFormat format);

    bool IsProgressive() const; ///< draws large images in passes; true at first
    void SetProgressive(bool isOn);

    bool IsButtonPanelShown() const; ///< false at first
    void SetButtonPanelShown(bool isOn);

    std::uint32_t GetBackground() const; ///< 0xFFBBGGRR; black at first
    void SetBackground(std::uint32_t color);

    tagXDrawStyle GetDrawStyle() const;
    void SetDrawStyle(const tagXDrawStyle& style);
};
