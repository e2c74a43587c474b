#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>

#include "config/config_common.h"
#include "foundation/number_text.h"
#include "foundation/survey_text_keys.h"
#include "foundation/text_keys.h"
#include "host/host_fixture.h"
#include "host/standards.h"
#include "host/text_service.h"
#include "reports/report_fixture.h"
#include "reports/report_pdf.h"
#include "results/result_columns.h"
#include "results/result_common.h"
#include "support/fake_element.h"
#include "support/system_tool.h"

namespace vorex::host_test {
namespace {

namespace fs = std::filesystem;
using Table = std::map<std::string, std::string>;

constexpr const char* kLanguages[] = {"de", "fr", "es"};

std::string WholeFile(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

Table TableOf(const std::string& code) {
    const fs::path file = fs::path(test::kSourceDir) / "languages" / (code + ".json");
    return nlohmann::json::parse(WholeFile(file)).get<Table>();
}

/// Every text key in the sources.
const std::set<std::string>& KeysOfSources() {
    static const std::set<std::string> keys = [] {
        static const std::regex kKey("\"([0-9]+::[^\"\n]*)\"");
        std::set<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(test::kSourceDir) / "src")) {
            const auto suffix = entry.path().extension();
            if (suffix != ".h" && suffix != ".cpp") continue;
            const std::string source = WholeFile(entry.path());
            for (std::sregex_iterator at(source.begin(), source.end(), kKey), end; at != end; ++at)
                found.insert((*at)[1]);
        }
        return found;
    }();
    return keys;
}

std::string EnglishOf(const std::string& key) {
    return key.substr(key.find("::") + 2);
}

std::multiset<std::string> PlaceholdersOf(const std::string& words) {
    static const std::regex kPlaceholder("%%[0-9]*");
    std::multiset<std::string> found;
    for (std::sregex_iterator at(words.begin(), words.end(), kPlaceholder), end; at != end; ++at)
        found.insert(at->str());
    return found;
}

/// How many blanks are before and after the words.
std::pair<std::size_t, std::size_t> OuterBlanks(const std::string& words) {
    return {std::min(words.find_first_not_of(' '), words.size()), words.size() - words.find_last_not_of(' ')};
}

class LanguageTableTest : public HostTest, public testing::WithParamInterface<const char*> {
  protected:
    /// Starts the program as a user does, because it finds the tables next to itself; its output goes to
    /// "printed".
    void Start(const std::string& language, const std::string& arguments, int codesBelow = 2) {
        const std::string command = "cd '" + folder.string() + "' && '" + std::string(test::kProgramPath) +
                                    "' " + arguments + " --language " + language + " > printed 2>&1";
        const int status = std::system(command.c_str());  // NOLINT(concurrency-mt-unsafe)
        EXPECT_LT(WEXITSTATUS(status), codesBelow) << command << "\n" << Read("printed");
    }

