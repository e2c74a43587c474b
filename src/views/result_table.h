#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/class_registry.h"
#include "foundation/event.h"
#include "foundation/host_contract.h"
#include "foundation/vocabulary.h"
#include "results/result_common.h"
#include "views/result_view.h"

namespace vorex {

/// Place of a cell: exposure and column count from 1; all 0 is no cell.
struct CellPlace {
    uint8_t exposure = 0;
    uint8_t column = 0;
    bool operator==(const CellPlace&) const = default;
};

/// The exposures of a measuring test as a table: the content of each cell, and what the operator may do with
/// it. A window draws it and passes on presses and typed texts.
class ResultTable : public IZRD47500Result, public ICustomControl, public LibraryObject {
  public:
    /// A grid shows the statistics of test 100 in rows below the exposures, a list does not.
    enum class Layout { kList, kGrid };
    explicit ResultTable(Layout layout) : mLayout(layout) {}

    // IZRD47500Result
    void Limits(const std::shared_ptr<ILimitData>& limits) override { mLimits = limits; }
    void Clear() override;
    void ShowTestResult(const std::shared_ptr<ITestElement>& test, uint8_t exposure) override;
    void UpdateTestResult(bool testStatus, uint8_t exposure) override;
    void SelectStandard(std::string_view alphaName, std::string_view completeName, bool calculated) override;
    void AddColumnHeader(std::string_view key, std::string_view name, int16_t width) override;
    uint8_t pNoOfExposures() const override { return static_cast<uint8_t>(mRows.size()); }
    void pNoOfExposures(uint8_t count) override;
    void SetValue(uint8_t row, uint8_t column, std::string_view text) override;
    std::string GetValue(uint8_t row, uint8_t column) const override;
    void Initialize(bool checkBox, const std::shared_ptr<ITestElement>& element) override;
    void UnInitialize() override;
    void SetColumnSettings(uint8_t column, const std::vector<std::string>& values, bool checkBox) override;
    void GetColumnSettings(uint8_t column, std::vector<std::string>& values) const override;
    void DisplayAllColumns(bool visible, std::string_view columnNumbers) override;
    void RemoveColumns() override;
    void DetectorType(int32_t kind) override { mDetectorKind = kind; }
    void MASInputOverride(bool allowed) override { mTypingAllowed = allowed; }
    int32_t NoOfColumnHeaders() const override { return static_cast<int32_t>(mColumns.size()); }
    void ClickedMeasurementColumn(std::string_view maKey, std::string_view masKey,
                                  std::string_view masPulseKey, std::string_view dosePulseKey) override;
    bool Takes(const OperatorAct& act) const override;
    void Do(const OperatorAct& act) override;

    // ICustomControl
    std::shared_ptr<IControlCallback> CallBack() const override { return mCallback; }
    /// Called with the word "Edited" after each edit by the operator.
    void CallBack(std::shared_ptr<IControlCallback> callback) override { mCallback = std::move(callback); }
    WindowHandle hWnd() const override { return mWindow; }
    /// The window that draws this table; 0 for none.
    void hWnd(WindowHandle window) { mWindow = window; }
    bool Visible() const override { return mVisible; }
    void Visible(bool visible) override;
    bool Locked() const override { return mLocked; }
    /// A locked table shows its cells and takes no edits.
    void Locked(bool locked) override { mLocked = locked; }
    /// Takes an element; any other argument leaves the table without one.
    void Initialize(ControlArgument argument) override;
    void Refresh() override { Changed.Raise(); }
    void SetFocus() override {}

    // IResultTable
    const std::vector<ResultColumn>& Columns() const override { return mColumns; }
    const std::vector<ResultRow>& Rows() const override { return mRows; }
    /// The mean and the coefficient of variation of each column; empty where the test has none.
    const std::vector<ResultRow>& Statistics() const override { return mStatistics; }
    uint8_t SelectedExposure() const override { return mSelected; }

    bool HasCheckBoxes() const { return mCheckBoxes; }
    /// Limits of the element, and the one of their standards that is shown; its version may be empty.
    const std::shared_ptr<ILimitData>& ShownLimits() const { return mLimits; }
    const StandardName& ShownStandard() const { return mStandard; }
    bool ShowsCalculatedLimits() const { return mCalculated; }

    // What the operator does. False when the table refuses it.
    bool Press(CellPlace place);
    /// The right button: selects the row and asks for the menu.
    void PressRight(CellPlace place);
    bool ToggleCheck(CellPlace place);
    /// Stores a text that was typed into an mAs column of a stored exposure.
    bool Edit(CellPlace place, std::string_view typed);
    /// Keys that the cell editor accepts: digits, blank, ".", "," and, as 8 and 13, backspace and Enter.
    static bool AcceptsKey(int keyCode);
    /// The next cell of the editor on Enter: one column to the right, else in the next row; no cell at the
    /// end.
    CellPlace CellAfter(CellPlace place) const;

    /// The shown content has changed.
    Event<> Changed{"ResultTable_Changed"};

  private:
    /// The source of the values of a column, or of its statistics.
    struct Source {
        std::string key;
        std::size_t place = 0;  ///< index in a row of measurements, where it was found last
        std::string unitKey;    ///< what `unit` is the translation of
        std::string unit;
    };
    struct Sources {
        Source value, mean, variation;
    };

    bool IsCell(CellPlace place) const;
    bool IsStatistic(CellPlace place) const;
    bool IsCheckMark(CellPlace place) const;
    bool IsTypable(CellPlace place) const;
    bool IsStored(std::size_t row) const;
    bool TakeResult();
    void FillAllRows(bool marks);
    void FillRow(std::size_t row, bool marks);
    void FillTestWideColumns(bool marks);
    void FillStatistics(bool marks);
    void Fill(ResultCell& cell, bool checkBox, Source& source, const MeasurementRow& row, bool marks) const;
    void ShowValue(const std::string& value, const Source& source, std::string& shown) const;
    void AddRows(std::size_t count);
    void AnnounceEdit(CellPlace place, const std::string& text);
    void SetUpStatistics();
    static const CMeasurement* Locate(Source& source, const MeasurementRow& row);

    Layout mLayout;
    int32_t mDetectorKind = kZrd;
    bool mCheckBoxes = false;
    bool mTypingAllowed = false;
    std::array<std::string, 4> mTypedKeys;
    std::shared_ptr<ILimitData> mLimits;
    StandardName mStandard;
    bool mCalculated = false;
    std::weak_ptr<ITestElement> mElement;
    std::shared_ptr<IResultData> mShown;  ///< the result that the rows show
    CResultCommon* mResult = nullptr;     ///< the same, when it is one of a measuring test
    int32_t mTestId = 0;
    std::vector<ResultColumn> mColumns;
    std::vector<Sources> mSources;
    std::vector<ResultRow> mRows;
    std::vector<ResultRow> mStatistics;
    uint8_t mSelected = 0;
    std::shared_ptr<IControlCallback> mCallback;
    WindowHandle mWindow = 0;
    bool mVisible = true;
    bool mLocked = false;
};

class XResultListView : public ResultTable {
  public:
    XResultListView() : ResultTable(Layout::kList) {}
};

class XResultFlxGrid : public ResultTable {
  public:
    XResultFlxGrid() : ResultTable(Layout::kGrid) {}
};

}  // namespace vorex
