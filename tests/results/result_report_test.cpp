#include "host/execution_pipe.h"
#include "results/limit_data.h"
#include "results/result_fixture.h"
#include "support/limits.h"
#include "support/recording_report.h"

namespace vorex {
namespace {

using test::Limit;
using test::StandardOf;

const std::string kHeading = "|{\\i\\b Result:}|{\\i\\b }|{\\i\\b Value}|{\\i\\b Unit};\n";
const std::string kLimitHeading =
    "|{\\i\\b Result:}|{\\i\\b }|{\\i\\b Value}|{\\i\\b Unit}|{\\i\\b High limit}|{\\i\\b Low limit}|"
    "{\\i\\b Standard};\n";
const std::string kCross = "{{\\fonttbl{\\f0\\fcharset2 Wingdings}}\\f0\\fs18 û}";

/// A row without limits: name, preset, value, unit.
std::string Row(const std::string& name, const std::string& preset, const std::string& value,
                const std::string& unit) {
    return "|" + name + "      |" + preset + "|" + value + "|" + unit + ";\n";
}

class ResultReport : public test::ResultTest {
  protected:
    void SetUp() override {
        HostServices services;
        services.text = texts;
        Install(services);
    }

    /// Stores an exposure with one text in every column.
    void Expose(uint8_t number, const std::string& value = "7") {
        for (const auto& item : result->Current()) item->Value(value);
        result->UpdateStatus(owner, nullptr, number);
    }
    CMeasurement& At(std::size_t row, std::string_view measurementKey) {
        return *FindMeasurement(*result->Rows()[row], measurementKey);
    }
    std::string Printed(int32_t options = 0) {
        report = test::RecordingReport();
        report.options = options;
        report.SelectedStandardsForReport = standards;
        result->PrintReport(&report, nullptr);
        return report.Rows();
    }
    /// The rows of the result with limits on, without the headings: those of one measurement.
    std::string LimitRows(std::size_t row, std::string_view measurementKey) {
        report.options |= kReportLimits;
        report.SelectedStandardsForReport = standards;
        const CMeasurement& item = At(row, measurementKey);
        return item.BuildReportLine(report, true, item.RawPresetValue());
    }
    void StoreWaveform(uint8_t type, const std::string& samples) {
        result->WaveformType = type;
        result->Resolution(1);
        result->StoreWaveForm(samples, result->LastExposure());
    }

