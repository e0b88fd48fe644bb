#include "host/XLevelActions.h"

#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMBandGDAL.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "host/XJobRunner.h"
#include "host/XLayerStack.h"
#include "host/XLevelBar.h"
#include "host/XMainActions.h"
#include "host/XRasterOpener.h"
#include "host/XSessionSettings.h"

#include <QFileInfo>

#include <map>
#include <memory>
#include <vector>

namespace {

QString FolderOf(const XString& path)
{
    return QFileInfo(XfnToQString(path)).path();
}

QString NameOf(const QString& path)
{
    return QFileInfo(path).fileName();
}

/// Where the sidecar `extension` of an image will be, and that the image stays as it is.
QString KeepText(const QString& path, const char* extension)
{
    const XString beside = XRasterSidecar(XfnFromQString(path)).GetBeside(extension);
    QString text = "They are kept in your cache. ";
    if (!beside.IsEmpty() && QFileInfo(FolderOf(beside)).isWritable())
        text =
            QString("They are kept in \"%1\" beside the file. ").arg(NameOf(XfnToQString(beside)));
    else if (!beside.IsEmpty())
        text = QString("They are kept in your cache, since nothing can be written in \"%1\". ")
                   .arg(FolderOf(beside));
    return text + "The file itself is not changed.";
}

} // namespace

XLevelActions::XLevelActions(XHWND handle, XLayerStack& layers, XMainActions& actions,
                             XJobRunner& jobs, XLevelBar& bar, XSessionSettings& settings)
    : m_handle(handle),
      m_layers(layers),
      m_actions(actions),
      m_jobs(jobs),
      m_bar(bar),
      m_settings(settings)
{
    m_actions.Connect("image.pyramid", [this] { AskAndBuild(); });
    m_actions.Connect("image.statistics", [this] { AskAndCompute(); });
    m_bar.SetAnswered([this](XLevelBar::Answer answer) {
        const QString path = m_offered;
        m_refused.append(path);
        if (answer == XLevelBar::Answer::Never) m_settings.AddUnofferedFile(path);
        if (answer == XLevelBar::Answer::Build) Build(path);
        Offer(); // the next one
    });
    m_layers.AddObserver([this](LayerChange change) {
        if (change != LayerChange::Closing) FollowLayers();
    });
    EnableActions();
}

void XLevelActions::FollowLayers()
{
    EnableActions();
    Offer();
}

void XLevelActions::EnableActions()
{
    const tagXLayer* layer = m_layers.GetAt(m_layers.GetCurrent());
    const bool isForeign =
        layer && dynamic_cast<const XDMBandGDAL*>(layer->file->GetBandAt(0)) != nullptr;
    const bool isLarge = isForeign && layer->file->GetBandAt(0)->GetLevel() > 0;
    const QString noLayer = "Open an image first";
    m_actions.SetEnabled("image.pyramid", isLarge,
                         !layer      ? noLayer
                         : isForeign ? QString("The image is too small to need a pyramid")
                                     : QString("The image has all levels in its file"));
    m_actions.SetEnabled("image.statistics", layer, noLayer);
}

void XLevelActions::Offer()
{
    m_offered.clear();
    const QStringList never = m_settings.GetUnofferedFiles();
    for (int i = 0; i < m_layers.GetCount() && m_offered.isEmpty(); ++i) {
        const tagXLayer& layer = *m_layers.GetAt(i);
        if (m_refused.contains(layer.path) || never.contains(layer.path) ||
            !XRSFileIO::NeedsLevels(layer.file.get()))
            continue;
        m_offered = layer.path;
        const XDMBand& band = *layer.file->GetBandAt(0);
        m_bar.Offer(QString("%1 (%2 x %3 pixels) has no pyramid, which makes it slow to show as a "
                            "whole.")
                        .arg(layer.name)
                        .arg(band.GetXSize())
                        .arg(band.GetYSize()));
    }
    if (m_offered.isEmpty()) m_bar.hide();
}

void XLevelActions::AskAndBuild()
{
    const tagXLayer* layer = m_layers.GetAt(m_layers.GetCurrent());
    if (!layer) return;
    const QString path = layer->path; // the layer may go while the question stands
    const QString question =
        QString("Build the levels of a pyramid of %1, so that it is quick to show at every scale?"
                "\n\n%2")
            .arg(layer->name, KeepText(path, ".ovr"));
    if (XPrompts::Get()->AskYesNo(m_handle, XfnFromQString(question))) Build(path);
}

