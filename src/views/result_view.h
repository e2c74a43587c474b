#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/event.h"
#include "foundation/host_contract.h"
#include "foundation/modal_window.h"

namespace vorex {

/// What the operator does in a result view. Exposures and columns count from 1; exposure 0 is a row without
/// an exposure.
struct ResultViewEvents {
    Event<uint8_t, uint8_t, const std::string&> ItemClick{"irvResult_ItemClick"};  ///< exposure, column, key
    Event<bool> ItemClicked{"irvResult_ItemClicked"};
    Event<bool, uint8_t> MouseDown{"irvResult_MouseDown"};  ///< True for the right button; selected exposure
    /// A cell was typed into, or its check mark pressed ("1", "0"): exposure, column, text.
    Event<uint8_t, uint8_t, const std::string&> CellEdited{"irvResult_CellEdited"};
    Event<const std::string&> MQSAHelpText{"irvResult_MQSAHelpText"};
    Event<int32_t, int32_t> MQSAClick{"irvResult_MQSAClick"};  ///< row, column
};

/// A table with one row per exposure and one column per measurement key, through which the guide shows a
/// result. Operations are declared in slot order.
///
/// The guide calls `Initialize`, then `RemoveColumns`, `AddColumnHeader` for each column, `pNoOfExposures`,
/// `SelectStandard`, `Limits`; during the test `UpdateTestResult`; at the end `UnInitialize`.
class IZRD47500Result : public IResultTable {
  public:
    virtual void Limits(const std::shared_ptr<ILimitData>& limits) = 0;
    /// Removes all rows and values; columns stay.
    virtual void Clear() = 0;
    /// Fills the table from the element's result and selects an exposure, 0 for none.
    virtual void ShowTestResult(const std::shared_ptr<ITestElement>& test, uint8_t exposure) = 0;
    /// Refreshes the row of an exposure, 0 for all rows, and selects it. Without `testStatus` the status
    /// marks stay.
    virtual void UpdateTestResult(bool testStatus, uint8_t exposure) = 0;
    /// The standard that is shown: its name and version, and whether limits are shown calculated.
    virtual void SelectStandard(std::string_view alphaName, std::string_view completeName,
                                bool calculated) = 0;
    /// Adds a column; the name is a text key. "Import Waveform" and "Adjacent" are columns of check marks.
    virtual void AddColumnHeader(std::string_view key, std::string_view name,
                                 int16_t width = kColumnWidth) = 0;
    virtual uint8_t pNoOfExposures() const = 0;
    virtual void pNoOfExposures(uint8_t count) = 0;
    /// Rows count from 0, columns from 1, as in the configuration.
    virtual void SetValue(uint8_t row, uint8_t column, std::string_view text) = 0;
    virtual std::string GetValue(uint8_t row, uint8_t column) const = 0;
    virtual void Initialize(bool checkBox, const std::shared_ptr<ITestElement>& element) = 0;
    virtual void UnInitialize() = 0;
    /// Fills a column from an array of the configuration; with `checkBox` its numbers become check marks.
    virtual void SetColumnSettings(uint8_t column, const std::vector<std::string>& values,
                                   bool checkBox = false) = 0;
    virtual void GetColumnSettings(uint8_t column, std::vector<std::string>& values) const = 0;
    /// Shows or hides columns, their numbers joined by ",".
    virtual void DisplayAllColumns(bool visible, std::string_view columnNumbers) = 0;
    virtual void RemoveColumns() = 0;
    virtual void DetectorType(int32_t kind) = 0;
    /// Allows typing into the mAs columns.
    virtual void MASInputOverride(bool allowed) = 0;
    virtual int32_t NoOfColumnHeaders() const = 0;
    /// The keys of the four mAs columns.
    virtual void ClickedMeasurementColumn(std::string_view maKey, std::string_view masKey,
                                          std::string_view masPulseKey, std::string_view dosePulseKey) = 0;

    /// True when the table takes an act of the operator now: a click, a check mark, a text, the menu of a
    /// row.
    virtual bool Takes(const OperatorAct& act) const = 0;
    /// [when it takes the act]
    virtual void Do(const OperatorAct& act) = 0;

    ResultViewEvents events;
};

}  // namespace vorex
