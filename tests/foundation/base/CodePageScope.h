#pragma once

#include "foundation/base/XCodePage.h"

/// Sets the code page for one test.
class CodePageScope
{
public:
    explicit CodePageScope(int codePage) : m_old(XfnGetCodePage()) { XfnSetCodePage(codePage); }
    ~CodePageScope() { XfnSetCodePage(m_old); }
    CodePageScope(const CodePageScope&) = delete;
    CodePageScope& operator=(const CodePageScope&) = delete;

private:
    int m_old;
};
