#include "foundation/base/XFileException.h"
#include "foundation/base/XObList.h"

#include <gtest/gtest.h>

namespace {

class XLayerLike : public XObList
{
    X_DECLARE_CLASS(XLayerLike)
};
X_IMPLEMENT_CLASS(XLayerLike, XObList)

// a template between a class and its base has no record of its own
TEST(XObject, TheTwoTypeTestsDiffer)
{
    XLayerLike layer;
    XObject* object = &layer;
    EXPECT_TRUE(object->IsKindOf(XObList::GetRuntimeClassStatic()));
    EXPECT_TRUE(object->IsKindOf(XObject::GetRuntimeClassStatic()));
    EXPECT_FALSE(object->IsKindOf(XFileException::GetRuntimeClassStatic()));
    EXPECT_FALSE(object->IsKindOf(nullptr));
    EXPECT_TRUE(XfnIsExactly(object, "XLayerLike"));
    EXPECT_FALSE(XfnIsExactly(object, "XObList"));
    EXPECT_FALSE(XfnIsExactly(nullptr, "XObList"));

    XObList list;
    EXPECT_FALSE(list.IsKindOf(XLayerLike::GetRuntimeClassStatic()));
}

TEST(XException, DeleteFreesOnlyWhatWasMadeForIt)
{
    try {
        XFileException::ThrowOsError(2, "a.tif");
        FAIL();
    } catch (XFileException& e) {
        EXPECT_EQ(e.m_cause, XFileException::kFileNotFound);
        EXPECT_STREQ(e.GetErrorMessage(), "The file was not found: a.tif.");
        e.Delete();
    }
    XException* made = new XException(1);
    XException copy(*made);
    made->Delete(); // the leak check sees it when this frees nothing
    copy.Delete();  // and the address check when this frees the stack
}

} // namespace
