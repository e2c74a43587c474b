#include "views/result_table.h"

#include <algorithm>

#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "results/column_facts.h"
#include "views/result_keys.h"

namespace vorex {

namespace {

std::string ExposureCaption(std::size_t index) {
    return Translate(text::kExposureNumber) + PlainText(static_cast<int32_t>(index + 1));
}

/// No cell for numbers that none can have.
CellPlace PlaceOf(const OperatorAct& act) {
    constexpr int32_t kMost = 255;
    if (act.number < 0 || act.number > kMost || act.column < 0 || act.column > kMost) return {};
    return {static_cast<uint8_t>(act.number), static_cast<uint8_t>(act.column)};
}

}  // namespace

// ---------------------------------------------------------------------------------- columns and rows

void ResultTable::AddColumnHeader(std::string_view key, std::string_view name, int16_t width) {
    mColumns.push_back({std::string(key), Translate(name), width, false, FactsOf(key).Is(kCheckMark)});
    Sources sources;
    sources.value.key = ValueKeyOf(key);
    sources.mean.key = MeanKeyOf(key);
    sources.variation.key = VariationKeyOf(key);
    // Columns are nearly always added in the order of the measurements.
    sources.value.place = mColumns.size() - 1;
    mSources.push_back(std::move(sources));
    for (ResultRow& row : mRows) row.cells.emplace_back();
    for (ResultRow& row : mStatistics) row.cells.emplace_back();
    Changed.Raise();
}

void ResultTable::RemoveColumns() {
    mColumns.clear();
    mSources.clear();
    for (ResultRow& row : mRows) row.cells.clear();
    for (ResultRow& row : mStatistics) row.cells.clear();
    Changed.Raise();
}

void ResultTable::AddRows(std::size_t count) {
    while (mRows.size() < count) {
        mRows.push_back({ExposureCaption(mRows.size()), {}});
        mRows.back().cells.resize(mColumns.size());
    }
}

void ResultTable::pNoOfExposures(uint8_t count) {
    if (mRows.size() > count) mRows.resize(count);
    AddRows(count);
    Changed.Raise();
}

void ResultTable::Clear() {
    mRows.clear();
    for (ResultRow& row : mStatistics) row.cells.assign(mColumns.size(), {});
    mSelected = 0;
    Changed.Raise();
}

void ResultTable::SetUpStatistics() {
    mStatistics.clear();
    if (mLayout != Layout::kGrid || mTestId != kRadioRepro) return;
    for (std::string_view caption : {text::kAverageRow, text::kCv}) {
        mStatistics.push_back({Translate(caption), {}});
        mStatistics.back().cells.resize(mColumns.size());
    }
}

void ResultTable::Initialize(bool checkBox, const std::shared_ptr<ITestElement>& element) {
    mCheckBoxes = checkBox;
    mElement = element;
    mTestId = element ? element->TestID() : 0;
    SetUpStatistics();
    Changed.Raise();
}

void ResultTable::Initialize(ControlArgument argument) {
    const auto* element = std::get_if<std::shared_ptr<ITestElement>>(&argument);
    Initialize(mCheckBoxes, element != nullptr ? *element : nullptr);
}

void ResultTable::Visible(bool visible) {
    mVisible = visible;
    Changed.Raise();
}

void ResultTable::UnInitialize() {
    mElement.reset();
    mLimits.reset();
    mShown.reset();
    mResult = nullptr;
}

void ResultTable::SelectStandard(std::string_view alphaName, std::string_view completeName, bool calculated) {
    mStandard = {std::string(alphaName), std::string(completeName)};
    mCalculated = calculated;
    Changed.Raise();
}

void ResultTable::DisplayAllColumns(bool visible, std::string_view columnNumbers) {
    ForEachPart(columnNumbers, ',', [&](std::string_view part) {
        const int32_t column = ReadInteger(part);
        if (column >= 1 && column <= NoOfColumnHeaders())
            mColumns[static_cast<std::size_t>(column - 1)].hidden = !visible;
    });
    Changed.Raise();
}

void ResultTable::SetValue(uint8_t row, uint8_t column, std::string_view text) {
    if (!IsCell({static_cast<uint8_t>(row + 1), column})) return;
    mRows[row].cells[column - 1U].text = text;
    Changed.Raise();
}

std::string ResultTable::GetValue(uint8_t row, uint8_t column) const {
    if (!IsCell({static_cast<uint8_t>(row + 1), column})) return {};
    return mRows[row].cells[column - 1U].text;
}

void ResultTable::SetColumnSettings(uint8_t column, const std::vector<std::string>& values, bool checkBox) {
    if (column == 0 || column > mColumns.size()) return;
    mColumns[column - 1U].checkBox = mColumns[column - 1U].checkBox || checkBox;
    for (std::size_t row = 0; row < std::min(values.size(), mRows.size()); ++row) {
        ResultCell& cell = mRows[row].cells[column - 1U];
        if (mColumns[column - 1U].checkBox)
            cell.checked = ReadNumber(values[row]) != 0;
        else
            cell.text = values[row];
    }
    Changed.Raise();
}

void ResultTable::GetColumnSettings(uint8_t column, std::vector<std::string>& values) const {
    if (column == 0 || column > mColumns.size()) return;
    values.clear();
    for (const ResultRow& row : mRows) {
        const ResultCell& cell = row.cells[column - 1U];
        values.push_back(!mColumns[column - 1U].checkBox ? cell.text : cell.checked ? "1" : "0");
    }
}

void ResultTable::ClickedMeasurementColumn(std::string_view maKey, std::string_view masKey,
                                           std::string_view masPulseKey, std::string_view dosePulseKey) {
    mTypedKeys = {std::string(maKey), std::string(masKey), std::string(masPulseKey),
                  std::string(dosePulseKey)};
}

// ------------------------------------------------------------------------------------ showing a result

bool ResultTable::TakeResult() {
    const auto element = mElement.lock();
    if (!element) return false;
    auto result = element->Result();
    if (result == mShown) return false;
    mShown = std::move(result);
    mResult = dynamic_cast<CResultCommon*>(mShown.get());
    return true;
}

void ResultTable::ShowTestResult(const std::shared_ptr<ITestElement>& test, uint8_t exposure) {
    mElement = test;
    TakeResult();
    FillAllRows(true);
    mSelected = exposure;
    Changed.Raise();
}

void ResultTable::UpdateTestResult(bool testStatus, uint8_t exposure) {
    if (TakeResult() || exposure == 0) {
        FillAllRows(testStatus);
    } else if (mResult != nullptr) {
        AddRows(exposure);
        FillRow(exposure - 1U, testStatus);
        FillTestWideColumns(testStatus);
        FillStatistics(testStatus);
    }
    mSelected = exposure;
    Changed.Raise();
}

bool ResultTable::IsStored(std::size_t row) const {
    return mResult != nullptr && row < mResult->Rows().size() && mResult->Rows()[row];
}

void ResultTable::FillAllRows(bool marks) {
    if (mResult != nullptr) AddRows(mResult->Rows().size());
    for (std::size_t row = 0; row < mRows.size(); ++row) FillRow(row, marks);
    FillStatistics(marks);
}

void ResultTable::FillRow(std::size_t row, bool marks) {
    std::vector<ResultCell>& cells = mRows[row].cells;
    if (IsStored(row)) {
        const MeasurementRow& stored = *mResult->Rows()[row];
        for (std::size_t column = 0; column < mColumns.size(); ++column)
            Fill(cells[column], mColumns[column].checkBox, mSources[column].value, stored, marks);
        return;
    }
    for (std::size_t column = 0; column < mColumns.size(); ++column) {
        cells[column].text.clear();
        cells[column].status = kNotTested;
    }
}

void ResultTable::FillTestWideColumns(bool marks) {
    // Judging writes the statistics of these tests into every stored row.
    if (mTestId != kMammoAccRepro && mTestId != kMammoAec) return;
    for (std::size_t column = 0; column < mColumns.size(); ++column) {
        Source& source = mSources[column].value;
        if (!mResult->IsTestWideColumn(source.key)) continue;
        for (std::size_t row = 0; row < mRows.size(); ++row)
            if (IsStored(row)) Fill(mRows[row].cells[column], false, source, *mResult->Rows()[row], marks);
    }
}

void ResultTable::FillStatistics(bool marks) {
    if (mStatistics.empty() || mResult == nullptr) return;
    const MeasurementRow* last = mResult->LastReading();
    if (last == nullptr) return;
    for (std::size_t column = 0; column < mColumns.size(); ++column) {
        if (mColumns[column].checkBox) continue;
        Fill(mStatistics[0].cells[column], false, mSources[column].mean, *last, marks);
        Fill(mStatistics[1].cells[column], false, mSources[column].variation, *last, marks);
    }
}

const CMeasurement* ResultTable::Locate(Source& source, const MeasurementRow& row) {
    if (source.place < row.size() && NamesMeasurement(source.key, row[source.place]->RawKey()))
        return row[source.place].get();
    const auto at = std::find_if(row.begin(), row.end(), [&](const auto& item) {
        return NamesMeasurement(source.key, item->RawKey());
    });
    if (at == row.end()) return nullptr;
    source.place = static_cast<std::size_t>(at - row.begin());
    return at->get();
}

void ResultTable::Fill(ResultCell& cell, bool checkBox, Source& source, const MeasurementRow& row,
                       bool marks) const {
    const CMeasurement* measurement = Locate(source, row);
    if (measurement == nullptr) {
        cell.text.clear();
        if (marks) cell.status = kNotTested;
        return;
    }
    std::string converted;
    const auto* value = std::get_if<std::string>(&measurement->RawValue());
    if (value == nullptr) {
        converted = measurement->ValueText();
        value = &converted;
    }
    if (source.unitKey != measurement->RawUnit()) {
        source.unitKey = measurement->RawUnit();
        source.unit = UnitText(source.unitKey);
    }
    if (checkBox)
        cell.checked = ReadNumber(*value) != 0;
    else
        ShowValue(*value, source, cell.text);
    if (marks) cell.status = measurement->Status();
}

void ResultTable::ShowValue(const std::string& value, const Source& source, std::string& shown) const {
    shown.clear();
    if (value.empty()) return;
    if (source.key == key::kMode) {
        shown = value;
        return;
    }
    if (source.key == key::kPhantomThickness) {
        shown = WithPoint(value);
        return;
    }
    const std::string_view picture = HasZrd(mDetectorKind) ? kTwoDecimals : std::string_view();
    if (IsWritten(value, picture)) {
        shown = value;
    } else if (!IsValidReading(value)) {
        shown = value;
        return;  // nothing was measured, so there is no unit
    } else if (const std::size_t star = value.find('*'); star != std::string::npos) {
        shown = PlainText(ReadNumber(std::string_view(value).substr(0, star))) + "*";
    } else {
        const double number = ReadNumber(value);
        shown = picture.empty() ? PlainText(number) : FormatPicture(number, picture);
    }
    if (!source.unit.empty()) {
        shown += ' ';
        shown += source.unit;
    }
}

// ------------------------------------------------------------------------------ what the operator does

bool ResultTable::IsCell(CellPlace place) const {
    return place.exposure >= 1 && place.exposure <= mRows.size() && place.column >= 1 &&
           place.column <= mColumns.size();
}

bool ResultTable::IsStatistic(CellPlace place) const {
    return place.exposure == 0 && place.column >= 1 && place.column <= mColumns.size() &&
           !mStatistics.empty();
}

bool ResultTable::IsCheckMark(CellPlace place) const {
    return !mLocked && IsCell(place) && mColumns[place.column - 1U].checkBox;
}

bool ResultTable::IsTypable(CellPlace place) const {
    if (mLocked || !mTypingAllowed || !IsCell(place)) return false;
    if (mResult == nullptr || !mResult->HasReading(place.exposure - 1U)) return false;
    const std::string& key = mColumns[place.column - 1U].key;
    return std::find(mTypedKeys.begin(), mTypedKeys.end(), key) != mTypedKeys.end();
}

bool ResultTable::Takes(const OperatorAct& act) const {
    const CellPlace place = PlaceOf(act);
    switch (act.kind) {
        case OperatorAct::Kind::kClick:
            return IsCell(place) || IsStatistic(place);
        case OperatorAct::Kind::kMenu:
            return IsCell(place);
        case OperatorAct::Kind::kCheck:
            return IsCheckMark(place);
        case OperatorAct::Kind::kType:
            return IsTypable(place);
        default:
            return false;
    }
}

void ResultTable::Do(const OperatorAct& act) {
    const CellPlace place = PlaceOf(act);
    if (act.kind == OperatorAct::Kind::kClick) Press(place);
    if (act.kind == OperatorAct::Kind::kMenu) PressRight(place);
    if (act.kind == OperatorAct::Kind::kCheck) ToggleCheck(place);
    if (act.kind == OperatorAct::Kind::kType) Edit(place, act.text);
}

bool ResultTable::Press(CellPlace place) {
    if (!IsCell(place) && !IsStatistic(place)) return false;
    if (IsCell(place)) mSelected = place.exposure;
    events.ItemClick.Raise(place.exposure, place.column, mColumns[place.column - 1U].key);
    Changed.Raise();
    return true;
}

void ResultTable::PressRight(CellPlace place) {
    if (IsCell(place)) mSelected = place.exposure;
    Changed.Raise();
    events.MouseDown.Raise(true, mSelected);
}

bool ResultTable::ToggleCheck(CellPlace place) {
    if (!IsCheckMark(place)) return false;
    ResultCell& cell = mRows[place.exposure - 1U].cells[place.column - 1U];
    cell.checked = !cell.checked;
    AnnounceEdit(place, cell.checked ? "1" : "0");
    return true;
}

bool ResultTable::Edit(CellPlace place, std::string_view typed) {
    if (!IsTypable(place)) return false;
    std::string taken;
    for (char c : typed)
        if (AcceptsKey(static_cast<unsigned char>(c))) taken.push_back(c == ',' ? '.' : c);
    const std::string text(Trimmed(taken));
    mRows[place.exposure - 1U].cells[place.column - 1U].text = text;
    AnnounceEdit(place, text);
    return true;
}

void ResultTable::AnnounceEdit(CellPlace place, const std::string& text) {
    events.CellEdited.Raise(place.exposure, place.column, text);
    if (mCallback) mCallback->CallBack("Edited");
    Changed.Raise();
}

bool ResultTable::AcceptsKey(int keyCode) {
    constexpr int kEnter = 13;
    return FilterNumericKey(keyCode) || keyCode == kEnter || keyCode == ' ' || keyCode == ',';
}

CellPlace ResultTable::CellAfter(CellPlace place) const {
    if (!IsCell(place)) return {};
    if (place.column < mColumns.size()) return {place.exposure, static_cast<uint8_t>(place.column + 1)};
    const CellPlace next{static_cast<uint8_t>(place.exposure + 1), 1};
    return IsCell(next) ? next : CellPlace{};
}

}  // namespace vorex
