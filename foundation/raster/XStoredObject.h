#pragma once

#include "foundation/base/XObject.h"
#include "foundation/base/XString.h"

#include <vector>

/// An object of a class that this program has no code for, as it stored itself in an archive: kept
/// so that it goes into the next file unchanged.
class XAPI XStoredObject : public XObject
{
    X_DECLARE_CLASS(XStoredObject)
public:
    XStoredObject(const XString& className, std::vector<unsigned char> bytes)
        : m_className(className), m_bytes(std::move(bytes))
    {}

    const XString& GetClassName() const { return m_className; }
    const std::vector<unsigned char>& GetBytes() const { return m_bytes; }
    void Serialize(XArchive& archive) override; ///< storing only: the bytes

private:
    XString m_className;
    std::vector<unsigned char> m_bytes;
};
