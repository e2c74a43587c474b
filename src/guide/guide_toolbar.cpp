#include "guide/guide_toolbar.h"

#include <algorithm>

#include "foundation/text_keys.h"
#include "foundation/utilities.h"

namespace vorex {

namespace {

struct ButtonRow {
    int32_t key;
    std::string_view caption;
    bool visible;
    bool enabled;
    bool panel = false;
};

// clang-format off
constexpr ButtonRow kFixedButtons[] = {
    // key                      caption                visible enabled
    {guide_button::kAbort,       text::kAbort,          true,  true},
    {guide_button::kPrevious,    text::kPrevious,       true,  true},
    {guide_button::kNext,        text::kNext,           true,  false},
    {guide_button::kStop,        text::kStop,           true,  false},
    {guide_button::kStart,       text::kStart,          true,  true},
    {guide_button::kWakeUp,      text::kWakeUpDetector, false, false},
    {guide_button::kSkip,        text::kSkip,           false, true},
    {guide_button::kNa,          text::kNotApplicable,  false, true},
    {guide_button::kIonChamber,  text::kIonChamber,     false, true},
    {guide_button::kStatusPanel, {},                    true,  false, true},
    {guide_button::kSpacer,      {},                    true,  false, true},
    {guide_button::kDisconnect,  text::kDisconnect,     true,  false},
    {guide_button::kShunt,       text::kShunt,          false, true},
    {guide_button::kClamp,       text::kClamp,          false, true},
    {guide_button::kManual,      text::kManual,         false, true},
};
// clang-format on

bool IsTargetFilter(int32_t key) {
    return key >= guide_button::kFirstTargetFilter && key < guide_button::kShunt;
}

}  // namespace

GuideToolbar::GuideToolbar() {
    for (const ButtonRow& row : kFixedButtons)
        mButtons.push_back({row.key, std::string(row.caption), row.visible, row.enabled, false, row.panel});
    TranslateControl(*this);
}

void GuideToolbar::ForEachCaption(const std::function<void(std::string&)>& function) {
    for (WindowButton& button : mButtons)
        if (!button.panel) function(button.caption);
}

WindowButton* GuideToolbar::FindButton(int32_t key) {
    const auto at = std::find_if(mButtons.begin(), mButtons.end(),
                                 [&](const WindowButton& button) { return button.key == key; });
    return at == mButtons.end() ? nullptr : &*at;
}

const WindowButton* GuideToolbar::Find(int32_t key) const {
    return const_cast<GuideToolbar*>(this)->FindButton(key);
}

bool GuideToolbar::Takes(int32_t key) const {
    const WindowButton* button = Find(key);
    return button != nullptr && button->visible && button->enabled && !button->panel;
}

bool GuideToolbar::Enabled(int32_t key) const {
    const WindowButton* button = Find(key);
    return button != nullptr && button->enabled;
}

bool GuideToolbar::Checked(int32_t key) const {
    const WindowButton* button = Find(key);
    return button != nullptr && button->checked;
}

void GuideToolbar::Enable(int32_t key, bool enable) {
    if (WindowButton* button = FindButton(key)) button->enabled = enable;
}

void GuideToolbar::Show(int32_t key, bool show) {
    if (WindowButton* button = FindButton(key)) button->visible = show;
}

void GuideToolbar::CheckOnly(std::span<const int32_t> group, int32_t key) {
    for (int32_t member : group)
        if (WindowButton* button = FindButton(member)) button->checked = member == key;
}

void GuideToolbar::SetTargetFilters(const std::vector<std::string>& names, int32_t checkedIndex) {
    std::erase_if(mButtons, [](const WindowButton& button) { return IsTargetFilter(button.key); });
    constexpr auto kMost = static_cast<std::size_t>(guide_button::kShunt - guide_button::kFirstTargetFilter);
    mTargetFilters.assign(names.begin(),
                          names.begin() + static_cast<std::ptrdiff_t>(std::min(names.size(), kMost)));
    int32_t key = guide_button::kFirstTargetFilter;
    for (const std::string& name : mTargetFilters)
        mButtons.push_back({key++, name, true, true, false, false});
    CheckTargetFilter(checkedIndex);
}

void GuideToolbar::CheckTargetFilter(int32_t index) {
    for (WindowButton& button : mButtons)
        if (IsTargetFilter(button.key))
            button.checked = button.key == guide_button::kFirstTargetFilter + index;
}

int32_t GuideToolbar::CheckedTargetFilter() const {
    for (const WindowButton& button : mButtons)
        if (IsTargetFilter(button.key) && button.checked)
            return button.key - guide_button::kFirstTargetFilter;
    return -1;
}

}  // namespace vorex
