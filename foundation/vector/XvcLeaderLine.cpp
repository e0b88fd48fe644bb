#include "foundation/vector/XvcLeaderLine.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XWarp2D.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"

#include <algorithm>
#include <cmath>

X_IMPLEMENT_CLASS(XvcLeaderLine, XvcPolyline)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr double kNoteGap = 0.3; // of a letter's height, between line and note
constexpr int kMaxNoteLines = 100;

int CountLines(const XString& text)
{
    int lines = 1;
    for (int i = 0; i < text.GetLength() && lines < kMaxNoteLines; ++i)
        lines += text[i] == '\n';
    return lines;
}

} // namespace

// The box of the note, in the world; the height of its letters is known.
struct XvcLeaderLine::tagNote
{
    double left, bottom, right, top;
};

XvcLeaderLine::XvcLeaderLine(const tagXVector3& place, const tagXVector3& note, const XString& text)
    : m_text(text)
{
    Add(place);
    Add(note);
}

void XvcLeaderLine::SetStartSize(double size)
{
    Touch();
    if (XfnIsSet(size)) m_startSize = size;
}

void XvcLeaderLine::SetLanding(double length)
{
    Touch();
    if (length >= 0.0 && XfnIsSet(length)) m_landing = length;
}

bool XvcLeaderLine::GetPath(std::vector<tagXVector3>& path, bool& isToRight) const
{
    path.clear();
    for (int i = 0; i < GetSize(); ++i) {
        if (XfnIsUsable(GetAt(i))) path.push_back(GetAt(i));
    }
    if (path.size() < 2) return false;
    isToRight = path.back().x >= path[path.size() - 2].x;
    if (m_landing > 0.0) {
        tagXVector3 end = path.back();
        end.x += isToRight ? m_landing : -m_landing;
        if (XfnIsUsable(end)) path.push_back(end);
    }
    return true;
}

bool XvcLeaderLine::GetNote(tagNote& note) const
{
    std::vector<tagXVector3> path;
    bool isToRight = true;
    const double height = m_font.GetHeight(m_worldPerPixel);
    if (m_text.IsEmpty() || !(height > 0.0) || !GetPath(path, isToRight)) return false;
    const tagXVector3 end = path.back();
    const double width = m_font.GetWidth(m_text) * height;
    const double gap = kNoteGap * height;
    note.left = isToRight ? end.x + gap : end.x - gap - width;
    note.right = note.left + width;
    note.bottom = end.y - CountLines(m_text) * height / 2.0;
    note.top = end.y + CountLines(m_text) * height / 2.0;
    return true;
}

std::vector<tagXLineEndPart> XvcLeaderLine::MakeEnd(std::vector<tagXVector3>& path) const
{
    const double length = std::hypot(path[1].x - path[0].x, path[1].y - path[0].y);
    const double thick = XfnIsSet(GetThick()) ? GetThick() : 0.0;
    double inset = 0.0;
    auto parts =
        XfnMakeLineEnd(m_startShape, path[1], path[0],
                       XfnGetLineEndSize(m_startSize, thick, m_worldPerPixel, length), inset);
    if (inset > 0.0 && length > 0.0) {
        const double share = std::min(inset / length, 1.0);
        path[0] = path[0] + (path[1] - path[0]) * share;
    }
    return parts;
}

void XvcLeaderLine::CalcRange()
{
    XvcPolyline::CalcRange();
    std::vector<tagXVector3> path;
    bool isToRight = true;
    if (!GetPath(path, isToRight)) return;
    m_range.Add(path.back().x, path.back().y, XfnIsSet(path.back().z) ? path.back().z : 0.0);
    for (const auto& part : MakeEnd(path)) {
        for (const tagXVector3& vertex : part.vertices)
            m_range.Add(vertex.x, vertex.y, XfnIsSet(vertex.z) ? vertex.z : 0.0);
    }
    tagNote note;
    if (!GetNote(note)) return;
    m_range.Add(note.left, note.bottom, m_range.minZ);
    m_range.Add(note.right, note.top, m_range.maxZ);
}

