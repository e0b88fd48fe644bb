#include "foundation/base/XString.h"
#include "foundation/vector/XRichText.h"
#include "foundation/vector/XRtfReader.h"
#include "foundation/vector/XRtfWriter.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void Require(bool holds)
{
    if (!holds) std::abort();
}

} // namespace

/// Reads any bytes as rich text. What was read is written and comes back exactly; formats, queries
/// and replacements hold on it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    XRichText text;
    XString message;
    if (!XfnReadRtf(reinterpret_cast<const char*>(data), size, text, message)) {
        Require(!message.IsEmpty() && text == XRichText());
        return 0;
    }
    Require(message.IsEmpty() && !text.GetParagraphs().empty());
    const XString rtf = XfnWriteRtf(text);
    XRichText again;
    Require(XfnReadRtf(rtf, static_cast<std::size_t>(rtf.GetLength()), again, message));
    Require(again == text && again.GetPlainText() == text.GetPlainText());

    again.SetFormat({.face = " a;b ", .halfPoints = -1, .isBold = true}, tagXCharFormat::kAll);
    unsigned common = 0;
    Require(again.GetFormat(common).face == "a;b" && common == tagXCharFormat::kAll);
    for (const auto& paragraph : again.GetParagraphs())
        Require(paragraph.runs.size() <= 1);
    const int count = again.Replace("e", "ee");
    Require(count == 0 ||
            again.GetByteCount() == text.GetByteCount() + static_cast<unsigned>(count));
    XString more = XfnWriteRtf(again);
    Require(XfnReadRtf(more, static_cast<std::size_t>(more.GetLength()), text, message));
    Require(text == again);
    return 0;
}
