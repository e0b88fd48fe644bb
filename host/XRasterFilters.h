#pragma once

#include <QString>
#include <QStringList>

/// The filter of a dialog for rasters: all supported ones, each format, all files, in the form
/// "Label (*.a;*.b)|*.a;*.b|...||".
QString XfnRasterFilter();

/// The filter of the Open dialog: the entries of the raster file dialog, then all that can be opened
/// (kAllFilesLabel), all rasters, all vector files, and the formats that have no entry yet.
QString XfnOpenFilter();
inline constexpr const char* kAllFilesLabel = "All supported files";

/// True when the name ends like a raster of the filter; the case does not matter.
bool XfnHasRasterSuffix(const QString& path);

/// The paths of a drop, sorted out. Nothing is opened here.
struct tagXDroppedPaths
{
    QStringList files;        ///< dropped as files, in order, whatever their suffix
    QStringList folderFiles;  ///< rasters and vector files directly in dropped folders, by name
    QStringList emptyFolders; ///< dropped folders that hold none
};

/// Looks into dropped folders one level deep; a folder with more than `kMaxFolderFiles` of them
/// gives the first of them.
tagXDroppedPaths XfnSortDroppedPaths(const QStringList& paths);
constexpr int kMaxFolderFiles = 200;

/// The question before the files of dropped folders are opened: how many, and which.
QString XfnFolderQuestion(const QStringList& folderFiles);
