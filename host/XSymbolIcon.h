#pragma once

#include <QColor>
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
    CopyPosition,
    Lock,
    Unlock,
    Image,
    Shapes,
    Save,
    Undo,
    Redo,
    Select,
    Point,
    Line,
    Arrow,
    Polyline,
    Curve,
    Polygon,
    Rectangle,
    Ellipse,
    Text,
    TextBox,
    Balloon,
    Picture,
    CopyText,
    Enhance
};

/// An icon drawn as lines in the text colour of the palette at the moment of painting, at whatever
/// size and scale is asked for: it follows a change between light and dark without being replaced.
QIcon XfnSymbolIcon(Symbol symbol);

/// A patch of one colour with a thin rim in the text colour, for lists.
QIcon XfnSwatchIcon(const QColor& color);

/// The program's own picture, in colours: a tilted grid of image bands over a horizon.
QIcon XfnProgramIcon();
