#include "cli/command_support.h"

#include <ostream>
#include <stdexcept>
#include <system_error>

#include "app/data_folders.h"
#include "app/verdict_text.h"
#include "cli/result_text.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "host/text_service.h"

namespace vorex {

namespace fs = std::filesystem;

namespace {

void AddLines(const std::vector<std::shared_ptr<ITestElement>>& elements, int depth, bool colour,
              std::ostream& out) {
    for (const auto& element : elements) {
        out << ElementLines(*element, depth, colour) << "\n";
        if (const auto container = std::dynamic_pointer_cast<ITestContainer>(element))
            AddLines(container->NewEnum(), depth + 1, colour, out);
    }
}

}  // namespace

std::string LanguageOf(const CommonOptions& common) {
    return common.language ? *common.language : SystemLanguage(DataFolders(kLanguages));
}

void TerminalListener::ElementBegins(const ITestElement& element) {
    if (mTerminal.progress)
        mTerminal.err << PlainText(element.ID()) << "  " << TestTitle(element) << " ..." << std::endl;
}

void TerminalListener::ElementEnded(const ITestElement& element) {
    if (mTerminal.progress)
        mTerminal.err << PlainText(element.ID()) << "  " << TestTitle(element) << ": " << StatusWords(element)
                      << std::endl;
}

void TerminalListener::VerdictChanged(const VerdictChange& change) {
    for (const std::string& line : ChangeLines(change)) mTerminal.err << "vorex: " << line << "\n";
}

void TerminalListener::Faulted(const AppFault& fault) {
    mTerminal.err << "vorex: ";
    if (fault.element != 0) mTerminal.err << "element " << PlainText(fault.element) << ": ";
    mTerminal.err << fault.text << "\n";
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

void WriteResult(OpenFile& file, const fs::path& output, Terminal& terminal) {
    if (!output.empty()) return file.Save(output);
    // The whole text is made before any of it is written, so that a fault leaves nothing half-written.
    for (const std::string& piece : file.TextPieces()) terminal.out << piece;
}

void PrintSummary(const OpenFile& file, const fs::path& output, Terminal& terminal) {
    if (output.empty()) return;
    AddLines(file.Elements(), 0, terminal.colour, terminal.out);
    terminal.out << Translate(text::kSavedAs, {output.string()}) << "\n";
}

int VerdictCode(const OpenFile& file, Terminal& terminal) {
    const std::vector<AppFault> faults = file.SurveyFaults();
    for (const AppFault& fault : faults) TerminalListener(terminal).Faulted(fault);
    if (!faults.empty()) return kExitFault;
    return file.Verdict() == FileVerdict::kBad ? kExitFailed : kExitPassed;
}

}  // namespace vorex
