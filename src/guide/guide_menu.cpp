#include "guide/guide_menu.h"

#include <algorithm>

#include "execution/test_guide_contract.h"
#include "foundation/text_keys.h"
#include "foundation/utilities.h"

namespace vorex {

std::vector<MenuItem> BuildGuideMenu(const GuideMenuState& state) {
    std::vector<MenuItem> items;
    items.push_back({guide_menu::kRedo, Translate(text::kRedoExposure), state.canRedo});
    if (!state.targetFilters.empty()) {
        MenuItem submenu{0, Translate(text::kTargetFilter)};
        int32_t index = 0;
        for (const std::string& name : state.targetFilters) {
            submenu.items.push_back(
                {guide_button::kFirstTargetFilter + index, name, true, index == state.checkedTargetFilter});
            ++index;
        }
        items.push_back(std::move(submenu));
    }
    if (state.hasHiddenColumns) {
        items.push_back({});
        items.push_back({guide_menu::kShowAll, Translate(text::kShowAll), true, state.allShown});
    }
    return items;
}

bool CanChoose(const std::vector<MenuItem>& items, int32_t id) {
    return id != 0 && std::any_of(items.begin(), items.end(), [&](const MenuItem& item) {
               return (item.id == id && item.enabled) || CanChoose(item.items, id);
           });
}

}  // namespace vorex
