#pragma once

#include "foundation/vector/XVectorRange.h"

class XObList;
class XObject;
class XVertBuffer;
class XWarp2D;
class XvcObj;
struct tagXDrawAttrs;
struct tagXHitFlag;
struct tagXVector3;

/// For the sources of this folder only: what bases and layers do with their elements.
///
/// Bases, layers and plain lists are told by their exact class names ("XvcBase", "XvcLayer",
/// "XObList"); anything else in a list is an object, and what is no object either is passed over.
/// Plain lists are walked into, however deep. A base or layer answers for itself, since it keeps a
/// range, may be hidden or not to be hit, and so on.

/// Calculates the range of every element, hidden ones too; of objects, if they were touched.
/// @return the union
tagXVectorRange XfnCalcElementRange(XObject* element);
tagXVectorRange XfnCalcElementRanges(XObList& list);

/// Records every element that is not hidden, the rearmost first.
void XfnRecordElement(XObject* element, XVertBuffer* buffer, const XWarp2D* warp,
                      const tagXDrawAttrs* attrs);
void XfnRecordElements(XObList& list, XVertBuffer* buffer, const XWarp2D* warp,
                       const tagXDrawAttrs* attrs);

/// The frontmost object hit among the elements that are not hidden.
XvcObj* XfnHitTestElement(XObject* element, const tagXVector3& point, double toleranceX,
                          double toleranceY, tagXHitFlag& hitFlag);
XvcObj* XfnHitTestElements(XObList& list, const tagXVector3& point, double toleranceX,
                           double toleranceY, tagXHitFlag& hitFlag);

/// Destroys the elements, with those of plain lists among them, and empties the list.
void XfnDestroyElements(XObList& list);
