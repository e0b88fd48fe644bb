#pragma once

#include <QString>

#include <functional>

class XLayerTree;
class XNoticeBar;

/// What the user might not see of an open raster: said in the notice bar when it concerns the raster
/// as long as it is open, in the status bar when it is of the moment.
///
/// What it is given outlives it. User interface thread.
class XRasterNotices
{
public:
    XRasterNotices(XLayerTree& tree, XNoticeBar& bar) : m_tree(tree), m_bar(bar) {}

    /// Says something in the status bar, with the whole of it in `detail`.
    void SetNotice(std::function<void(const QString& text, const QString& detail)> notice);
    void SetIsInView(std::function<bool(const double (&box)[4])> isInView);

    /// The current raster was opened: what its reader noted, and where it stands.
    /// @param isFirst  nothing was open before: the view takes its place from it
    void TellOfOpened(bool isFirst);
    /// Black where a file cannot be read looks like no data: each file says once why it is so, shown
    /// or hidden, as soon as anything has read that part.
    void TellUnread();

private:
    QString GetPlaceText(int index) const;

    XLayerTree& m_tree;
    XNoticeBar& m_bar;
    std::function<void(const QString&, const QString&)> m_notice;
    std::function<bool(const double (&)[4])> m_isInView;
};
