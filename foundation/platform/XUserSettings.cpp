#include "foundation/platform/XUserSettings.h"

#include <QSettings>

namespace {

QSettings OpenSettings()
{
    return QSettings(QSettings::defaultFormat(), QSettings::UserScope, QStringLiteral("tql"),
                     QStringLiteral("tql_wnd"));
}

const QString kInvertWheelKey = QStringLiteral("view/invertMouseWheelZoomDir");
const QString kAskForNewKey = QStringLiteral("edit/askForNewObject");
const QString kFileDialogKey = QStringLiteral("dialogs/rasterFile");

} // namespace

bool XfnGetInvertMouseWheelZoomDir()
{
    return OpenSettings().value(kInvertWheelKey, false).toBool();
}

void XfnSetInvertMouseWheelZoomDir(bool isInverted)
{
    OpenSettings().setValue(kInvertWheelKey, isInverted);
}

bool XfnGetAskForNewObject(bool ifNotChosen)
{
    return OpenSettings().value(kAskForNewKey, ifNotChosen).toBool();
}

void XfnSetAskForNewObject(bool isAsked)
{
    OpenSettings().setValue(kAskForNewKey, isAsked);
}

QByteArray XfnGetFileDialogLayout()
{
    return OpenSettings().value(kFileDialogKey).toByteArray();
}

void XfnSetFileDialogLayout(const QByteArray& layout)
{
    OpenSettings().setValue(kFileDialogKey, layout);
}
