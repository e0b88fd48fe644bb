#pragma once

#include "foundation/base/XColor.h"
#include "foundation/raster/XSaveControl.h"
#include "foundation/reference/XSpatialReference.h"
#include "foundation/vector/XvcBase.h"
#include "host/XVectorPlacement.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/// A vector file, read and made ready to be shown.
struct tagXVectorRead
{
    std::unique_ptr<XvcBase> base;
    XSpatialReference reference;        ///< the file's own; empty when it tells none
    bool canBeDegrees = false;          ///< it tells none, and XfnGuessReference applies
    bool isGuessed = false;             ///< carried over as degrees
    XSpatialReference world;            ///< the one that was asked for
    tagXPlacement placement;            ///< in `world`
    QStringList notes;                  ///< what could not be taken over, a sentence each
    int colors = 0;                     ///< of the palette that were given away
    std::vector<tagXColor> layerColors; ///< of the layers as they lie in the base; 0 for several
};

/// Reads a vector file, carries it into `world`, and gives layers without a look of their own the
/// next colours of the palette. With an empty `world` the coordinates stay as they are.
/// Threads: any; made for a job.
/// @param firstColor    of the palette
/// @param isGroundDark  the ground that it lies on: of drawings, black pens become white then
/// @return false with a sentence that does not repeat the path; it is empty after a stop
bool XfnReadVector(const QString& path, const XSpatialReference& world, int firstColor,
                   const tagXSaveControl& control, tagXVectorRead& read, QString& message,
                   bool isGroundDark = true);

/// A sentence without the path that it begins with or quotes: whoever shows it says which file it is
/// about.
QString XfnWithoutPath(QString sentence, const QString& path);

/// What keeps a file from being read at all, as a sentence; empty when nothing does. Names of what is
/// no plain file are left to the readers.
QString XfnFindObstacle(const QString& path, const QString& kind);

/// Whether the name ends as only vector files do; the case does not matter.
bool XfnHasVectorSuffix(const QString& path);