    /// Settings and a result of two exposures with limits, as on A4.
    static ReportModel Printed(const std::string& language, int32_t testId, int32_t kind, int32_t mode,
                               int32_t setup) {
        const auto config = std::make_shared<CConfigCommon>();
        config->DefaultValues(testId);
        config->DetectorName = kind;
        config->pMeasurementMode = mode;
        config->pMeasurementSettings = std::min(mode, 3);
        config->pGeneratorSetup = setup;
        config->AirDensityCorrection = true;
        config->pTargetFilterName = "Mo/Mo";
        const auto result = std::make_shared<CResultCommon>();
        result->Initialize(config);
        test::FakeElement owner;
        for (const auto& item : result->Current()) item->Value("1234.5");
        for (uint8_t exposure : {1, 2}) result->UpdateStatus(owner, nullptr, exposure);
        ReportSettings settings = SettingsFor(*FindReportPaper("A4"));
        settings.options = kReportLimits;
        const std::vector<fs::path> folders = {fs::path(test::kSourceDir) / "languages"};
        settings.text = TextService::ForLanguage(language, folders);
        ReportDocument report(settings, &InstalledPdfRenderer().Metrics());
        report.SelectedStandardsForReport = {std::make_shared<Standard>("Site", "1")};
        config->PrintReport(&report, nullptr);
        result->PrintReport(&report, nullptr);
        return report.Finish();
    }
    void CheckPrinted(const ReportModel& report) {
        for (const ReportPage& page : report.pages)
            for (const ReportItem& item : page.items)
                if (const auto* table = std::get_if<ReportTable>(&item))
                    for (const ReportRow& row : table->rows)
                        for (const ReportCell& cell : row.cells) CheckCell(cell);
    }
    void CheckCell(const ReportCell& cell) {
        ++cells;
        if (cell.heading) {
            EXPECT_EQ(cell.lines.size(), 1U) << cell.text;
        }
        for (std::size_t i = 1; i < cell.lines.size(); ++i) {
            const std::string_view before = cell.lines[i - 1].text;
            const bool inWord = before.data() + before.size() == cell.lines[i].text.data();
            EXPECT_FALSE(inWord) << before << "/" << cell.lines[i].text;
        }
    }
    std::size_t cells = 0;
};

TEST_P(LanguageTableTest, HasTheKeysOfTheSourcesAndNoOthers) {
    const Table table = TableOf(GetParam());
    ASSERT_TRUE(KeysOfSources().contains(std::string(text::kPass)));
    for (const std::string& key : KeysOfSources()) EXPECT_TRUE(table.contains(key)) << "missing: " << key;
    for (const auto& [key, words] : table)
        EXPECT_TRUE(KeysOfSources().contains(key)) << "nothing uses " << key;
}

TEST_P(LanguageTableTest, KeepsPlaceholdersOuterBlanksAndAcceleratorsOfTheKey) {
    for (const auto& [key, words] : TableOf(GetParam())) {
        const std::string english = EnglishOf(key);
        EXPECT_FALSE(words.empty()) << key;
        EXPECT_EQ(PlaceholdersOf(words), PlaceholdersOf(english)) << key;
        EXPECT_EQ(OuterBlanks(words), OuterBlanks(english)) << key;
        if (key == text::kShowAll) {
            EXPECT_EQ(std::count(words.begin(), words.end(), '&'), 1) << key;
        }
    }
}

/// A column that shows the English caption shows one of thirteen characters, or a third longer, as well.
TEST_P(LanguageTableTest, CaptionsFitTheirColumns) {
    constexpr std::size_t kAlwaysFits = 13;
    const Table table = TableOf(GetParam());
    std::size_t captions = 0;
    for (int32_t testId : kMeasuringTests)
        for (int32_t kind = 1; kind <= 5; ++kind)
            for (int32_t mode = 1; mode <= 4; ++mode) {
                CConfigCommon config;
                config.DefaultValues(testId);
                config.DetectorName = kind;
                config.pMeasurementMode = mode;
                for (const auto& column : BuildColumns(config)) {
                    const std::string english = column->Description();
                    const auto key = std::find_if(table.begin(), table.end(), [&](const auto& row) {
                        return EnglishOf(row.first) == english;
                    });
                    if (key == table.end()) continue;
                    ++captions;
                    const std::size_t most = std::max(kAlwaysFits, (CodePoints(english) * 13 + 9) / 10);
                    EXPECT_LE(CodePoints(key->second), most) << key->first << ": " << key->second;
                }
            }
    EXPECT_GT(captions, 100U);
}

/// Words of instruments, texts in files, and the international signs of units.
TEST_P(LanguageTableTest, LeavesWhatFilesAndInstrumentsHoldAsItIs) {
    const Table table = TableOf(GetParam());
    for (std::string_view key :
         {text::kOverRange, text::kUnderRange, text::kMolybdenum, text::kRhodium, text::kPhantom5cm,
          text::kModeNormal, text::kDefaultInstrument, text::kDoseUnitR, text::kDoseUnitGy,
          text::kDoseUnitCoulomb, text::kUnitAmpere, text::kRatePerSec, text::kRatePerMin, text::kRatePerHour,
          text::kRatePerPulse})
        EXPECT_EQ(table.at(std::string(key)), EnglishOf(std::string(key)));
}

/// A saved verdict is the first of these words found in the value.
TEST_P(LanguageTableTest, NoStoredWordHoldsAnother) {
    const Table table = TableOf(GetParam());
    const std::string_view keys[] = {text::kPass,       text::kFail, text::kNotApplicable, text::kOverRange,
                                     text::kUnderRange, text::kTrue, text::kFalse};
    for (std::string_view one : keys)
        for (std::string_view other : keys)
            if (one != other) {
                EXPECT_EQ(table.at(std::string(one)).find(table.at(std::string(other))), std::string::npos)
                    << one << " and " << other;
            }
}

TEST_P(LanguageTableTest, ARunGivesTheSameFileAsInEnglish) {
    const std::string code = GetParam();
    for (int32_t testId : kMeasuringTests) {
        const std::string id = PlainText(testId);
        for (const std::string& language : {std::string("en"), code}) {
            Start(language, "new " + id + " -o new." + language);
            Start(language, "run new." + language + " --instruments simulated:7 -o run." + language);
            Start(language, "judge run." + language + " -o judged." + language);
        }
        for (const std::string stage : {"new.", "run.", "judged."})
            EXPECT_EQ(Read(stage + code), Read(stage + "en")) << stage << id;
        EXPECT_NE(Read("run." + code).find("ResultItem"), std::string::npos) << id;
    }
}

TEST_P(LanguageTableTest, AnExportedSurveyCanBeEnteredInAnyLanguage) {
    const std::string code = GetParam();
    for (const std::string& language : {std::string("en"), code}) {
        Start(language, "new 1300 -o new." + language);
        Start(language,
              "survey new." + language + " --set 'ArtifactEvaluation(8,3)=Fail' -o filled." + language);
        Start(language, "survey filled." + language + " --export all." + language);
    }
    EXPECT_EQ(Read("all." + code), Read("all.en"));
    Start(code, "survey new.en --from all.en -o again");
    EXPECT_EQ(Read("again"), Read("filled.en"));
}

TEST_P(LanguageTableTest, ANameFromTheUserIsNotTranslated) {
    Write(
        "named.xml",
        Sequence("<TestElement PlugIn=\"ZRD47500\" TestID=\"200\" ID=\"1\" Name=\"Radiography "
                 "Linearity\"><PlugInData "
                 "PlugIn=\"ZRD47500\"><NumberOfExposures>1</NumberOfExposures></PlugInData></TestElement>"));
    Start(GetParam(), "report named.xml -o r.txt");
    EXPECT_NE(Read("r.txt").find("Radiography Linearity"), std::string::npos);
}

TEST_P(LanguageTableTest, EveryExampleGivesTheSameFileAsInEnglish) {
    const fs::path examples = fs::path(test::kSourceDir) / "examples";
    const std::string code = GetParam();
    int files = 0;
    for (const auto& entry : fs::directory_iterator(examples)) {
        if (entry.path().extension() != ".jsonl") continue;
        std::string name = entry.path().stem().string();
        if (const std::size_t lost = name.find("_link_lost"); lost != std::string::npos) name.resize(lost);
        const std::string run = "run '" + (examples / name).string() +
                                ".xml' --instruments 'recording:" + entry.path().string() + "' -o out.";
        for (const std::string& language : {std::string("en"), code}) Start(language, run + language, 5);
        EXPECT_NE(Read("out.en").find("ResultItem"), std::string::npos) << run;
        EXPECT_EQ(Read("out." + code), Read("out.en")) << run;
        ++files;
    }
    EXPECT_GT(files, 10);
}

/// What commands print has the words of the language, and no English ones.
TEST_P(LanguageTableTest, CommandsSpeakTheLanguage) {
    namespace st = survey_text;
    const std::string examples = std::string(test::kSourceDir) + "/examples/";
    const auto run = [&](const std::string& example, const std::string& recording) {
        return "run " + examples + example + ".xml --instruments recording:" + examples + recording +
               ".jsonl -o out.xml";
    };
    struct Case {
        std::vector<std::string> quiet;  ///< commands in English whose output does not matter
        std::vector<std::string> printing;
        std::vector<std::string_view> keys;
        std::vector<const char*> english;         ///< words that must not appear
        std::size_t columns = std::string::npos;  ///< that no line exceeds
    };
    const Case cases[] = {
        {{run("mammo_output", "mammo_output_link_lost")}, {"show out.xml"}, {text::kReasonLinkLost}, {}},
        {{run("radio_accuracy", "radio_accuracy")}, {"show out.xml"}, {text::kFail}, {}, 100},
        {{"new 1300 -o new.xml",
          "survey new.xml --set 'Resolution(7,2)=12' --set 'ThicknesskVpTracking(4,7)=1.5' --answer PR1=Pass "
          "-o survey.xml"},
         {"survey survey.xml --list", "show survey.xml"},
         {st::kFieldManufacturerXrayUnit, st::kListComment, st::kListAssistant, st::kWhatFails,
          st::kSummaryTable, st::kFigureParallel, st::kFigureDensity},
         {"expected", "at least", "column ", "have no answer", "(calculated)", "Type of"}},
        {{},
         {"new 200 -o in.xml", "run in.xml --instruments simulated:7 -o out.xml", "show out.xml",
          "report out.xml -o report.txt"},
         {text::kTestRadioAccuracy},
         {"Radiography", "planned", "Taken", "formulas", "serial number", "calibrated", "Judged", "Saved",
          "written", "Group", "Not tested"}},
    };
    const Table table = TableOf(GetParam());
    for (const Case& c : cases) {
        for (const std::string& command : c.quiet) Start("en", command, 5);
        std::string printed;
        for (const std::string& command : c.printing) {
            Start(GetParam(), command);
            printed += Read("printed");
        }
        printed += Read("report.txt");
        for (std::string_view key : c.keys)
            EXPECT_NE(printed.find(table.at(std::string(key))), std::string::npos) << key << "\n" << printed;
        for (const char* word : c.english)
            EXPECT_EQ(printed.find(word), std::string::npos) << word << "\n" << printed;
        std::istringstream lines(printed);
        for (std::string line; std::getline(lines, line);) EXPECT_LE(CodePoints(line), c.columns) << line;
    }
}

/// On paper, headings of tables fit on one line, and texts break only between words.
TEST_P(LanguageTableTest, TextsFitTheColumnsOfThePrintedReport) {
    for (int32_t testId : kMeasuringTests)
        for (int32_t kind = 1; kind <= 5; ++kind)
            for (int32_t mode = 1; mode <= 4; ++mode)
                for (int32_t setup = 1; setup <= 2; ++setup)
                    CheckPrinted(Printed(GetParam(), testId, kind, mode, setup));
    EXPECT_GT(cells, 20000U);
}

/// All texts of a report are in its own language, even if the program's is another.
TEST_P(LanguageTableTest, AReportMayHaveAnotherLanguageThanTheProgram) {
    const std::string code = GetParam();
    for (const std::string example : {"radio_accuracy", "dosimeter_mas", "mammo_aec", "fluoro_exposure"}) {
        const std::string path = std::string(test::kSourceDir) + "/examples/" + example;
        Start("en", "run '" + path + ".xml' --instruments 'recording:" + path +
                        ".jsonl' -o out.xml --report of_run.txt --report-language " + code);
        const std::string options = "report out.xml --limits --waveforms -o ";
        Start(code, options + "same.txt");
        Start("en", options + "other.txt --report-language " + code);
        Start("en", options + "same_en.txt");
        Start(code, options + "other_en.txt --report-language en");
        EXPECT_EQ(Read("other.txt"), Read("same.txt")) << example;
        EXPECT_EQ(Read("of_run.txt"), Read("same.txt")) << example;
        EXPECT_EQ(Read("other_en.txt"), Read("same_en.txt")) << example;
        EXPECT_NE(Read("same.txt"), Read("same_en.txt")) << example;
    }
}

/// The cover, and a page for each of the four forms, even when every answer failed.
TEST_P(LanguageTableTest, EachFormOfTheSurveyFitsItsPage) {
    std::string answers;
    for (int i = 1; i <= 13; ++i) answers += " --answer Evaluation" + std::to_string(i) + "=Fail";
    for (int i = 1; i <= 22; ++i) answers += " --answer PR" + std::to_string(i) + "=Fail";
    for (int i = 1; i <= 14; ++i) answers += " --answer ALog" + std::to_string(i) + "=Fail";
    Start(GetParam(), "new 1300 -o new.xml");
    Start(GetParam(), "survey new.xml -o failed.xml" + answers);
    for (const std::string paper : {"A4", "Letter"}) {
        Start(GetParam(), "report failed.xml -o survey.pdf --paper " + paper);
        const std::string facts = test::PrintedBy("pdfinfo '" + (folder / "survey.pdf").string() + "'");
        EXPECT_NE(facts.find("Pages:           5\n"), std::string::npos) << paper << facts;
    }
}

INSTANTIATE_TEST_SUITE_P(Shipped, LanguageTableTest, testing::ValuesIn(kLanguages),
                         [](const auto& language) { return std::string(language.param); });

TEST_F(HostTest, TheLanguageOfTheSystemIsThatOfTheStrongestVariable) {
    Write("de.json", "{}");
    Write("fr.json", "{}");
    const std::vector<fs::path> folders{folder};
    struct {
        std::string all, messages, lang, expected;
    } const cases[] = {{"", "", "de_DE.UTF-8", "de"}, {"", "fr_CH", "de_DE", "fr"},
                       {"de@euro", "fr", "fr", "de"}, {"C.UTF-8", "fr", "de", "en"},
                       {"", "", "pl_PL.UTF-8", "en"}, {"", "", "", "en"},
                       {"../de", "", "", "en"}};
    for (const auto& row : cases) {
        const ScopedEnvironment all("LC_ALL", row.all);
        const ScopedEnvironment messages("LC_MESSAGES", row.messages);
        const ScopedEnvironment lang("LANG", row.lang);
        EXPECT_EQ(SystemLanguage(folders), row.expected) << row.all << "," << row.messages << "," << row.lang;
    }
}

}  // namespace
}  // namespace vorex::host_test
