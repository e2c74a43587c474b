#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/modal_window.h"

namespace vorex {

/// Ids of the guide's pop-up menu; the id of a target/filter is the key of its button.
namespace guide_menu {
inline constexpr int32_t kRedo = 100;
inline constexpr int32_t kShowAll = 200;
}  // namespace guide_menu

/// The state that the guide's pop-up menu depends on.
struct GuideMenuState {
    bool canRedo = false;
    std::vector<std::string> targetFilters;
    int32_t checkedTargetFilter = -1;  ///< index from 0
    bool hasHiddenColumns = false;
    bool allShown = false;
};

std::vector<MenuItem> BuildGuideMenu(const GuideMenuState& state);

/// True when the menu has an enabled item with an id.
bool CanChoose(const std::vector<MenuItem>& items, int32_t id);

}  // namespace vorex
