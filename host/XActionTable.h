#pragma once

#include "host/XSymbolIcon.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

/// One command of the window, as data. The id is stable: settings, tests and key maps name it.
struct tagXActionRow
{
    const char* id;                ///< "file.open"
    const char* text;              ///< menu text with its mnemonic
    std::vector<const char*> keys; ///< portable key sequences, valid in the whole window
    /// Plain keys that count only while the image has the focus, so that typing stays typing.
    std::vector<const char*> imageKeys;
    std::optional<Symbol> symbol;
    const char* tip; ///< one line for the status bar
    bool isCheckable = false;
};

/// One menu: its title and the ids in order; "-" is a separator, "@name" a place that the window
/// fills itself (the recent files, the panels).
struct tagXMenuRow
{
    const char* title;
    std::vector<const char*> entries;
};

/// One toolbar: ids and "-".
struct tagXToolBarRow
{
    const char* title;
    const char* name; ///< of the control
    bool isUpright;   ///< at the left edge
    std::vector<const char*> entries;
};

const std::vector<tagXActionRow>& XfnActionTable();
const std::vector<tagXMenuRow>& XfnMenuTable();
const std::vector<tagXToolBarRow>& XfnToolBarTable();

/// What each command with keys is called, and its keys; then what the image answers to.
QList<std::pair<QString, QString>> XfnKeyMap();
