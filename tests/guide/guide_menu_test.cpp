#include "guide/guide_menu.h"

#include "support/library_test.h"

namespace vorex::test {
namespace {

using GuideMenu = LibraryTest;

std::string Texts(const std::vector<MenuItem>& items) {
    std::string texts;
    for (const MenuItem& item : items)
        texts += std::to_string(item.id) + " " + item.caption + (item.enabled ? "" : " off") +
                 (item.checked ? " x" : "") + "(" + Texts(item.items) + ")";
    return texts;
}

TEST_F(GuideMenu, ListsTargetFiltersAndHiddenColumnsWhereThereAreSome) {
    EXPECT_EQ(Texts(BuildGuideMenu({})), "100 Redo Exposure off()");
    EXPECT_EQ(Texts(BuildGuideMenu({true, {"Mo/Mo", "Mo/Rh"}, 1, true, true})),
              "100 Redo Exposure()0 Target/Filter(1200 Mo/Mo()1201 Mo/Rh x())0 ()200 Show &All x()");
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