void XLevelActions::Told(const QString& what, bool isStopped, const QString& message)
{
    if (isStopped) {
        if (m_notice) m_notice(what + ": stopped, nothing kept", QString());
    } else {
        XPrompts::Get()->Message(m_handle, XfnFromQString(what + " failed.\n\n" + message),
                                 XPrompts::XIcon::Warning, "tqlview");
    }
}

void XLevelActions::ForLayersOf(const QString& path,
                                const std::function<void(const tagXLayer&)>& change)
{
    for (int i = 0; i < m_layers.GetCount(); ++i) {
        if (m_layers.GetAt(i)->path != path) continue;
        change(*m_layers.GetAt(i));
        m_layers.NoteChanged(i);
    }
}

void XLevelActions::Build(const QString& path)
{
    m_refused.append(path); // no offer while it is being built
    Offer();
    const QString what = "Pyramid of " + NameOf(path);
    const auto made = std::make_shared<XString>();
    m_jobs.Add({what,
                [path, made](const tagXSaveControl& control, QString& message) {
                    XString error;
                    const bool isBuilt =
                        XRSFileIO::BuildLevels(XfnFromQString(path), XSidecarPlace::Any, control,
                                               *made, error) != 0;
                    message = XfnToQString(error);
                    return isBuilt;
                },
                [this, path, made, what](bool isDone, bool isStopped, const QString& message) {
                    if (!isDone) return Told(what, isStopped, message);
                    ForLayersOf(path, [](const tagXLayer& layer) {
                        XRSFileIO::TakeUpLevels(layer.file.get());
                    });
                    TellKept("Pyramid", *made);
                }});
}

void XLevelActions::TellKept(const QString& what, const XString& made)
{
    const QString path = XfnToQString(made);
    if (m_notice) m_notice(QString("%1 kept in %2").arg(what, NameOf(path)), path);
}

void XLevelActions::AskAndCompute()
{
    const tagXLayer* layer = m_layers.GetAt(m_layers.GetCurrent());
    if (!layer) return;
    const QString path = layer->path; // the layer may go while the question stands
    const QString question = QString("Count every pixel of %1 for its exact statistics?\n\n%2")
                                 .arg(layer->name, KeepText(path, ".aux.xml"));
    if (XPrompts::Get()->AskYesNo(m_handle, XfnFromQString(question))) ComputeStatistics(path);
}

void XLevelActions::ComputeStatistics(const QString& path)
{
    const QString what = "Statistics of " + NameOf(path);
    struct tagResult
    {
        std::vector<tagXBandStatistics> statistics;
        XString made;
        XString unkept; // why they could not be kept
    };
    const auto result = std::make_shared<tagResult>();
    m_jobs.Add(
        {what,
         [path, result](const tagXSaveControl& control, QString& message) {
             const std::unique_ptr<XRSFile> file = XfnOpenRaster(path, message);
             if (!file) return false;
             const int count = file->GetNumOfBands();
             XSaveProgress whole(control, 100LL * count);
             std::vector<const XDMBand*> bands;
             for (int i = 0; i < count; ++i) {
                 tagXSaveControl part;
                 part.abort = control.thread ? control.thread->GetStopFlag() : control.abort;
                 part.progress = [&whole, i](int percent) { whole.Report(100LL * i + percent); };
                 XDMBand* band = file->GetBandAt(i);
                 XString why;
                 if (!band->CalcExactStatistics(part, why)) {
                     message = XfnToQString(why);
                     return false;
                 }
                 bands.push_back(band);
                 result->statistics.push_back(*band->GetStatistics());
             }
             XRSFileIO::SaveStatistics(bands, XSidecarPlace::Any, result->made, result->unkept);
             return true;
         },
         [this, path, result, what](bool isDone, bool isStopped, const QString& message) {
             if (!isDone) return Told(what, isStopped, message);
             ForLayersOf(path, [&](const tagXLayer& layer) {
                 for (std::size_t i = 0; i < result->statistics.size(); ++i)
                     if (XDMBand* band = layer.file->GetBandAt(static_cast<int>(i)))
                         band->SetBandStatistics(result->statistics[i]);
             });
             if (!result->made.IsEmpty())
                 TellKept("Statistics", result->made);
             else if (m_notice)
                 m_notice("Statistics hold until the image is closed",
                          XfnToQString(result->unkept));
         }});
}