XvcObj* XvcLeaderLine::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                               tagXHitFlag& hitFlag)
{
    if (XvcPolyline::HitTest(point, toleranceX, toleranceY, hitFlag)) return this;
    const tagXHitPointer pointer = XfnMakeHitPointer(point, toleranceX, toleranceY);
    if (!pointer.isUsable) return nullptr;
    std::vector<tagXVector3> path;
    bool isToRight = true;
    tagNote note;
    bool isHit = GetNote(note) && point.x >= note.left && point.x <= note.right &&
                 point.y >= note.bottom && point.y <= note.top;
    if (!isHit && m_landing > 0.0 && GetPath(path, isToRight)) {
        const tagXVector3 &a = path[path.size() - 2], &b = path.back();
        isHit = XfnHitDistanceSquared(pointer, a.x, a.y, b.x, b.y) <= 1.0;
    }
    if (!isHit) return nullptr;
    hitFlag = {tagXHitFlag::kBody, 0};
    return this;
}

void XvcLeaderLine::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                       const tagXDrawAttrs* attrs)
{
    std::vector<tagXVector3> path;
    bool isToRight = true;
    if (!buffer || !GetPath(path, isToRight)) return;
    const XVectorPaint paint(*this, attrs);
    const XWarp2D* const map = ChooseWarp(warp);
    const tagXVector3 end = path.back();
    XfnRecordLineEnds(*buffer, MakeEnd(path), map, paint.line);
    XfnWarpVertices(path, map);
    XfnRecordPolyline(buffer, path, paint);

    tagXVertText text;
    text.position = end;
    text.text = m_text;
    text.align = kXTextMiddle | (isToRight ? kXTextLeft : kXTextRight);
    if (m_drawBorder) text.borderColour = paint.line.colour;
    const double height = m_font.GetHeight(m_worldPerPixel);
    if (height > 0.0) {
        text.position.x += (isToRight ? kNoteGap : -kNoteGap) * height;
    } else if (!m_text.IsEmpty() && !m_drawBorder) { // a blank keeps the note off the line
        if (isToRight) {
            text.text.Insert(0, " ");
            text.text.Replace("\n", "\n ");
        } else {
            text.text.Replace("\n", " \n");
            text.text += " ";
        }
    }
    m_font.Record(*buffer, text, map, paint.line.colour);
}

void XvcLeaderLine::Normalize(double minX, double minY, double maxX, double maxY)
{
    Touch();
    const tagXUnitMap map(minX, minY, maxX, maxY);
    XvcPolyline::Normalize(minX, minY, maxX, maxY);
    const double scale = std::fabs(map.GetScaleX());
    if (!map.isValid || !(scale > 0.0)) return;
    m_landing *= scale;
    if (m_startSize > 0.0) m_startSize *= scale;
    if (m_font.size > 0.0) m_font.SetSize(m_font.size * scale);
    m_worldPerPixel *= scale;
}

void XvcLeaderLine::StoreOwn(XArchive& archive) const
{
    archive << kArchiveVersion << m_text << m_drawBorder << m_startShape << m_startSize << m_landing
            << m_worldPerPixel;
    m_font.Store(archive);
}

void XvcLeaderLine::LoadOwn(XArchive& archive)
{
    std::uint8_t version = 0;
    XString text;
    int drawBorder = 0, startShape = 0;
    double startSize = 0.0, landing = 0.0, worldPerPixel = 0.0;
    XMarkFont font;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    archive >> text >> drawBorder >> startShape >> startSize >> landing >> worldPerPixel;
    font.Load(archive);
    m_text = text;
    m_font = font;
    SetDrawBorder(drawBorder);
    m_startShape = startShape;
    SetStartSize(startSize);
    SetLanding(landing);
    SetWorldPerPixel(worldPerPixel);
}
