#pragma once

#include "foundation/platform/XWindowMessages.h"

#include <QString>
#include <QStringList>

#include <functional>

class XJobRunner;
class XLayerStack;
class XLevelBar;
class XMainActions;
class XSessionSettings;
class XString;
struct tagXLayer;

/// Pyramids and exact statistics of the open files: offers, commands, and what becomes of them.
///
/// Jobs work on files of their own; what they made is taken up by every layer of the same path, so a
/// layer may be closed while its job runs. All parts outlive it.
class XLevelActions
{
public:
    XLevelActions(XHWND handle, XLayerStack& layers, XMainActions& actions, XJobRunner& jobs,
                  XLevelBar& bar, XSessionSettings& settings);

    /// Receives what is worth a line in the status bar, and what a tip adds to it.
    void SetNotice(std::function<void(const QString& text, const QString& detail)> notice)
    {
        m_notice = std::move(notice);
    }
    void EnableActions();

private:
    void FollowLayers();
    void Offer();
    void AskAndBuild();
    void Build(const QString& path);
    void AskAndCompute();
    void ComputeStatistics(const QString& path);
    void TellKept(const QString& what, const XString& made);
    void Told(const QString& what, bool isStopped, const QString& message);
    void ForLayersOf(const QString& path, const std::function<void(const tagXLayer&)>& change);

    XHWND m_handle;
    XLayerStack& m_layers;
    XMainActions& m_actions;
    XJobRunner& m_jobs;
    XLevelBar& m_bar;
    XSessionSettings& m_settings;
    std::function<void(const QString&, const QString&)> m_notice;
    QString m_offered;     // the path that the bar is about
    QStringList m_refused; // paths that are not offered again in this session
};
