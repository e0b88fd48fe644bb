#include "foundation/reference/XGdalErrors.h"

#include <cpl_error.h>
#include <gdal.h>

#include <cstring>
#include <mutex>

namespace {

// decoded tiles have a cache of their own; this one only has to hold a row of blocks
constexpr GIntBig kBlockCacheBytes = GIntBig(32) << 20;

void CPL_STDCALL Collect(CPLErr level, CPLErrorNum, const char* text)
{
    auto* errors = static_cast<XGdalErrors*>(CPLGetErrorHandlerUserData());
    if (!errors || level < CE_Warning) return;
    level >= CE_Failure ? errors->Note(text) : errors->NoteWarning(text);
}

/// What is left of GDAL's text when the path is named before it.
XString WithoutPath(XString sentence, const XString& path)
{
    if (sentence.Find("not recognized as") >= 0) return XString(); // so much is known already
    const char* const kQuoted[] = {"`%s' ", "'%s' ", "\"%s\" ", "%s: ", "%s, ", "%s "};
    for (const char* form : kQuoted)
        sentence.Replace(XfnFormat(form, path), "");
    if (sentence.Find(path) >= 0) sentence.Replace(path, "the file");
    return sentence;
}

} // namespace

XGdalErrors::XGdalErrors()
{
    CPLPushErrorHandlerEx(Collect, this);
}

XGdalErrors::~XGdalErrors()
{
    CPLPopErrorHandler();
    CPLErrorReset();
}

void XGdalErrors::Note(const char* text)
{
    if (m_text.IsEmpty()) m_text = text;
}

void XGdalErrors::NoteWarning(const char* text)
{
    constexpr const char* kDecoder = "libjpeg: ";
    XString warning = text;
    if (!m_damage.IsEmpty() || warning.Find(kDecoder) != 0) return;
    warning = warning.Mid(static_cast<int>(std::strlen(kDecoder)));
    const int hint = warning.Find(" (this warning");
    if (hint >= 0) warning = warning.Left(hint);
    m_damage = XfnFormat("The JPEG data are damaged or cut short (%s).", warning);
}

XString XGdalErrors::GetSentence() const
{
    XString sentence = m_text;
    sentence.Trim();
    constexpr int kPrefix = 8;
    if (sentence.Find("libpng: ") == 0) // its words mean nothing without the name of the format
        sentence = XfnFormat("The PNG data are damaged (%s).", sentence.Mid(kPrefix));
    if (!sentence.IsEmpty() && sentence.GetAt(sentence.GetLength() - 1) != '.') sentence += '.';
    return sentence;
}

XString XGdalErrors::Describe(const XString& path, const char* otherwise) const
{
    const XString sentence = WithoutPath(GetSentence(), path);
    return XfnFormat("\"%s\": %s", path, sentence.IsEmpty() ? otherwise : sentence.GetString());
}

void XfnPrepareGdal()
{
    static std::once_flag once;
    std::call_once(once, [] {
        GDALAllRegister();
        GDALSetCacheMax64(kBlockCacheBytes);
    });
}
