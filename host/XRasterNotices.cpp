#include "host/XRasterNotices.h"

#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XRSFile.h"
#include "host/XLayerPlacement.h"
#include "host/XLayerTree.h"
#include "host/XNoticeBar.h"
#include "host/XVectorReader.h"

#include <QStringList>

#include <utility>

namespace {

bool HasSystem(const tagXLayer& layer)
{
    XDMBand* band = layer.composite->GetFirstBand();
    return band && band->GetSR() && !band->GetSR()->IsEmpty();
}

QString FindDamage(const tagXLayer& layer)
{
    XString why = layer.composite->GetDrawMessage();
    for (int i = 0; why.IsEmpty() && i < layer.file->GetNumOfBands(); ++i)
        why = layer.file->GetBandAt(i)->GetDamage();
    return XfnWithoutPath(XfnToQString(why).simplified(), layer.path);
}

} // namespace

void XRasterNotices::SetNotice(std::function<void(const QString&, const QString&)> notice)
{
    m_notice = std::move(notice);
}

void XRasterNotices::SetIsInView(std::function<bool(const double (&)[4])> isInView)
{
    m_isInView = std::move(isInView);
}

QString XRasterNotices::GetPlaceText(int index) const
{
    const tagXLayer& layer = *m_tree.GetRasters().GetAt(index);
    const bool isViewPlaced = !m_tree.GetVectors().GetViewReference().IsEmpty();
    QString text;
    if (!HasSystem(layer) && isViewPlaced)
        text = layer.name + " has no coordinate system; its columns and rows are taken for the "
                            "coordinates of the view.";
    else if (HasSystem(layer) && !isViewPlaced)
        text =
            layer.name + " is shown with its own coordinates: the view has no coordinate system.";
    if (!m_tree.IsFarFromOthers(m_tree.GetVectors().GetCount() + index)) return text;
    return (text.isEmpty() ? layer.name : text + " It") +
           " lies outside all other layers: View > Fit Layer shows it.";
}

void XRasterNotices::TellOfOpened(bool isFirst)
{
    const XLayerStack& layers = m_tree.GetRasters();
    const int index = layers.GetCurrent();
    const tagXLayer* layer = layers.GetAt(index);
    if (!layer) return;
    QStringList notices;
    const QString notes =
        XfnToQString(layer->file->GetNotes()).remove("\"" + layer->path + "\": ").trimmed();
    if (!notes.isEmpty()) notices.append(layer->name + ": " + notes.section('\n', 0, 0));
    if (!isFirst) {
        const QString placement = XfnPlacementText(layer->miss);
        if (!placement.isEmpty()) notices.append(layer->name + ": " + placement);
        const QString place = GetPlaceText(index);
        if (!place.isEmpty()) m_bar.Tell(layer->path, place, XNoticeBar::Topic::Place);
        double box[4] = {0, 0, 0, 0};
        if (place.isEmpty() && layers.GetExtent(index, box) && m_isInView && !m_isInView(box))
            notices.append(layer->name + " lies outside the view; View > Fit Layer shows it");
    }
    if (!notices.isEmpty() && m_notice) m_notice(notices.join(". "), notes);
}

void XRasterNotices::TellUnread()
{
    const XLayerStack& layers = m_tree.GetRasters();
    for (int i = 0; i < layers.GetCount(); ++i) {
        const tagXLayer& layer = *layers.GetAt(i);
        const QString why = FindDamage(layer);
        if (why.isEmpty()) continue;
        m_bar.Tell(
            layer.path,
            QString("A part of %1 cannot be read and is left out. (%2)").arg(layer.name, why));
    }
}
