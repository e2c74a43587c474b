#include "config/config_mqsa.h"

#include <algorithm>
#include <span>
#include <stdexcept>
#include <vector>

#include "foundation/host_error.h"
#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/survey_cells.h"
#include "foundation/survey_keys.h"
#include "foundation/survey_text_keys.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "guide/dialog_wrapper.h"

namespace vorex {

namespace {

namespace st = survey_text;

constexpr std::string_view kClassName = "CConfigMQSA";
constexpr std::string_view kSetupControl = "VorexZRD47500Test.XMQSAConfig";
constexpr std::string_view kCollimationGroup = survey::kGroups[2].name;
constexpr std::string_view kArtifactGroup = survey::kGroups[6].name;
static_assert(survey::kGroups[2].page == SurveyPage::kCollimation &&
              survey::kGroups[6].page == SurveyPage::kArtifacts);

struct TableCell {
    int32_t row;
    int32_t column;
    std::string_view text;
};

// clang-format off
constexpr TableCell kCollimationCells[] = {
    {0, 0, st::kTargetMaterial}, {0, 1, text::kMolybdenum},    {0, 2, text::kMolybdenum},
    {1, 0, st::kCollimator},     {1, 1, st::kCollimator18x24}, {1, 2, st::kCollimator24x30},
};
constexpr TableCell kArtifactCells[] = {
    {0, 0, st::kImageReceptorSize},   {0, 1, st::kReceptor18x24},    {0, 2, st::kReceptor24x30},    {0, 5, st::kReceptorMag},
    {1, 0, st::kTarget},              {1, 1, text::kMolybdenum},     {1, 2, text::kMolybdenum},     {1, 5, text::kMolybdenum},
    {2, 0, st::kFilter},              {2, 1, text::kMolybdenum},     {2, 2, text::kMolybdenum},     {2, 5, text::kMolybdenum},
    {3, 0, st::kFocalSpotOfCassette}, {3, 1, text::kFocalSpotLarge}, {3, 2, text::kFocalSpotLarge}, {3, 5, text::kFocalSpotSmall},
};
// clang-format on

std::size_t Index(int32_t rows, int32_t row, int32_t column) {
    if (row < 0 || row >= rows || column < 0 || column >= CConfigMQSA::kTableColumns)
        throw std::out_of_range("a cell outside the table");
    return static_cast<std::size_t>(row) * CConfigMQSA::kTableColumns + static_cast<std::size_t>(column);
}

std::string_view TextOf(std::span<const TableCell> table, int32_t row, int32_t column) {
    const auto at = std::find_if(table.begin(), table.end(), [&](const TableCell& cell) {
        return cell.row == row && cell.column == column;
    });
    return at == table.end() ? std::string_view() : at->text;
}

/// Key of the text that a cell has in a new configuration; cells are counted row by row.
std::string_view TextOf(GridId table, std::size_t cell) {
    const auto row = static_cast<int32_t>(cell) / CConfigMQSA::kTableColumns;
    const auto column = static_cast<int32_t>(cell) % CConfigMQSA::kTableColumns;
    return table == GridId::kLightField ? TextOf(kCollimationCells, row, column)
                                        : TextOf(kArtifactCells, row, column);
}

/// The first child of a name; empty when there is none.
std::shared_ptr<IXmlElement> Child(const IXmlElement& element, std::string_view name) {
    const auto found = element.FindChild(name);
    return found.empty() ? nullptr : found.front();
}

void LoadTable(const IXmlElement& block, std::string_view group, GridId table, std::span<std::string> cells) {
    const auto element = Child(block, group);
    const auto value = element ? Child(*element, GridKey(table)) : nullptr;
    if (!value || value->Text().empty()) return;
    const std::vector<std::string> parts = SplitCells(GridKey(table), value->Text(), cells.size());
    std::copy(parts.begin(), parts.end(), cells.begin());
    // A file holds the default texts; unchanged ones are shown in the present language.
    for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = WordOfToday(cells[i], TextOf(table, i));
}

void SaveTable(const std::shared_ptr<IXmlDocument>& owner, IXmlElement& block, std::string_view group,
               GridId table, std::span<const std::string> cells) {
    const auto element = owner->CreateElement(group);
    if (!element) RaiseHostError(kErrorConfigurationSave, kClassName, 3);
    std::vector<std::string> neutral;
    for (std::size_t i = 0; i < cells.size(); ++i) neutral.push_back(NeutralWord(cells[i], TextOf(table, i)));
    element->AddValue(GridKey(table), JoinCells(neutral));
    block.AddChild(element);
}

}  // namespace

CConfigMQSA::CConfigMQSA() {
    for (const TableCell& cell : kCollimationCells) Collimation(cell.row, cell.column, Translate(cell.text));
    for (const TableCell& cell : kArtifactCells) Artifact(cell.row, cell.column, Translate(cell.text));
    if (Services().createTestGuideConfig) mTestGuideConfig = Services().createTestGuideConfig();
}

std::string_view CConfigMQSA::CollimationText(int32_t row, int32_t column) {
    return TextOf(kCollimationCells, row, column);
}
const std::string& CConfigMQSA::Collimation(int32_t row, int32_t column) const {
    return mCollimation[Index(kCollimationRows, row, column)];
}
void CConfigMQSA::Collimation(int32_t row, int32_t column, std::string_view text) {
    mCollimation[Index(kCollimationRows, row, column)] = text;
}
const std::string& CConfigMQSA::Artifact(int32_t row, int32_t column) const {
    return mArtifact[Index(kArtifactRows, row, column)];
}
void CConfigMQSA::Artifact(int32_t row, int32_t column, std::string_view text) {
    mArtifact[Index(kArtifactRows, row, column)] = text;
}

std::shared_ptr<IConfigData> CConfigMQSA::Clone() {
    auto clone = std::make_shared<CConfigMQSA>();
    clone->mCollimation = mCollimation;
    clone->mArtifact = mArtifact;
    clone->OverridePrintReport = OverridePrintReport;
    clone->PrintTheComment = PrintTheComment;
    if (mTestGuideConfig) clone->mTestGuideConfig = mTestGuideConfig->Clone();
    return clone;
}

std::shared_ptr<IDialog> CConfigMQSA::CreateDialog() {
    return CreateControlDialog(kSetupControl, shared_from_this());
}

std::shared_ptr<IXmlElement> CConfigMQSA::Save(const std::shared_ptr<IXmlDocument>& owner) {
    const auto block = owner->CreateElement(tag::kPlugInData);
    if (!block) RaiseHostError(kErrorConfigurationSave, kClassName, 3);
    block->SetAttribute(tag::kPlugIn, kPlugInId);
    SaveTable(owner, *block, kCollimationGroup, GridId::kLightField, mCollimation);
    SaveTable(owner, *block, kArtifactGroup, GridId::kArtifacts, mArtifact);
    block->AddValue(tag::kOverridePrint, OverridePrintReport ? kStoredTrue : kStoredFalse);
    if (mTestGuideConfig)
        if (const auto settings = mTestGuideConfig->Save(owner)) block->AddChild(settings);
    return block;
}

void CConfigMQSA::Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* /*log*/) {
    if (element->Name() != tag::kPlugInData || element->GetAttribute(tag::kPlugIn) != kPlugInId)
        RaiseHostError(kErrorForeignConfiguration, kClassName, 4,
                       {"found \"" + std::string(element->Name()) + "\" of plug-in \"" +
                        std::string(element->GetAttribute(tag::kPlugIn)) + "\""});
    LoadTable(*element, kCollimationGroup, GridId::kLightField, mCollimation);
    for (int32_t column = 1; column < kTableColumns; ++column)
        Collimation(1, column, LocaleDecimal(Collimation(1, column)));
    LoadTable(*element, kArtifactGroup, GridId::kArtifacts, mArtifact);
    const std::string print = element->ReadValue(tag::kOverridePrint, {});
    OverridePrintReport = print.empty() || print == kStoredTrue;
    if (Services().createTestGuideConfig) mTestGuideConfig = Services().createTestGuideConfig();
    const auto settings = Child(*element, tag::kTestGuideSettings);
    if (settings && mTestGuideConfig) mTestGuideConfig->Load(settings);
}

}  // namespace vorex
