#include "foundation/raster/XGdalErrors.h"

#include <cpl_error.h>
#include <gdal.h>

#include <mutex>

namespace {

// decoded tiles have a cache of their own; this one only has to hold a row of blocks
constexpr GIntBig kBlockCacheBytes = GIntBig(128) << 20;

void CPL_STDCALL Collect(CPLErr level, CPLErrorNum, const char* text)
{
    if (level < CE_Failure) return;
    if (auto* errors = static_cast<XGdalErrors*>(CPLGetErrorHandlerUserData())) errors->Note(text);
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

XString XGdalErrors::GetSentence() const
{
    XString sentence = m_text;
    sentence.Trim();
    if (!sentence.IsEmpty() && sentence.GetAt(sentence.GetLength() - 1) != '.') sentence += '.';
    return sentence;
}

XString XGdalErrors::Describe(const XString& path, const char* otherwise) const
{
    const XString sentence = GetSentence();
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
