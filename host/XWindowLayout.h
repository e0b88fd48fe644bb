#pragma once

#include <QByteArray>
#include <QPoint>
#include <QSize>

class QMainWindow;
class XSessionSettings;

/// Where the window and its panels stand: as they were left, as they are asked for, or as at first.
/// Both parts outlive it. User interface thread.
class XWindowLayout
{
public:
    XWindowLayout(QMainWindow& window, XSessionSettings& settings)
        : m_window(window), m_settings(settings)
    {}

    void Begin(); ///< all panels and bars are there: brings back how they were left
    /// As asked for, else as it was left, always inside an available screen.
    /// @param size  empty when none was asked for
    void Place(const QSize& size, const QPoint& pos, bool hasPos);
    void Shown(); ///< the first time: panels that were never moved share the height
    void Reset(); ///< as at first
    /// @param panels  their state, which a full screen hides
    void Keep(const QByteArray& panels);

private:
    void ShareHeight();

    QMainWindow& m_window;
    XSessionSettings& m_settings;
    QByteArray m_first;
    bool m_isShown = false;
};
