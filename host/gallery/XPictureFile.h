#pragma once

#include <QImage>
#include <QString>

/// Writes a picture of the gallery as PNG. The two lowest bits of each colour are dropped: nobody
/// sees it, and the file shrinks by a third. @return false when it cannot be written
bool XfnSavePicture(const QImage& picture, const QString& folder, const char* name);
