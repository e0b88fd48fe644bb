#include "vecprop/XObjectEditModel.h"

#include "foundation/base/XNumber.h"
#include "foundation/base/XPath.h"
#include "foundation/base/XSentinels.h"
#include "foundation/vector/XvcBitmap.h"
#include "vecprop/XFieldText.h"
#include "vecprop/XObjectDraft.h"
#include "vecprop/XObjectForms.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace {

// About a hundredth of the object, as a power of ten.
double GetStep(const XvcObj& object)
{
    const tagXVectorRange& range = object.GetRange();
    if (range.IsEmpty()) return 1.0;
    const double extent = std::max(range.maxX - range.minX, range.maxY - range.minY);
    if (!(extent > 0.0) || !XfnIsSet(extent)) return 1.0;
    return std::pow(10.0, std::floor(std::log10(extent / 50.0)));
}

bool IsTyped(XFieldKind kind)
{
    return kind == XFieldKind::Number || kind == XFieldKind::Count || kind == XFieldKind::Length;
}

} // namespace

XObjectEditModel::XObjectEditModel(XObjectDialog dialog, std::vector<XvcObj*> objects)
    : m_form(XfnGetObjectForm(dialog)),
      m_objects(std::move(objects)),
      m_states(m_form.fields.size())
{
    assert(!m_objects.empty());
    m_unit = XfnGetObjectUnit(*m_objects.front());
    for (tagXObjectField& field : m_form.fields) {
        if (field.measure != XFieldMeasure::Other) field.places = m_unit.places;
        if (field.measure == XFieldMeasure::Size && field.kind == XFieldKind::Number)
            field.unit = m_unit.sign;
    }
    m_vertices.SetPlaces(m_unit.places);
    const std::size_t drafts = std::min<std::size_t>(m_objects.size(), kMaxDrafts);
    for (std::size_t i = 0; i < drafts; ++i) {
        m_originals.push_back(XfnMakeDraft(dialog, *m_objects[i]));
        m_drafts.push_back(XfnMakeDraft(dialog, *m_objects[i]));
        m_drafts.back()->CalcRange();
    }
    m_step = GetStep(GetDraft());
    for (int i = 0; i < GetFieldCount(); ++i) {
        const XFieldValue first = GetField(i).get(*m_objects.front());
        State(i).isMixed =
            std::any_of(m_objects.begin(), m_objects.end(),
                        [&](const XvcObj* object) { return GetField(i).get(*object) != first; });
        if (GetField(i).kind == XFieldKind::Length)
            State(i).isPixels = std::get<double>(first) <= 0.0;
    }
    if (!m_form.vertices.get) return;
    m_vertices.SetRule(m_form.vertices.noun, m_form.vertices.plural, m_form.vertices.least);
    m_vertices.SetVertices(m_form.vertices.get(GetDraft()));
    m_vertices.SetChangeHandler([this] {
        m_form.vertices.set(GetDraft(), m_vertices.GetVertices());
        Changed();
    });
}

XObjectEditModel::~XObjectEditModel() = default;

int XObjectEditModel::FindField(const char* id) const
{
    for (int i = 0; i < GetFieldCount(); ++i)
        if (GetField(i).id == id) return i;
    return -1;
}

XString XObjectEditModel::GetTitle() const
{
    return GetObjectCount() == 1 ? m_form.title
                                 : XfnFormat("Properties of %d objects", GetObjectCount());
}

XFieldValue XObjectEditModel::Value(int index) const
{
    return GetField(index).get(GetDraft());
}

int XObjectEditModel::IsMixed(int index) const
{
    return State(index).isMixed && !State(index).isTouched;
}

XString XObjectEditModel::GetText(int index) const
{
    if (State(index).isTyped) return State(index).text;
    return IsMixed(index) ? XString() : XfnFieldToText(GetField(index), Value(index));
}

XString XObjectEditModel::GetExactText(int index) const
{
    const tagXObjectField& field = GetField(index);
    if (State(index).isTyped || IsMixed(index) || field.measure == XFieldMeasure::Other) return {};
    const double value = std::get<double>(Value(index));
    if (!XfnIsSet(value)) return {};
    const XString exact = XfnFormatShortest(std::fabs(value));
    const XString shown = XfnFieldToText(field, std::fabs(value));
    return shown.IsEmpty() || exact == shown ? XString() : XfnFormatShortest(value);
}

int XObjectEditModel::GetChoice(int index) const
{
    return std::get<int>(Value(index));
}

tagXColor XObjectEditModel::GetColor(int index) const
{
    return std::get<tagXColor>(Value(index));
}

int XObjectEditModel::IsPixels(int index) const
{
    return State(index).isPixels;
}

std::vector<tagXChoice> XObjectEditModel::GetChoices(int index) const
{
    const tagXObjectField& field = GetField(index);
    std::vector<tagXChoice> choices = field.choices(GetDraft());
    if (State(index).isMixed) return choices;
    const int value = std::get<int>(field.get(*m_originals.front()));
    const bool isKnown = std::any_of(choices.begin(), choices.end(),
                                     [value](const tagXChoice& c) { return c.value == value; });
    if (!isKnown)
        choices.push_back({value, value == kXOwnPattern ? XString("Own pattern")
                                                        : XfnFormat("Other (%d)", value)});
    return choices;
}

