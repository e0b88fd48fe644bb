#pragma once

#include <QIcon>

/// The signs of the toolbar and the docks.
enum class Symbol {
    Open,
    Close,
    FitAll,
    FitLayer,
    OneToOne,
    ZoomIn,
    ZoomOut,
    ZoomRect,
    Previous,
    Next,
    Up,
    Down,
    Top,
    FullScreen,
    CopyPosition
};

/// An icon drawn as lines in the text colour of the palette at the moment of painting, at whatever
/// size and scale is asked for: it follows a change between light and dark without being replaced.
QIcon XfnSymbolIcon(Symbol symbol);

/// The program's own picture, in colours: a tilted grid of image bands over a horizon.
QIcon XfnProgramIcon();
