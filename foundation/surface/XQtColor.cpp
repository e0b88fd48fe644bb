#include "foundation/surface/XQtColor.h"

QColor XfnToQColor(tagXColor colour)
{
    return QColor(static_cast<int>(XfnGetRed(colour)), static_cast<int>(XfnGetGreen(colour)),
                  static_cast<int>(XfnGetBlue(colour)), static_cast<int>(XfnGetAlpha(colour)));
}
