#include "app/report_file.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <set>
#include <stdexcept>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "app/data_folders.h"
#include "app/elements.h"
#include "app/report_record.h"
#include "app/verdict_text.h"
#include "files/atomic_file.h"
#include "files/element_file.h"
#include "files/standards_library.h"
#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "host/text_service.h"
#include "reports/report_cover.h"
#include "reports/report_document.h"
#include "reports/report_html.h"
#include "reports/report_pdf.h"
#include "reports/report_text.h"
#include "version.h"

namespace vorex {

namespace {

namespace fs = std::filesystem;

std::string RenderPdf(const ReportModel& report) {
    return InstalledPdfRenderer().Render(report);
}

struct ReportForm {
    std::string_view suffix;
    bool paged;
    std::string (*render)(const ReportModel& report);
};
constexpr std::array<ReportForm, 3> kForms = {{
    {".txt", false, ReportText},
    {".html", false, ReportHtml},
    {".pdf", true, RenderPdf},
}};

const ReportForm& FormOf(const fs::path& output) {
    std::string suffix = output.extension().string();
    std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (const ReportForm& form : kForms)
        if (form.suffix == suffix) return form;
    throw std::runtime_error(
        output.string() +
        ": the ending of the name chooses the form of a report; expected FILE.txt, FILE.html or FILE.pdf");
}

ReportPaper PaperOf(const std::string& name) {
    const auto paper = FindReportPaper(name);
    if (!paper) throw std::runtime_error("there is no paper \"" + name + "\"; expected A4 or Letter");
    return *paper;
}

std::string Today() {
    const auto platform = Services().platform;
    if (!platform) return {};
    const CalendarDate date = platform->Today();
    const auto two = [](int32_t number) { return FormatPicture(number, "00"); };
    return PlainText(static_cast<int32_t>(date.year)) + "-" + two(date.month) + "-" + two(date.day);
}

/// The title of a report, from the tested elements.
std::string TitleOf(const ElementFile& file, const ITextService& texts) {
    const auto& roots = file.Elements();
    if (roots.size() == 1 && roots.front()->Info()) {
        const std::string name = roots.front()->Info()->Name();
        const int32_t test = roots.front()->TestID();
        if (IsOwnName(name, test)) return name;
        if (!name.empty()) return texts.Translate(kPlugInId, TitleKey(test), {});
    }
    return texts.Translate(kPlugInId, text::kReportTitle, {});
}

ReportFacts FactsOf(const ElementFile& file, const fs::path& input, const ITextService& texts,
                    const std::string& language) {
    const auto words = [&](std::string_view textKey) { return texts.Translate(kPlugInId, textKey, {}); };
    ReportFacts facts;
    facts.title = TitleOf(file, texts);
    facts.fileName = input.filename().string();
    facts.date = Today();
    facts.program = "vorex " + std::string(kProgramVersion);
    facts.language = language;
    facts.pageOf = words(text::kReportPage);
    facts.failWord = words(text::kFail);
    facts.passWord = words(text::kPass);
    facts.contents = words(text::kReportContents);
    return facts;
}

void AddTests(const std::vector<std::shared_ptr<ITestElement>>& elements, std::set<int32_t>& tests) {
    for (const auto& element : elements) {
        tests.insert(element->TestID());
        if (const auto container = std::dynamic_pointer_cast<ITestContainer>(element))
            AddTests(container->NewEnum(), tests);
    }
}

/// The clauses of a standard for these tests, each once.
std::string ClausesOf(const StandardFile& standard, const std::set<int32_t>& tests) {
    std::set<std::string> clauses;
    for (const StandardLimit& limit : standard.limits)
        if (std::any_of(tests.begin(), tests.end(), [&](int32_t test) { return limit.IsFor(test); }))
            clauses.insert(limit.authority + " " + limit.clause);
    std::string words;
    for (const std::string& clause : clauses) words += (words.empty() ? "" : "; ") + clause;
    return words;
}

std::vector<JudgingStandard> StandardsOf(const ElementFile& file, const StandardsLibrary& library) {
    std::set<int32_t> tests;
    AddTests(file.Elements(), tests);
    std::vector<JudgingStandard> standards;
    const auto selected = file.Selected();
    for (const StandardName& name : selected->Standards()) {
        const StandardFile* known = library.Find(name.name, name.version);
        standards.push_back({name.name, name.version, known == nullptr ? "" : ClausesOf(*known, tests)});
    }
    return standards;
}

std::shared_ptr<const ITextService> TextsOf(const std::string& language) {
    return TextService::ForLanguage(language, DataFolders(kLanguages));
}

int32_t OptionBits(const ReportOptions& options) {
    return kReportComments | (options.limits ? kReportLimits : 0) |
           (options.waveforms ? kReportWaveforms : 0) | (options.failuresOnly ? kReportFailuresOnly : 0);
}

}  // namespace

void CheckReport(const ReportOptions& options) {
    FormOf(options.output);
    PaperOf(options.paper);
    if (options.language) TextsOf(*options.language);
}

void WriteReport(const ElementFile& file, const StandardsLibrary& library, const ReportOptions& options,
                 const std::string& programLanguage) {
    const std::string language = options.language.value_or(programLanguage);
    const ReportForm& form = FormOf(options.output);
    ReportSettings settings;
    settings.paper = form.paged ? PaperOf(options.paper) : EndlessReportPaper();
    settings.options = OptionBits(options);
    settings.text = language == programLanguage ? Services().text : TextsOf(language);
    settings.decimalSign = settings.text->Translate(kPlugInId, text::kDecimalSign, {}) == "," ? ',' : '.';
    settings.selected = file.Selected();
    settings.facts = FactsOf(file, options.input, *settings.text, language);
    ReportDocument report(settings, form.paged ? &InstalledPdfRenderer().Metrics() : nullptr);
    const auto instruments = file.Instruments();
    const auto standards = StandardsOf(file, library);
    const auto particulars = Particulars(file, report);
    // Results do not know their elements, so they are found here.
    std::unordered_map<const IResultData*, const ITestElement*> elements;
    ForEachElement(file.Elements(),
                   [&](const auto& element) { elements[element->Result().get()] = element.get(); });
    const auto recordOf = [&](const IResultData& result) {
        const auto* measured = dynamic_cast<const CResultCommon*>(&result);
        if (measured == nullptr) return std::vector<ReportFact>();
        return RecordFacts(*elements.at(&result), *measured, settings.selected.get(), instruments->Entries(),
                           report);
    };
    const auto noteOf = [&](const ITestElement& element) { return VerdictNote(element, &report); };
    PrintFile(report, {file.Elements(), standards, instruments->Entries(), particulars, recordOf, noteOf});
    WriteWholeFile(options.output, form.render(report.Finish()));
}

}  // namespace vorex
