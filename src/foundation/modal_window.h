#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/event.h"
#include "foundation/host_contract.h"
#include "foundation/operator_act.h"
#include "foundation/vocabulary.h"

/// The content and the acts of a window, without its widgets. A platform draws it and passes on what the
/// person does.
///
/// 1. `IPlatform::ShowModal` gets the window, listens to `Changed`, draws every part and makes it visible.
/// 2. Each `Changed` names a part: the platform draws that part again, and no other.
/// 3. Each thing that the person does is an `OperatorAct` for `Act`. The window asks its questions (menu,
///    message, confirmation) through `IPlatform`.
/// 4. The window hides itself; `ShowModal` returns.
namespace vorex {

class IWaveform;

struct WindowButton {
    int32_t key = 0;
    std::string caption;
    bool visible = false;
    bool enabled = false;
    bool checked = false;
    bool panel = false;  ///< a field of the bar that cannot be pressed
};

struct MenuItem {
    int32_t id = 0;  ///< 0 is a separator, or a submenu when there are items below it
    std::string caption;
    bool enabled = true;
    bool checked = false;
    std::vector<MenuItem> items = {};
};

inline constexpr int16_t kColumnWidth = 1650;

struct ResultColumn {
    std::string key;
    std::string caption;
    int16_t width = kColumnWidth;
    bool hidden = false;
    bool checkBox = false;  ///< cells are check marks, not texts
};

struct ResultCell {
    std::string text;
    int32_t status = kNotTested;
    bool checked = false;
};

struct ResultRow {
    std::string caption;
    std::vector<ResultCell> cells;  ///< one per column, hidden ones included
};

/// The table of a window: a row for each exposure.
class IResultTable {
  public:
    virtual ~IResultTable() = default;
    virtual const std::vector<ResultColumn>& Columns() const = 0;
    /// One row per exposure, stored or planned.
    virtual const std::vector<ResultRow>& Rows() const = 0;
    /// Rows below the exposures, such as mean and coefficient of variation; often none.
    virtual const std::vector<ResultRow>& Statistics() const = 0;
    /// From 1; 0 for none.
    virtual uint8_t SelectedExposure() const = 0;
};

/// A pane with the waveform of one channel.
struct WindowTab {
    std::string_view name;
    uint8_t type = 0;  ///< of the waveform
    std::string caption;
    bool visible = false;
    std::shared_ptr<IWaveform> waveform;  ///< empty for a clear pane
};

/// A part of a window that is drawn on its own.
enum class WindowPart : uint8_t {
    kWindow,  ///< shown or hidden
    kToolbar,
    kStatusText,
    kStatus,
    kLines,
    kColumns,   ///< of the table, with their captions
    kTable,     ///< all rows, the statistics and the selection
    kTableRow,  ///< a row, the statistics and the selection
    kWaveform,
    kOverlay,
    kDetails,
    kMenu,  ///< its items, also while it is open
};

struct WindowChange {
    WindowPart part;
    uint8_t number = 0;  ///< `kTableRow`: exposure, from 1; `kWaveform`: type
};

/// A window that is shown modally until it hides itself.
class IModalWindow {
  public:
    virtual ~IModalWindow() = default;
    virtual bool Visible() const = 0;
    virtual void Visible(bool visible) = 0;

    // What is shown.
    /// The element that the window is about; empty for none.
    virtual std::shared_ptr<ITestElement> Element() const = 0;
    virtual const std::vector<WindowButton>& Buttons() const = 0;
    /// The visible instruction lines.
    virtual std::vector<std::string> VisibleLines() const = 0;
    virtual const std::string& StatusLine() const = 0;
    /// Status of the shown result.
    virtual int32_t StatusShown() const = 0;
    /// Null while there is no table.
    virtual const IResultTable* ShownTable() const = 0;
    virtual const std::vector<WindowTab>& Tabs() const = 0;
    /// The message that covers the table; empty while none does.
    virtual std::string OverlayText() const = 0;
    virtual const std::vector<std::string>& Details() const = 0;
    /// The pop-up menu as it would open now.
    virtual std::vector<MenuItem> MenuItems() const = 0;
    /// One part of the shown content has changed. A window that redraws the reported parts is always up to
    /// date.
    Event<WindowChange> Changed{"IModalWindow_Changed"};

    // What the person does.
    /// True when the window takes the act now: the button is enabled, the cell can be typed into. Answers are
    /// never for the window.
    virtual bool Takes(const OperatorAct& act) const = 0;
    /// Does what the person did. An act may last: Start returns when the run has ended. False when the window
    /// or its gate does not take it.
    bool Act(const OperatorAct& act) {
        if (!Takes(act) || (mGate && !mGate(act))) return false;
        ++mActs;
        Do(act);
        return true;
    }
    bool PressButton(int32_t key, bool shortcut = false) {
        return Act({shortcut ? OperatorAct::Kind::kShortcut : OperatorAct::Kind::kPress, key});
    }
    bool RedoExposure(int32_t exposure) { return Act({OperatorAct::Kind::kRedo, exposure}); }
    bool OpenMenu() { return Act({OperatorAct::Kind::kMenu}); }
    /// Acts done so far.
    int64_t Acts() const { return mActs; }

    /// Asked before each act that the window takes; False keeps it from being done. Empty for no gate.
    using ActGate = std::function<bool(const OperatorAct& act)>;
    void Gate(ActGate gate) { mGate = std::move(gate); }

  private:
    virtual void Do(const OperatorAct& act) = 0;

    ActGate mGate;
    int64_t mActs = 0;
};

}  // namespace vorex
