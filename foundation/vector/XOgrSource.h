#pragma once

#include "foundation/base/XString.h"

#include <memory>
#include <vector>

class GDALDataset;
class OGRLayer;

/// For the sources of this folder only: one vector file, open for reading through GDAL.
///
/// Only readers of local files are asked; those that run programs, ask servers or name other files
/// are not. Nothing is written beside the file: what a reader would make there (the index of a
/// shapefile that lost it) is made in a folder of our own, which goes with this object.
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
    XString GetDriverName() const;
    /// Text of attributes to narrow text. Shapefiles without a word on their encoding, or with the
    /// one that programs write without asking, are taken for UTF-8, Korean or Western, whichever
    /// their bytes can be.
    XString ToText(const char* bytes) const;
    XString ToUtf8(const char* bytes) const;

    /// Names of the readers that may be asked, ending in null.
    static const char* const* GetLocalDrivers();

private:
    class Settings;

    bool OpenWith(const XString& path, const char* const* drivers, const char* encoding,
                  XString& error);
    bool OpenWithoutIndex(const XString& path, const char* const* drivers, XString& error);
    bool ChooseEncoding(const XString& path, const char* const* drivers, XString& error);
    void Close();

    std::unique_ptr<Settings> m_settings;
    GDALDataset* m_dataset = nullptr;
    XString m_folder;   // of links to the file, when there is one
    int m_codePage = 0; // of bytes that GDAL leaves as they are; 0: they are UTF-8
};
