#pragma once

#include "foundation/base/XString.h"

#include <memory>
#include <vector>

class GDALDataset;
class OGRLayer;
class XGdalErrors;
struct tagXShapeParts;

/// For the sources of this folder only: one vector file, open for reading through GDAL.
///
/// Only readers of local files are asked; those that run programs, ask servers or name other files
/// are not. Nothing is written beside the file: what a reader would need there (the index of a
/// shapefile that lost it) is made in a folder of our own, which goes with this object.
/// Of a shapefile all shapes come that are in the .shp, whatever is missing or cut short beside it:
/// those that its table has no record for are a layer of their own, GetBareShapes.
/// Threads: one at a time, and the one that opened it.
class XOgrSource
{
public:
    XOgrSource();
    ~XOgrSource();
    XOgrSource(const XOgrSource&) = delete;
    XOgrSource& operator=(const XOgrSource&) = delete;

    /// @param drivers  names in a list that ends in null; an empty one asks all
    /// @return false with a sentence in `error`
    bool Open(const XString& path, const char* const* drivers, XString& error);
    GDALDataset* Get() const { return m_dataset; }
    /// All shapes of a shapefile without their attributes, when its table ends before them; else
    /// null. Those from GetTableRows on are not to be had from the dataset itself.
    OGRLayer* GetBareShapes() const;
    long long GetTableRows() const { return m_tableRows; }
    /// What is missing or damaged beside a file that was opened, a sentence each.
    const std::vector<XString>& GetNotes() const { return m_notes; }
    XString GetDriverName() const;
    /// Text of attributes to narrow text. Shapefiles without a word on their encoding, or with the
    /// one that programs write without asking, are taken for UTF-8, Korean or Western, whichever
    /// their bytes can be.
    XString ToText(const char* bytes) const;
    XString ToUtf8(const char* bytes) const;
    bool IsUtf8() const { return m_codePage == 0; } ///< then there is nothing to convert

    /// Names of the readers that may be asked, ending in null.
    static const char* const* GetLocalDrivers();

private:
    class Settings;

    bool OpenWith(const XString& path, const char* const* drivers, const char* encoding,
                  XString& error);
    bool OpenShapes(const XString& path, const char* const* drivers, XString& error);
    bool LinkWithIndex(const XString& path, const tagXShapeParts& parts, XString& linked,
                       XString& error);
    bool MakeFolder();
    void OpenBareShapes(const tagXShapeParts& parts);
    void TellOf(const XString& path, const tagXShapeParts& parts, long long shapes);
    bool ChooseEncoding(const XString& path, const char* const* drivers, XString& error);
    void Close();

    std::unique_ptr<Settings> m_settings;
    GDALDataset* m_dataset = nullptr;
    GDALDataset* m_bare = nullptr;
    long long m_tableRows = 0;
    std::vector<XString> m_notes;
    XString m_folder;   // of links to the file, when there is one
    int m_codePage = 0; // of bytes that GDAL leaves as they are; 0: they are UTF-8
};

/// What GDAL complained about in words for whoever wants to see the file: "It is damaged or cut short
/// (error at line 9 of the file)." Empty when it said nothing.
XString XfnTellDamage(const XGdalErrors& errors, const XString& path);
