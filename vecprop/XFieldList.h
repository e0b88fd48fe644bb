#pragma once

#include "vecprop/XObjectField.h"

#include "foundation/base/XVector3.h"
#include "foundation/vector/XvcObj.h"

#include <utility>

class XvcBoxObj;
class XvcRectObj;

/// The fields of a form while it is put together. Each operation answers the field it added, good
/// until the next one.
class XFieldList
{
public:
    using Fields = std::vector<tagXObjectField>;
    using Choices = std::vector<tagXChoice>;

    /// The name is the label without mnemonic and colon; a field without a label needs `name`.
    tagXObjectField& Add(const char* id, const char* label, XFieldKind kind, const char* name = "");

    template <class Class, class Value, class Get, class Put>
    tagXObjectField& AddMember(const char* id, const char* label, XFieldKind kind, Get get, Put put)
    {
        tagXObjectField& field = Add(id, label, kind);
        field.get = [get](const XvcObj& object) -> XFieldValue {
            return Value((static_cast<const Class&>(object).*get)());
        };
        field.set = [put](XvcObj& object, const XFieldValue& value) {
            (static_cast<Class&>(object).*put)(std::get<Value>(value));
        };
        return field;
    }
    template <class Class>
    tagXObjectField& AddNumber(const char* id, const char* label, double (Class::*get)() const,
                               void (Class::*put)(double), const char* unit = "",
                               XFieldKind kind = XFieldKind::Number)
    {
        tagXObjectField& field = AddMember<Class, double>(id, label, kind, get, put);
        field.unit = unit;
        return field;
    }
    template <class Class>
    tagXObjectField& AddCount(const char* id, const char* label, int (Class::*get)() const,
                              void (Class::*put)(int), int least, int most)
    {
        tagXObjectField& field = AddMember<Class, int>(id, label, XFieldKind::Count, get, put);
        field.least = least;
        field.most = most;
        field.step = 1.0;
        return field;
    }
    template <class Class>
    tagXObjectField& AddFlag(const char* id, const char* label, int (Class::*get)() const,
                             void (Class::*put)(int))
    {
        return AddMember<Class, int>(id, label, XFieldKind::Flag, get, put);
    }
    template <class Class>
    tagXObjectField& AddChoice(const char* id, const char* label, int (Class::*get)() const,
                               void (Class::*put)(int), XChoicePicture picture, Choices choices)
    {
        tagXObjectField& field = AddMember<Class, int>(id, label, XFieldKind::Choice, get, put);
        field.picture = picture;
        field.choices = [choices = std::move(choices)](const XvcObj&) { return choices; };
        return field;
    }
    /// An opacity of 0 to 1.
    template <class Class>
    tagXObjectField& AddAlpha(double (Class::*get)() const, void (Class::*put)(double))
    {
        tagXObjectField& field = Add("opacity", "O&pacity:", XFieldKind::Opacity);
        field.get = [get](const XvcObj& object) -> XFieldValue {
            return static_cast<int>((static_cast<const Class&>(object).*get)() * 100.0 + 0.5);
        };
        field.set = [put](XvcObj& object, const XFieldValue& value) {
            (static_cast<Class&>(object).*put)(std::get<int>(value) / 100.0);
        };
        return field;
    }
    /// The three coordinates of a place, in one row.
    void AddPlace(const char* id, const char* label, const char* name,
                  std::function<tagXVector3(const XvcObj&)> get,
                  std::function<void(XvcObj&, const tagXVector3&)> set);
    /// A number that is one of several which are read and written together.
    template <class Record>
    tagXObjectField& AddPart(const char* id, const char* label, const char* name,
                             double Record::*part, Record (*get)(const XvcObj&),
                             void (*set)(XvcObj&, const Record&))
    {
        tagXObjectField& field = Add(id, label, XFieldKind::Number, name);
        field.get = [part, get](const XvcObj& object) -> XFieldValue { return get(object).*part; };
        field.set = [part, get, set](XvcObj& object, const XFieldValue& value) {
            Record record = get(object);
            record.*part = std::get<double>(value);
            set(object, record);
        };
        return field;
    }
    void AddRect(); ///< of an XvcRectObj
    void AddBox();  ///< of an XvcBoxObj
    void AddInfo(const char* id, const char* label, std::function<XString(const XvcObj&)> get);

    enum Style : unsigned {
        kLine = 1,
        kFore = 2,
        kBack = 4,
        kThick = 8,
        kLineStyle = 16,
        kFill = 32,
        kStroke = kLine | kThick | kLineStyle,
        kAll = 63
    };
    /// The page of style and the general page, which end every form.
    void AddCommon(unsigned style, const char* thickLabel);

    Fields Take() { return std::move(m_fields); }

private:
    Fields m_fields;
    XFieldPage m_page = XFieldPage::Own;
};

/// A list of names; those of a null pointer are left out, the values are the places.
template <class GetName>
XFieldList::Choices XfnMakeChoices(int count, GetName getName)
{
    XFieldList::Choices choices;
    for (int i = 0; i < count; ++i)
        if (const char* name = getName(i)) choices.push_back({i, name});
    return choices;
}
