#pragma once

#include "foundation/base/XString.h"

inline constexpr const char* kXNoReader = "No reader knows its format.";

/// For the sources of foundation/ only. While it lives, what GDAL complains about in this thread is
/// collected here and printed nowhere. Objects nest; the innermost one hears.
class XGdalErrors
{
public:
    XGdalErrors();
    ~XGdalErrors();
    XGdalErrors(const XGdalErrors&) = delete;
    XGdalErrors& operator=(const XGdalErrors&) = delete;

    /// The first failure's text as a sentence; empty when nothing failed.
    XString GetSentence() const;
    /// "\"path\": sentence", where the sentence does not name the path again, with `otherwise` when GDAL gave
    /// no text or one that tells nothing.
    XString Describe(const XString& path, const char* otherwise) const;

    /// What the JPEG decoder warned of, which then goes on with gray, as a sentence; else empty.
    XString GetDamage() const { return m_damage; }

    void Note(const char* text);        ///< for the handler
    void NoteWarning(const char* text); ///< likewise

private:
    XString m_text;
    XString m_damage;
};

/// Registers the drivers and sets the process up for reading images: once, from any thread.
void XfnPrepareGdal();
