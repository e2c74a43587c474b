#include "guide/guide_menu.h"

#include "support/library_test.h"

namespace vorex::test {
namespace {

using GuideMenu = LibraryTest;

TEST_F(GuideMenu, OffersRedoAloneWhereThereIsNothingElse) {
    const auto items = BuildGuideMenu({});
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0].id, 100);
    EXPECT_EQ(items[0].caption, "Redo Exposure");
    EXPECT_FALSE(items[0].enabled);
}

TEST_F(GuideMenu, ListsTargetFiltersAndHiddenColumns) {
    const auto items = BuildGuideMenu({true, {"Mo/Mo", "Mo/Rh"}, 1, true, true});
    ASSERT_EQ(items.size(), 4U);
    EXPECT_TRUE(items[0].enabled);
    EXPECT_EQ(items[1].caption, "Target/Filter");
    ASSERT_EQ(items[1].items.size(), 2U);
    EXPECT_EQ(items[1].items[0].id, 1200);
    EXPECT_FALSE(items[1].items[0].checked);
    EXPECT_EQ(items[1].items[1].id, 1201);
    EXPECT_EQ(items[1].items[1].caption, "Mo/Rh");
    EXPECT_TRUE(items[1].items[1].checked);
    EXPECT_EQ(items[2].id, 0);
    EXPECT_EQ(items[3].id, 200);
    EXPECT_EQ(items[3].caption, "Show &All");
    EXPECT_TRUE(items[3].checked);
}

TEST_F(GuideMenu, OnlyEnabledItemsCanBeChosen) {
    const auto items = BuildGuideMenu({false, {"Mo/Mo"}, 0, true, false});
    EXPECT_FALSE(CanChoose(items, 0));
    EXPECT_FALSE(CanChoose(items, 100));
    EXPECT_TRUE(CanChoose(items, 200));
    EXPECT_TRUE(CanChoose(items, 1200));
    EXPECT_FALSE(CanChoose(items, 1201));
}

}  // namespace
}  // namespace vorex::test
