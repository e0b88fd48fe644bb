#pragma once

#include <QString>

struct tagCommandSet;

/// What a step of undo did, for menus: "Delete 3 Polygons", "Add Text Box", "Change 2 Objects".
/// Objects of several classes are called objects. Reads the step only.
QString XfnStepText(const tagCommandSet& step);

/// "Polygon", "3 Polygons"; "Object" for an empty class name.
/// @param className  as the classes of vector objects are called
QString XfnCountText(const QString& className, int count);
