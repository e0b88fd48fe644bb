#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

#include <vector>

class XFile;
class XThread;
class XvcBase;
class XvcObj;
struct tagXVectorFileInfo;

/// Vector files in and out: the native format (docs/formats/xvc.md) and those that GDAL reads.
///
/// An import reads the whole file and then adds its layers at the tail of `base`, which also takes
/// over the file's coordinate system (XvcBase::SetSR; left alone when the file tells none) and, when
/// it has no name, the file's. Ranges are calculated. Attributes of the objects stand in a table of
/// their layer (XvcLayer::GetAttributes, XfnGetAttributes). Colours, pens, brushes, symbols and labels
/// come from the file where the format has them; others stay as new objects have them, save that an
/// area without a fill of its own is not filled.
/// Multi-part areas and areas with holes become XvcMPolygon, curves are divided into short straight
/// lines, collections become XvcGroup2. Coordinates are taken as they are, also those that are no
/// numbers: such vertices are neither drawn nor hit.
///
/// Every function answers non-zero for success; on failure `error` holds a sentence that names the
/// file, or nothing after a stop, and `base` is as it was. What could not be taken over is told in
/// `notes`, if given, a sentence each. Nothing is written beside the file, and nothing but local files is
/// read.
/// @param thread    receives percentages; its stop flag ends the work. May be null
/// @param context   handed to the callback
/// @param callback  called for each object, in the calling thread, once it lies in its layer; it may
///                  change the object, but not its layer; attributes of files of others come only at
///                  the end. 0 from it ends the work as the stop flag
///                  does. May be null
/// Threads: any; one base by one thread at a time.

using XVectorImportCallback = int (*)(void* context, XvcObj* object);

/// Native. Objects of classes that this version does not know are passed over with a note.
XAPI int XfnImportXVC(const XString& path, XvcBase* base, XString& error, XThread* thread = nullptr,
                      void* context = nullptr, XVectorImportCallback callback = nullptr,
                      std::vector<XString>* notes = nullptr);
/// Shapefiles; .dbf, .shx, .prj and .cpg may be missing.
XAPI int XfnImportSHP(const XString& path, XvcBase* base, XString& error, XThread* thread = nullptr,
                      void* context = nullptr, XVectorImportCallback callback = nullptr,
                      std::vector<XString>* notes = nullptr);
/// Drawings. Each drawing layer becomes a layer.
XAPI int XfnImportDXF(const XString& path, XvcBase* base, XString& error, XThread* thread = nullptr,
                      void* context = nullptr, XVectorImportCallback callback = nullptr,
                      std::vector<XString>* notes = nullptr);
/// Design files (version 7). Each level becomes a layer.
XAPI int XfnImportDGN(const XString& path, XvcBase* base, XString& error, XThread* thread = nullptr,
                      void* context = nullptr, XVectorImportCallback callback = nullptr,
                      std::vector<XString>* notes = nullptr);
/// Any file that some vector reader knows, the native format too: chosen by content.
XAPI int XfnImportVector(const XString& path, XvcBase* base, XString& error,
                         XThread* thread = nullptr, void* context = nullptr,
                         XVectorImportCallback callback = nullptr,
                         std::vector<XString>* notes = nullptr);

/// Writes the whole tree with its coordinate system, symbols and attributes: beside `path` and then
/// put in place, so that an old file survives every failure.
XAPI int XfnExportXVC(const XString& path, const XvcBase* base, XString& error,
                      XThread* thread = nullptr);

/// The same into an open file, at its begin: in memory, for another thread to put on the disk.
/// @param name  of the tree in errors
XAPI int XfnExportXVC(XFile& file, const XString& name, const XvcBase* base, XString& error,
                      XThread* thread = nullptr);

/// What a file holds, without making objects of it. On failure `info` is as it was.
XAPI int XfnGetXVCInfo(const XString& path, tagXVectorFileInfo& info, XString& error,
                       XThread* thread = nullptr);
XAPI int XfnGetSHPInfo(const XString& path, tagXVectorFileInfo& info, XString& error,
                       XThread* thread = nullptr);
XAPI int XfnGetDXFInfo(const XString& path, tagXVectorFileInfo& info, XString& error,
                       XThread* thread = nullptr);
XAPI int XfnGetDGNInfo(const XString& path, tagXVectorFileInfo& info, XString& error,
                       XThread* thread = nullptr);
XAPI int XfnGetVectorInfo(const XString& path, tagXVectorFileInfo& info, XString& error,
                          XThread* thread = nullptr);

/// 1 when some vector reader knows the file by its content (a quick look at its head); no error text.
XAPI int XfnIsVectorFile(const XString& path);

/// What vector readers claim: extensions without the dot, lower case, each once, "xvc" first.
XAPI std::vector<XString> XfnGetVectorExtensions();
