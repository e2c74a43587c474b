#include "guide/transparent_overlay.h"

#include "foundation/text_keys.h"
#include "support/library_test.h"

namespace vorex::test {
namespace {

using TransparentOverlay = LibraryTest;

TEST_F(TransparentOverlay, CentresItsLabelAndKeepsItInside) {
    XTransparent overlay;
    overlay.ResizeTheLabel(400, 100, 200, 20);
    EXPECT_EQ(overlay.Label(), (XTransparent::Box{100, 40, 200, 20}));
    overlay.ResizeTheLabel(400, 100, 600, 20);
    EXPECT_EQ(overlay.Label(), (XTransparent::Box{0, 40, 400, 20}));
}

}  // namespace
}  // namespace vorex::test
