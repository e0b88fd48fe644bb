#include "edit/XCommandManagerBase.h"

#include "foundation/vector/XvcFactory.h"
#include "foundation/vector/XvcObj.h"

XvcObj* XCommandManagerBase::CloneObject(const XvcObj* object, int addToWarehouse)
{
    if (addToWarehouse) return CloneObject(object);
    if (!CanClone(object)) return nullptr;
    XvcObj* const clone = XfnCloneVectorObject(object).release();
    if (clone) clone->CalcRange();
    return clone;
}
