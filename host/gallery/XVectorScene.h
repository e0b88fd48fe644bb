#pragma once

#include <QString>

/// Writes a vector file over the middle of the sample scene: districts with attributes, roads and
/// stations, without colours of their own.
/// @return its path; empty when it could not be written
QString XfnWriteVectorScene(const QString& folder);

/// Writes a line far from the scene into a file that has no coordinate system.
QString XfnWriteSketch(const QString& folder);

/// A place within the largest district, in the scene's coordinates.
constexpr double kVectorScenePlace[2] = {293650, 9116145};
