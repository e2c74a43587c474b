#include "cli/command_support.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "cli/result_text.h"
#include "execution/test_group.h"
#include "foundation/host_services.h"
#include "foundation/library_state.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "host/headless_platform.h"
#include "host/text_service.h"
#include "library.h"
#include "mqsa/result_mqsa.h"
#include "version.h"

namespace vorex {

namespace fs = std::filesystem;

namespace {

void AddLines(const std::vector<std::shared_ptr<ITestElement>>& elements, int depth, bool colour,
              std::ostream& out) {
    for (const auto& element : elements) {
        out << ElementLine(*element, depth, colour) << "\n";
        if (const auto container = std::dynamic_pointer_cast<ITestContainer>(element))
            AddLines(container->NewEnum(), depth + 1, colour, out);
    }
}

/// True when an element that counts has failed. A group that was never run has no result of its own: its
/// children tell.
bool AnyFailed(const std::vector<std::shared_ptr<ITestElement>>& elements) {
    return std::any_of(elements.begin(), elements.end(), [](const auto& element) {
        const auto filter = element->Filter();
        if (filter && !filter->Evaluate()) return false;
        if (const auto result = element->Result()) return result->Status() == kFailed;
        const auto container = std::dynamic_pointer_cast<ITestContainer>(element);
        return container && AnyFailed(container->NewEnum());
    });
}

}  // namespace

std::vector<fs::path> DataFolders(std::string_view kind) {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (error) return {};
    return {program.parent_path().parent_path() / "share" / "vorex" / kind};
}

std::string LanguageOf(const CommonOptions& common) {
    return common.language ? *common.language : SystemLanguage(DataFolders(kLanguages));
}

Installation::Installation(const CommonOptions& common, ReferenceHostOptions options) {
    options.language = LanguageOf(common);
    options.languageFolders = DataFolders(kLanguages);
    options.program = "vorex " + std::string(kProgramVersion);
    if (!options.platform) options.platform = std::make_shared<HeadlessPlatform>();
    InstallLibrary(MakeReferenceHost(options));
    mRegistration.RegisterApp();
}

Installation::~Installation() {
    mRegistration.CloseApp();
    ResetState();
    InstallServices({});
}

void CheckOutput(const std::vector<fs::path>& inputs, const fs::path& output) {
    if (output.empty()) return;
    std::error_code error;
    for (const fs::path& input : inputs)
        if (!input.empty() && fs::equivalent(input, output, error))
            throw std::runtime_error(
                output.string() +
                ": the output is the input; give another file, so that the input stays as it is");
    const fs::path folder = output.has_parent_path() ? output.parent_path() : fs::path(".");
    if (!fs::is_directory(folder, error))
        throw std::runtime_error(output.string() + ": there is no folder " + folder.string() +
                                 " to write to");
    if (fs::is_directory(output, error))
        throw std::runtime_error(output.string() + ": is a folder; expected the name of a file");
}

void WriteResult(ElementFile& file, const fs::path& output, Terminal& terminal) {
    if (output.empty())
        terminal.out << file.Text();
    else
        file.Save(output);
}

void PrintSummary(const ElementFile& file, const fs::path& output, Terminal& terminal) {
    if (output.empty()) return;
    AddLines(file.Elements(), 0, terminal.colour, terminal.out);
    terminal.out << Translate(text::kSavedAs, {output.string()}) << "\n";
}

int VerdictOf(const ElementFile& file) {
    return AnyFailed(file.Elements()) ? kExitFailed : kExitPassed;
}

void ForEachElement(const std::vector<std::shared_ptr<ITestElement>>& elements,
                    const std::function<void(const std::shared_ptr<ITestElement>&)>& visit) {
    for (const auto& element : elements) {
        visit(element);
        if (const auto container = std::dynamic_pointer_cast<ITestContainer>(element))
            ForEachElement(container->NewEnum(), visit);
    }
}

std::vector<std::shared_ptr<CTestMQSA>> SurveysOf(const ElementFile& file) {
    std::vector<std::shared_ptr<CTestMQSA>> surveys;
    ForEachElement(file.Elements(), [&](const auto& element) {
        if (auto survey = std::dynamic_pointer_cast<CTestMQSA>(element)) surveys.push_back(std::move(survey));
    });
    return surveys;
}

void RollUpGroups(const ElementFile& file, const ISelectedStandards* selected) {
    for (const auto& element : file.Elements())
        if (const auto group = std::dynamic_pointer_cast<CTestGroup>(element))
            group->UpdateGroupStatus(selected);
}

bool PrintSurveyFaults(const ElementFile& file, Terminal& terminal) {
    bool any = false;
    for (const auto& element : SurveysOf(file)) {
        const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element->Result());
        if (!survey || survey->Fault().empty()) continue;
        terminal.err << "vorex: element " << PlainText(element->ID()) << ": " << survey->Fault() << "\n";
        any = true;
    }
    return any;
}

}  // namespace vorex
