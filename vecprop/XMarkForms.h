#pragma once

class XFieldList;

// The own fields of pictures, texts and marks.
void XfnAddBitmapFields(XFieldList& list);
void XfnAddRasterFields(XFieldList& list);
void XfnAddTextFields(XFieldList& list);
void XfnAddSymbolFields(XFieldList& list);
void XfnAddNorthArrowFields(XFieldList& list);
