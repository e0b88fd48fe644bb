#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

class XvcSymbolTable;

/// The symbols that come with the library, by group. Numbers are stored in files and never change
/// their meaning.
///
/// | numbers | group             |
/// |---------|-------------------|
/// | 1-10    | Geometric         |
/// | 21-28   | Crosses           |
/// | 41-46   | Arrows            |
/// | 61-67   | Survey marks      |
/// | 81-92   | Points of interest|

/// Adds those whose number is not taken. @return how many were added
XAPI int XfnFillSymbolTable(XvcSymbolTable& table);

/// A table of these symbols alone, for reading from any thread.
XAPI const XvcSymbolTable& XfnGetStandardSymbols();

/// The outline that stands where there is none: the square with its diagonals.
XAPI const XString& XfnGetPlaceholderOutline();