const XString& XObjectEditModel::GetError(int index) const
{
    return State(index).error;
}

void XObjectEditModel::SetText(int index, const XString& text)
{
    const tagXObjectField& field = GetField(index);
    tagState& state = State(index);
    state.text = text;
    state.isTyped = true;
    state.error.Empty();
    // what stood there at first is no change, also where it shows less than there is
    const bool isAsBefore =
        state.isMixed
            ? text.IsEmpty()
            : text == XfnFieldToText(field, field.get(*m_originals.front())) &&
                  (field.kind != XFieldKind::Length ||
                   state.isPixels == (std::get<double>(field.get(*m_originals.front())) <= 0.0));
    if (isAsBefore) return Restore(index);
    state.isTouched = true;
    XFieldValue value;
    if (XfnFieldFromText(field, text, state.isPixels, value, state.error))
        Put(index, value);
    else
        Changed();
}

void XObjectEditModel::SetChoice(int index, int value)
{
    State(index).error.Empty();
    if (value == kXOwnPattern && GetField(index).copy)
        Restore(index);
    else
        Put(index, value);
}

void XObjectEditModel::SetColor(int index, tagXColor color)
{
    Put(index, color & ~kXOpaque);
}

void XObjectEditModel::SetPixels(int index, int isPixels)
{
    tagState& state = State(index);
    if (state.isPixels == isPixels) return;
    const XString text = GetText(index);
    state.isPixels = isPixels;
    SetText(index, text);
}

void XObjectEditModel::Step(int index, double steps)
{
    const tagXObjectField& field = GetField(index);
    if (!IsTyped(field.kind)) return;
    const XString text = GetText(index);
    double number = 0.0;
    const bool isZero = text.IsEmpty() && *field.whenZero && !IsMixed(index);
    if (!isZero && !XfnReadWholeNumber(text, field.unit, number)) return;
    const bool isOfWorld = field.measure != XFieldMeasure::Other;
    double step = field.step > 0.0 ? field.step : *field.unit && !isOfWorld ? 1.0 : m_step;
    if (field.kind == XFieldKind::Length && State(index).isPixels) step = 1.0;
    number = std::clamp(number + steps * step, field.least, field.most);
    // sums of decimal steps are to look like such
    if (std::fabs(number) < step / 2) number = 0.0;
    SetText(index, XfnFormatGeneral(number, 14));
}

void XObjectEditModel::LoadPicture(int index, const XString& path)
{
    auto* bitmap = dynamic_cast<XvcBitmap*>(&GetDraft());
    if (!bitmap) return;
    XString ext = XfnGetFileExt(path);
    ext.MakeUpper();
    const bool isJpeg = ext == "JPG" || ext == "JPEG";
    tagState& state = State(index);
    state.error.Empty();
    if (isJpeg ? bitmap->ReadJPG(path, state.error) : bitmap->ReadBMP(path, state.error))
        state.isTouched = true;
    Changed();
}

int XObjectEditModel::CanApply() const
{
    return GetFirstError().IsEmpty() ? 1 : 0;
}

XString XObjectEditModel::GetFirstError() const
{
    for (int i = 0; i < GetFieldCount(); ++i)
        if (!State(i).error.IsEmpty() && GetField(i).kind != XFieldKind::Picture)
            return GetField(i).name + ": " + State(i).error;
    return m_vertices.GetError();
}

int XObjectEditModel::Commit()
{
    if (!CanApply() || !AreObjectsThere()) return 0;
    int changed = 0;
    for (XvcObj* object : m_objects) {
        bool isChanged = false;
        for (int i = 0; i < GetFieldCount(); ++i) {
            const tagXObjectField& field = GetField(i);
            if (!State(i).isTouched) continue;
            // of what passes as a whole more may differ than is shown of it
            if (!field.copy && field.get(*object) == Value(i)) continue;
            field.Copy(*object, GetDraft());
            isChanged = true;
        }
        if (m_vertices.IsTouched() && !(m_form.vertices.get(*object) == m_vertices.GetVertices())) {
            m_form.vertices.set(*object, m_vertices.GetVertices());
            isChanged = true;
        }
        if (!isChanged) continue;
        object->CalcRange();
        ++changed;
    }
    return changed;
}

void XObjectEditModel::Put(int index, const XFieldValue& value)
{
    State(index).isTouched = true;
    for (const auto& draft : m_drafts)
        GetField(index).set(*draft, value);
    Changed();
}

void XObjectEditModel::Restore(int index)
{
    State(index).isTouched = false;
    for (std::size_t i = 0; i < m_drafts.size(); ++i)
        GetField(index).Copy(*m_drafts[i], *m_originals[i]);
    Changed();
}

void XObjectEditModel::Changed()
{
    for (const auto& draft : m_drafts)
        draft->CalcRange();
    if (m_handler) m_handler();
}