    std::shared_ptr<test::FakeTexts> texts = std::make_shared<test::FakeTexts>();
    test::RecordingReport report;
    std::vector<std::shared_ptr<IStandard>> standards;  ///< printed next to the results
};

// ------------------------------------------------------------------- rows of every test and detector kind

/// Rows of "name|unit|preset", all with the value 7 or, where a "." follows, 7.0.
std::string RowsOf(std::string_view list) {
    std::string rows;
    for (const std::string_view row : SplitText(list, ';')) {
        const auto cells = SplitText(row, '|');
        const bool picture = cells[0].ends_with('.');
        const std::string name(cells[0].substr(0, cells[0].size() - (picture ? 1 : 0)));
        rows += Row(name, std::string(cells.size() > 2 ? cells[2] : ""), picture ? "7.0" : "7",
                    std::string(cells.size() > 1 ? cells[1] : ""));
    }
    return rows;
}

std::string ZrdRows(const std::string& kv, bool fluoro) {
    return RowsOf("kVp Avg|KV|" + kv + ";kVp Max|KV|" + kv + ";kV PPV|KV|" + kv +
                  (fluoro ? ";Exposure|R;Exposure Rate|R/sec;Exposure Time|sec"
                          : ";Exposure|mR;Exposure Rate|mR/sec;Exposure Time|ms") +
                  ";HVL|mm Al");
}
std::string PelomarkRows(bool dose) {
    return RowsOf(std::string(dose ? "Dose|R;" : "") +
                  "Dose Rate|R/Sec;Temperature.|°C;Pressure.|mmHg;ADCF.;Bias Voltage.|V;Leak Current.|pA");
}
const std::string kMasRows = RowsOf("mA.|mA;mAs.|mAs;mAs/Pulse.;Dose/mAs.");
const std::string kMasMeans = RowsOf("Avg mA.|mA;Avg mAs.|mAs;Avg mAs/Pulse.;Avg Dose/mAs.");
const std::string kMasVariations = RowsOf("CV mA.|mA;CV mAs.|mAs;CV mAs/Pulse.;CV Dose/mAs.");
const std::string kZrdMeans = RowsOf(
    "Avg. kVp Avg|KV;Avg. kVp Max|KV;Avg. kV PPV|KV;Avg. Exposure|mR;Avg. Exposure Rate|mR/sec;"
    "Avg. Exposure Time|ms;Avg. HVL|mm Al");
const std::string kZrdVariations =
    RowsOf("CV kVp Avg.;CV kVp Max.;CV kV PPV.;CV Exposure.;CV Exposure Rate.;CV Exposure Time.;CV HVL.");
const std::string kDoseRows = RowsOf(
    "Inverse Square Corrected Skin Exposure;Dose Conversion Factor|mrad/R;"
    "Computed Average Glandular Dose.|mrad");

struct TestRows {
    int32_t test;
    std::string kv[2];         ///< set for the voltages of the two exposures
    std::string first;         ///< before the readings
    std::string zrd;           ///< after the readings of the ZRD 47500
    std::string calculations;  ///< of kind 1
    std::string pelomark;      ///< calculations of kind 3 in dose mode
};

const TestRows kTestRows[] = {
    {kRadioRepro,
     {"85", "85"},
     "",
     "",
     kZrdMeans + kZrdVariations,
     RowsOf("AVG Dose|R;AVG Dose Rate|R/Sec;CV Dose.;CV Dose Rate.")},
    {kRadioAccuracy, {"70", "90"}, "", RowsOf("%kVp Avg. Error.|%;Absolute kVp Avg. Error.|KV"), "", ""},
    {kRadioLinearity, {"85", "85"}, RowsOf("Adjacent"), RowsOf("Exposure/mAs|mR/mAs;CL."), "", ""},
    {kFluoroAccuracy, {"70", "90"}, "", RowsOf("%kVp Avg. Error.|%"), "", ""},
    {kFluoroExposure, {"70", "90"}, "", RowsOf("Phantom Thickness;Mode"), "", ""},
    {kMammoAccRepro,
     {"85", "85"},
     "",
     "",
     RowsOf("Mean kVp(4)|KV;SD(4);Mean kVp|KV;Standard deviation;Mean kVp - Nominal kVp|KV;"
            "0.05 X Nominal kVp|KV;%Error.|%;CV."),
     ""},
    {kMammoAec,
     {"28", "28"},
     "",
     "",
     RowsOf("Energy Corrected Mean Values|R;SD Exposure;CV Exposure.;CV mAs.") + kDoseRows,
     RowsOf("Energy Corrected Mean Values|R;SD Dose;CV Dose.") + kDoseRows},
    {kMammoRadiation, {"85", "85"}, "", RowsOf("Exposure Rate.|mR/sec;Air Kerma Rate.|mGy/sec"), "", ""},
};

struct Blocks {
    std::string exposure, calculations;
};

/// What the first or second exposure, and the calculations, of a test and kind print.
Blocks ExpectedBlocks(const TestRows& rows, int32_t kind, std::size_t exposure) {
    const bool fluoro = rows.test == kFluoroAccuracy || rows.test == kFluoroExposure;
    const bool repro = rows.test == kRadioRepro;
    const std::string masStatistics = repro ? kMasMeans + kMasVariations : "";
    const std::string zrd = ZrdRows(rows.kv[exposure], fluoro);
    switch (kind) {
        case kZrd:
            return {rows.first + zrd + rows.zrd, rows.calculations};
        case kMasMeter:
            return {kMasRows, masStatistics};
        case kPelomark:
            return {rows.first + PelomarkRows(true), rows.pelomark};
        case kZrdAndMas:
            return {rows.first + zrd + rows.zrd + kMasRows,
                    repro ? kZrdMeans + kMasMeans + kZrdVariations + kMasVariations : rows.calculations};
        default:
            return {rows.first + PelomarkRows(true) + kMasRows, rows.pelomark + masStatistics};
    }
}

TEST_F(ResultReport, EveryTestAndKindPrintsItsExposuresAndThenItsCalculationsOnce) {
    for (const TestRows& rows : kTestRows) {
        for (int32_t kind = kZrd; kind <= kPelomarkAndMas; ++kind) {
            Begin(rows.test, kind);
            config->pMachineKV = 85;
            config->machineKv = {"70", "90"};
            config->pNominalKV = "28";
            result->Initialize(config);
            Expose(1);
            Expose(2);
            const Blocks second = ExpectedBlocks(rows, kind, 1);
            std::string expected = kHeading + "|Exposure 1;\n" + ExpectedBlocks(rows, kind, 0).exposure +
                                   "|Exposure 2;\n" + second.exposure;
            if (!second.calculations.empty()) expected += "|Calculations;\n" + second.calculations;
            EXPECT_EQ(Printed(), expected) << rows.test << " kind " << kind;
            if (HasZrd(kind)) {
                EXPECT_EQ(TextOf(At(1, key::kKvpAvg).RawPresetValue()), "85") << "the X of limits";
            }
        }
    }
}

TEST_F(ResultReport, RateModeOfThePelomarkPrintsNoDose) {
    Begin(kMammoAec, kPelomark);
    config->PKMode = 1;
    result->Initialize(config);
    Expose(1);
    EXPECT_EQ(Printed(), kHeading + "|Exposure 1;\n" + PelomarkRows(false));
}

TEST_F(ResultReport, AnExposureWithoutAReadingSaysSo) {
    Begin(kFluoroExposure, kZrd);
    result->StoreMissing(1);
    EXPECT_TRUE(Printed().starts_with(kHeading + "|Exposure 1;\n|" + Translate(text::kNoReading) + ";\n"))
        << Printed();
    EXPECT_EQ(Printed(kReportFailuresOnly), "");
}

TEST_F(ResultReport, WidthsFollowTheTextWidth) {
    Begin(kMammoRadiation, kZrd);
    Expose(1);
    // (10080 - 3360) / 6 - 50 = 1070; (10903 - 3360) / 6 - 50 = 1207 with the rest dropped.
    const std::pair<int32_t, std::string> pages[] = {
        {10080, "table <+560|<2440|>+70|>+1270|>+970|>+1020|>+1070|>+1570|<+!554|<+560;"},
        {10903, "table <+560|<2440|>+207|>+1407|>+1107|>+1157|>+1207|>+1707|<+!554|<+560;"},
    };
    for (const auto& [width, columns] : pages) {
        test::RecordingReport page;
        page.textWidth = width;
        result->PrintReport(&page, nullptr);
        ASSERT_GT(page.calls.size(), 2U);
        EXPECT_EQ(page.calls[0], "style 7");
        for (std::size_t i = 1; i < page.calls.size(); ++i)
            EXPECT_EQ(page.calls[i].substr(0, columns.size()), columns);
    }
}

TEST_F(ResultReport, NothingIsPrintedWithoutExposures) {
    for (int32_t test : kMeasuringTests) {
        Begin(test, kZrd);
        EXPECT_EQ(Printed(), "");
        EXPECT_TRUE(report.calls.empty());
        EXPECT_NO_THROW(result->PrintReport(nullptr, nullptr));
    }
}

TEST_F(ResultReport, EmptyValuesPrintTheirUnitsAndOverRangeValuesTheirWord) {
    Begin(kMammoRadiation, kZrd);
    Expose(1, "");
    EXPECT_NE(Printed().find(Row("kVp Avg", "28", "", "KV")), std::string::npos);
    Begin(kMammoRadiation, kZrd);
    Expose(1, "OL");
    const std::string cross = "|||||" + kCross + ";\n";
    const std::string rows = Printed();
    EXPECT_NE(rows.find("|kVp Avg      |28|OL|KV" + cross), std::string::npos) << rows;
    EXPECT_NE(rows.find("|Air Kerma Rate      ||OL|mGy/sec" + cross), std::string::npos)
        << "an over-range text is not brought into a picture";
    standards = {StandardOf("State", {Limit("ER HVL", "0.5", "0.3")})};
    const std::string limited = Printed(kReportLimits);
    EXPECT_NE(limited.find("|kVp Avg      |28|OL|" + cross), std::string::npos) << limited;
    EXPECT_NE(limited.find("|HVL      ||OL||0.5|0.3|State||" + kCross + ";"), std::string::npos) << limited;
}

TEST_F(ResultReport, WordsAndNumbersAreOfTheLanguageOfTheReport) {
    texts->words = {{"22421::UL", "LOW"}};
    Begin(kFluoroExposure, kZrd);
    Expose(1, "7.25");
    At(0, key::kHvl).Value(std::string("LOW"));
    At(0, key::kKvpMax).Value(std::string("80.5*"));
    At(0, key::kMode).Value(std::string("HLC 1.5|x;"));
    test::RecordingReport german;
    german.decimalSign = ',';
    german.words = {
        {"22421::UL", "Unterl."}, {"22847::Exposure ", "Aufnahme "}, {"22104::kVp Avg", "kVp mittel"}};
    result->PrintReport(&german, nullptr);
    const std::string rows = german.Rows();
    EXPECT_NE(rows.find("|Aufnahme 1;\n" + Row("kVp mittel", "80", "7,25", "KV")), std::string::npos) << rows;
    EXPECT_NE(rows.find(Row("HVL", "", "Unterl.", "mm Al")), std::string::npos) << rows;
    EXPECT_NE(rows.find(Row("kVp Max", "80", "80,5*", "KV")), std::string::npos) << rows;
    EXPECT_NE(rows.find("|Mode      ||HLC 1.5\\|x\\;|;"), std::string::npos) << "as it was typed: " << rows;
}

// ---------------------------------------------------------------------------------------------- limits

TEST_F(ResultReport, LimitsOfEachStandardAreNextToTheRowThatTheyJudge) {
    Begin(kRadioRepro, kZrd);
    Expose(1);
    standards = {StandardOf("Site", {Limit("ER kVp Avg", "5", "-5", "X+(X*Y%)"),
                                     Limit("ER Exposure", "0.05", "", "CV"),
                                     Limit("ER Exposure", "120", "100"), Limit("ER HVL", "")}),
                 StandardOf("State;|", {Limit("ER kVp Avg", "", "0")}),
                 StandardOf("Other", {Limit("ER kVp Avg", "90"), Limit("ER Exposure", "0.1", "", "CV")})};
    struct Case {
        std::string_view key;
        std::string expected;
    };
    const Case cases[] = {
        {key::kKvpAvg, "|kVp Avg      |80|7|KV|84|76|Site;||||||0|State\\;\\|;|||||90||Other;"},
        {key::kErKvpAvg, "|CV kVp Avg      ||7.0|;"},
        {key::kExposure, "|Exposure      ||7|mR|120|100|Site;"},
        {key::kErExposure, "|CV Exposure      ||7.0||0.05||Site;|||||0.1||Other;"},
        {key::kHvl, "|HVL      ||7|mm Al;"},
        {key::kKvpMax, "|kVp Max      |80|7|KV;"},
    };
    for (const Case& c : cases) EXPECT_EQ(LimitRows(0, c.key), c.expected);
    At(0, key::kKvpAvg).Status(kFailed);
    EXPECT_EQ(LimitRows(0, key::kKvpAvg), "|kVp Avg      |80|7|KV|84|76|Site||" + kCross +
                                              ";||||||0|State\\;\\|||" + kCross + ";|||||90||Other||" +
                                              kCross + ";");
    At(0, key::kKvpMax).Status(kFailed);
    EXPECT_EQ(LimitRows(0, key::kKvpMax), "|kVp Max      |80|7|KV|||||" + kCross + ";");
    EXPECT_TRUE(Printed(kReportLimits).starts_with(kLimitHeading + "|Exposure 1;\n"));
    EXPECT_TRUE(Printed().starts_with(kHeading + "|Exposure 1;\n")) << "not without the option";
    standards.clear();
    EXPECT_TRUE(Printed(kReportLimits).starts_with(kHeading + "|Exposure 1;\n")) << "not without a standard";
}

TEST_F(ResultReport, NoLimitIsNextToAValueThatTheCriterionExcludes) {
    const std::tuple<std::string_view, bool, bool> cases[] = {
        {"1", true, false}, {"2", false, true}, {"3", true, true}, {"4", true, true}};
    for (const auto& [criterion, percent, absolute] : cases) {
        for (int32_t setup : {kSetupMaTime, kSetupMas}) {
            Begin(kRadioAccuracy, kZrd);
            config->pNoOfExposures = 1;
            config->pGeneratorSetup = kSetupMaTime;
            config->passFailCriterion = {std::string(criterion)};
            result->Initialize(config);
            Expose(1);
            config->pGeneratorSetup = setup;
            standards = {StandardOf("Site", {Limit("ER RA Percentage kVp Avg Error", "5", "-5"),
                                             Limit("ER RA Absolute kVp Avg Error", "5", "-5"),
                                             Limit("ER RA Percentage Timer Error", "5", "-5")})};
            const auto limits = [](bool shown) { return std::string(shown ? "|5|-5|Site" : "") + ";\n"; };
            const std::string expected = "|%kVp Avg. Error      ||7.0|%" + limits(percent) +
                                         "|Absolute kVp Avg. Error      ||7.0|KV" + limits(absolute) +
                                         "|%Timer Error      ||7.0|%" + limits(setup == kSetupMaTime);
            const std::string rows = Printed(kReportLimits);
            EXPECT_TRUE(rows.ends_with(expected)) << setup << "\n" << rows;
        }
    }
}

TEST_F(ResultReport, TheAdjacentFlagHasNoLimitAndTheCoefficientOfLinearityHas) {
    Begin(kRadioLinearity, kZrd);
    Expose(1);
    At(0, key::kErNonAdjacent).Key(key::kErAdjacent);
    standards = {StandardOf("Site", {Limit("ER Adjacent", "0.1")})};
    const std::string rows = Printed(kReportLimits);
    EXPECT_NE(rows.find("|Adjacent      ||7|;"), std::string::npos) << rows;
    EXPECT_NE(rows.find("|CL      ||7.0||0.1||Site;"), std::string::npos) << rows;
}

TEST_F(ResultReport, AStandardWithoutLimitsPrintsItsName) {
    Begin(kMammoRadiation, kZrd);
    Expose(1);
    standards = {StandardOf("Bare")};
    EXPECT_EQ(LimitRows(0, key::kHvl), "|HVL      ||7|mm Al|||Bare;");
    standards.push_back(StandardOf("Full", {Limit("ER HVL", "0.5", "0.3")}));
    EXPECT_EQ(LimitRows(0, key::kHvl), "|HVL      ||7|mm Al|||Bare;|||||0.5|0.3|Full;");
}

TEST_F(ResultReport, TheMaximumExposureRateHasTheLimitOfItsExposure) {
    Begin(kFluoroExposure, kZrd);
    Expose(1);
    Expose(2);
    standards = {
        StandardOf("Site", {Limit("ER Maxi. Exposure Rate1", "10"), Limit("ER Maxi. Exposure Rate2", "20")})};
    EXPECT_EQ(LimitRows(0, "ER Maxi. Exposure Rate1"), "|Exposure Rate      ||7|R/sec|10||Site;");
    EXPECT_EQ(LimitRows(1, "ER Maxi. Exposure Rate2"), "|Exposure Rate      ||7|R/sec|20||Site;");
}

TEST_F(ResultReport, OnlyTheSelectedStandardsAreShown) {
    HostServices services;
    services.createStandards = [] { return std::make_shared<StandardCollection>(); };
    InstallServices(services);
    CLimitData limits;
    limits.Load(test::XmlText("<ExpectedResult><Standard Name=\"A\" Version=\"1\"/><Standard Name=\"A\" "
                              "Version=\"2\"/><Standard Name=\"B\" Version=\"1\"/></ExpectedResult>")
                    .Root(),
                nullptr);
    const SelectedStandards chosen({{"B", "1"}, {"A", "2"}, {"C", "1"}});
    report.selected = &chosen;
    limits.PrintReport(&report, nullptr);
    const auto& shown = report.SelectedStandardsForReport;
    ASSERT_EQ(shown.size(), 2U);
    EXPECT_EQ(shown[0]->Version(), "2");
    EXPECT_EQ(shown[1]->Name(), "B");
    EXPECT_TRUE(report.calls.empty());
    CLimitData().PrintReport(&report, nullptr);
    EXPECT_TRUE(shown.empty()) << "the limits of the element before are gone";
}

// --------------------------------------------------------------------------------------- failures only

TEST_F(ResultReport, AFailuresOnlyReportPrintsFailedRowsUnderTheirHeadings) {
    for (int32_t test : {kRadioRepro, kMammoAccRepro, kMammoAec}) {
        const bool repro = test == kRadioRepro;
        Begin(test, kZrd);
        for (uint8_t number : {1, 2, 3}) Expose(number);
        EXPECT_EQ(Printed(kReportFailuresOnly), "") << "nothing failed in test " << test;
        EXPECT_EQ(report.Calls(), "style 7\n");
        At(1, key::kHvl).Status(kFailed);
        const std::string failed = kHeading + "|Exposure 2;\n|HVL      ||7|mm Al|||||" + kCross + ";\n";
        EXPECT_EQ(Printed(kReportFailuresOnly), failed) << test;
        // A failed statistic heads the calculations, not its row; of earlier rows it does not count.
        const auto [statistic, name] = repro                    ? std::pair(key::kErHvl, "CV HVL")
                                       : test == kMammoAccRepro ? std::pair(key::kCv, "CV")
                                                                : std::pair(key::kCvExposure, "CV Exposure");
        At(0, statistic).Status(kFailed);
        EXPECT_EQ(Printed(kReportFailuresOnly), failed) << test;
        At(2, statistic).Status(kFailed);
        EXPECT_EQ(Printed(kReportFailuresOnly),
                  failed + "|Calculations;\n|" + name + "      ||7.0||||||" + kCross + ";\n")
            << test;
    }
}

TEST_F(ResultReport, AnExposureWithAWaveformKeepsItsHeadingWhenWaveformsArePrinted) {
    Begin(kRadioAccuracy, kZrd);
    Expose(1);
    Expose(2);
    StoreWaveform(kKvWaveform, "0,80,0");
    EXPECT_EQ(Printed(kReportFailuresOnly), "");
    EXPECT_EQ(Printed(kReportFailuresOnly | kReportWaveforms), kHeading + "|Exposure 2;\n" + ";\n")
        << "and the empty row after the plot";
    report = test::RecordingReport();
    report.options = kReportFailuresOnly | kReportWaveforms;
    report.kind = 2;
    result->PrintReport(&report, nullptr);
    EXPECT_EQ(report.Rows(), "") << "another kind of report has no waveforms";
}

// ------------------------------------------------------------------------------------ pages, waveforms

TEST_F(ResultReport, HeadingsRepeatOnANewPageAndNoBlockHeadingIsAlone) {
    Begin(kMammoRadiation, kZrd);
    Expose(1);
    Expose(2);
    // A letter for each row: heading, name of an exposure, any other.
    const auto shapeOf = [&](int32_t rowsOfAPage) {
        report = test::RecordingReport();
        report.pageHeight = rowsOfAPage * test::RecordingReport::kRowHeight;
        result->PrintReport(&report, nullptr);
        std::string shape;
        for (const std::string& call : report.calls) {
            if (call == "page") shape += '/';
            if (!call.starts_with("table ")) continue;
            const std::string row = call.substr(call.find('\n') + 1);
            shape += row == kHeading ? 'H' : row.starts_with("|Exposure ") && row.size() == 13 ? 'E' : '.';
        }
        return shape;
    };
    // Ten rows a page: the heading, "Exposure 1" and seven of its nine rows, because the last of them would
    // begin the next page alone; and so on.
    EXPECT_EQ(shapeOf(10), "HE......./H..E....../H...");
    // With twelve rows the second name would be the last row of its page.
    EXPECT_EQ(shapeOf(12), "HE........./HE.........");
}

TEST_F(ResultReport, WaveformsFollowTheTableExposureByExposureKvBeforeMa) {
    Begin(kRadioAccuracy, kZrdAndMas);
    for (uint8_t number : {1, 2}) {
        Expose(number);
        StoreWaveform(kMaWaveform, "0,200,0");
        if (number == 2) StoreWaveform(kKvWaveform, "0,80,0");
    }
    const auto figures = [&](int32_t options, int32_t kind) {
        test::RecordingReport full;
        full.options = options;
        full.kind = kind;
        result->PrintReport(&full, nullptr);
        std::string list;
        bool figureSeen = false;
        for (const std::string& call : full.calls) {
            if (call.starts_with("figure ")) list += call + "\n";
            figureSeen = figureSeen || call.starts_with("figure ");
            if (figureSeen && call.find("\n|") != std::string::npos) list += "a row after a figure\n";
        }
        return list;
    };
    EXPECT_EQ(figures(kReportWaveforms, kFullReport),
              "figure mA Waveform\nfigure KV Waveform\nfigure mA Waveform\n");
    EXPECT_EQ(figures(0, kFullReport), "");
    EXPECT_EQ(figures(kReportWaveforms, 2), "");
    result->KvWaveform(2)->IncludeInReport(false);
    EXPECT_EQ(figures(kReportWaveforms, kFullReport), "figure mA Waveform\nfigure mA Waveform\n");
}

}  // namespace
}  // namespace vorex
