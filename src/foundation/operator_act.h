#pragma once

#include <cstdint>
#include <string>

namespace vorex {

/// One act of a person at a window, which can be recorded and repeated.
struct OperatorAct {
    enum class Kind : uint8_t {
        kPress,     ///< a button: its key
        kShortcut,  ///< the same with its shortcut
        kClick,     ///< a cell: exposure, 0 for a row of statistics, and column
        kCheck,     ///< a check mark, which changes: exposure and column
        kType,      ///< a text into a cell: exposure, column and text
        kMenu,      ///< opens the menu: on the cell of an exposure, or for the selected one (0)
        kRedo,      ///< selects an exposure and redoes it without opening the menu
        kChoose,    ///< answers an open menu: id of the item, 0 for none
        kConfirm,   ///< answers a question: 1 for yes
    };
    Kind kind = Kind::kPress;
    int32_t number = 0;  ///< key of the button, exposure from 1, or the answer
    int32_t column = 0;  ///< from 1
    std::string text = {};
    bool operator==(const OperatorAct&) const = default;
};

/// True for the answer to a question of the platform. The other acts go to the window.
constexpr bool IsAnswer(OperatorAct::Kind kind) {
    return kind >= OperatorAct::Kind::kChoose;
}

}  // namespace vorex
