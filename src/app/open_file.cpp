#include "app/open_file.h"

#include <utility>

#include "app/elements.h"
#include "config/config_common.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "host/element_base.h"
#include "mqsa/result_mqsa.h"

namespace vorex {

OpenFile::OpenFile(std::unique_ptr<ElementFile> file, std::string name)
    : mFile(std::move(file)), mName(std::move(name)) {}

std::unique_ptr<OpenFile> OpenFile::New(int32_t testId) {
    const auto element = CreateTestElement(testId);
    if (const auto config = std::dynamic_pointer_cast<CConfigCommon>(element->Configuration()))
        config->DefaultValues(testId);
    // Cloned, like every new test, because cloning takes the site's defaults.
    const auto test = element->Clone();
    element->Terminate();
    test->ID(1);
    // A file is the same in every language.
    test->Info()->Name(DefaultText(TitleKey(testId), {}));
    auto file = std::make_unique<ElementFile>();
    file->Add(test);
    return std::unique_ptr<OpenFile>(new OpenFile(std::move(file), {}));
}

std::unique_ptr<OpenFile> OpenFile::Load(const std::filesystem::path& path, std::string* content) {
    return std::unique_ptr<OpenFile>(new OpenFile(ElementFile::Load(path, nullptr, content), path.string()));
}

std::unique_ptr<OpenFile> OpenFile::FromText(std::string_view text, const std::string& name) {
    return std::unique_ptr<OpenFile>(new OpenFile(ElementFile::FromText(text, name), name));
}

std::optional<int32_t> OpenFile::FirstMeasuring() const {
    std::optional<int32_t> first;
    ForEachElement(Elements(), [&](const auto& element) {
        if (!first && element->TestID() != kMqsaSurvey && element->TestID() != kGroupId)
            first = element->ID();
    });
    return first;
}

FileVerdict OpenFile::Verdict() const {
    return AnyFailed(Elements()) ? FileVerdict::kBad : FileVerdict::kGood;
}

std::vector<AppFault> OpenFile::SurveyFaults() const {
    std::vector<AppFault> faults;
    for (const auto& element : SurveysOf(Elements())) {
        const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element->Result());
        if (survey && !survey->Fault().empty())
            faults.push_back({FaultSource::kSurvey, element->ID(), survey->Fault()});
    }
    return faults;
}

}  // namespace vorex
