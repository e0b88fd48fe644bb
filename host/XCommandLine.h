#pragma once

#include "host/XConvertJob.h"
#include "host/XRenderJob.h"

#include <QRect>
#include <QString>
#include <QStringList>

/// What the words of a command line ask for.
enum class CommandMode { Window, Render, Convert, Help, Version, Wrong };

/// A command line, understood. Fields that the mode does not need keep their defaults.
struct tagXCommandLine
{
    CommandMode mode = CommandMode::Window;
    QStringList files; ///< as typed, in order
    QSize windowSize;  ///< empty when --geometry was not given
    QPoint windowPos;  ///< valid when hasWindowPos
    bool hasWindowPos = false;
    tagXRenderRequest render;   ///< for CommandMode::Render
    tagXConvertRequest convert; ///< for CommandMode::Convert
    QString message;            ///< for CommandMode::Wrong: one sentence for the error stream
};

/// Reads the words behind the program's name. Options of the toolkit itself (-style, -platform and
/// the like) are skipped with their values; every other unknown option is wrong. "--" ends the
/// options. "--name=value" and "--name value" mean the same. --help and --version win over all
/// else. Reals are written with a point, whatever the locale is.
tagXCommandLine XfnParseCommandLine(const QStringList& words);

/// "800x600", "800x600+40+20" or "800x600-40+20"; sides from 1 to 32767.
/// @return false, and nothing changed, for any other text
bool XfnParseGeometry(const QString& text, QSize& size, QPoint& pos, bool& hasPos);

/// The text of --help: usage, options, exit status, environment. Ends with a line end.
QString XfnHelpText();
