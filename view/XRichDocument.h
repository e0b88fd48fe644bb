#pragma once

#include "foundation/base/XApi.h"
#include "foundation/vector/XRichText.h"

class QTextCharFormat;
class QTextCursor;
class QTextDocument;

/// Rich text as a document of the toolkit and back, exactly: what a format leaves to whatever shows the
/// text (face, colour) is left out of the document's formats too. Sizes are points.

/// Puts the text in place of the cursor's selection, as one step of undo.
XAPI void XfnInsertRichText(QTextCursor& cursor, const XRichText& text);

/// The document as rich text; objects in it that are no text are left out.
XAPI XRichText XfnGetRichText(const QTextDocument& document);

XAPI QTextCharFormat XfnToQtFormat(const tagXCharFormat& format);
XAPI tagXCharFormat XfnFromQtFormat(const QTextCharFormat& format);

/// Sets parts of the format of the cursor's selection.
XAPI void XfnFormatSelection(QTextCursor cursor, const tagXCharFormat& format, unsigned mask);
/// The format at the beginning of the cursor's selection and, in `common`, the parts that all of
/// it shares. The selection is not empty.
XAPI tagXCharFormat XfnGetSelectionFormat(const QTextCursor& cursor, unsigned& common);

XAPI int XfnToQtAlign(XParagraphAlign align); ///< Qt::Alignment
XAPI XParagraphAlign XfnFromQtAlign(int alignment);
