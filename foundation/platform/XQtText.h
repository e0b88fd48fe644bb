#pragma once

#include "foundation/base/XString.h"

#include <QString>

/// Narrow text to a QString. Narrow text is in the library's code page (UTF-8 unless the host chose
/// another); bytes that are none become U+FFFD. Any thread.
XAPI QString XfnToQString(const XString& text);
XAPI QString XfnToQString(const char* text); ///< null is the empty text

/// A QString as narrow text. A letter that the code page lacks becomes "?".
XAPI XString XfnFromQString(const QString& text);
