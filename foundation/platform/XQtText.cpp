#include "foundation/platform/XQtText.h"

#include "foundation/base/XCodePage.h"

#include <string_view>

QString XfnToQString(const XString& text)
{
    const XString utf8 = XfnTextToUtf8(text);
    return QString::fromUtf8(utf8.GetString(), utf8.GetLength());
}

QString XfnToQString(const char* text)
{
    return XfnToQString(XString(text));
}

XString XfnFromQString(const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    return XfnTextFromUtf8(
        XString(std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size()))));
}
