#include "results/limit_data.h"

#include "foundation/host_error.h"
#include "foundation/utilities.h"
#include "guide/dialog_wrapper.h"
#include "host/execution_pipe.h"
#include "host/standards.h"
#include "support/fake_control.h"
#include "support/fake_element.h"
#include "support/library_test.h"
#include "support/limits.h"

namespace vorex {
namespace {

/// A limit editor that keeps its rows as "forms|unit|description|key".
class View : public ILimitView, public test::FakeControl {
  public:
    void ClearRows() override { rows.assign(1, "cleared"); }
    void AddRow(std::string_view forms, std::string_view unit, std::string_view description,
                std::string_view limitKey) override {
        std::string row;
        for (std::string_view cell : {forms, unit, description, limitKey}) row.append(cell).push_back('|');
        row.pop_back();
        rows.push_back(row);
    }
    void Hint(bool show, std::string_view text) override {
        hint = std::string(show ? "shown: " : "") + std::string(text);
    }
    void Reload(const std::shared_ptr<IStandardCollection>& shown) override { standards = shown; }

    std::vector<std::string> rows;
    std::string hint;
    std::shared_ptr<IStandardCollection> standards;
};

using Rows = std::vector<std::string>;

// clang-format off
const Rows kFirstRows = {
    "<op>X+Y;X+(X*Y%)</op>||kVp Avg|ER kVp Avg", "<op>X+Y;X+(X*Y%)</op>||kVp Max|ER kVp Max",
    "<op>X+Y;X+(X*Y%)</op>||kV PPV|ER kV PPV", "<op>CV;Y</op>||Exposure|ER Exposure",
    "<op>Y</op>||Exposure Rate|ER Exposure Rate", "<op>Y</op>||Exposure Time|ER Exposure Time",
    "<op>Y</op>||Exposure In Pulses|ER Exposure In Pulses", "<op>Y</op>|mm Al|HVL|ER HVL",
};
const Rows kLastRows = {
    "<op>Y</op>|mA|mA|ER mA", "<op>Y</op>|mAs|mAs|ER mAs", "<op>Y</op>||mAs/Pulse|ER mAsPulse",
    "<op>Y</op>||Dose/mAs|ER DosemAs",
};
/// The rows of each test between the readings and the mAs meter, with R as unit per second; each "<op>Y</op>|".
const std::pair<int32_t, Rows> kTestRows[] = {
    {0, {}},
    {100, {}},
    {200, {"%|%Timer Error|ER RA Percentage Timer Error", "%|%kVp Avg. Error|ER RA Percentage kVp Avg Error",
           "KV|Absolute kVp Avg. Error|ER RA Absolute kVp Avg Error"}},
    {300, {"|Adjacent Coefficient of Linearity|ER Adjacent",
           "|Non Adjacent Coefficient of Linearity|ER Non Adjacent"}},
    {400, {"mm Al||ER Criterion Minimum HVL"}},
    {500, {"%|%kVp Avg. Error|ER FA kVp Avg"}},
    {600, {"mm Al||ER Criterion Minimum HVL"}},
    {700, {"R/sec|Max. Exposure Rate Exposure #1|ER Maxi. Exposure Rate1"}},
    {900, {"%|%kVp Avg. Error|ER Percentage Error", "|Coefficient of Variation for kVp Avg.|ER CV"}},
    {1000, {"mm Al||ER MQSA HVL", "mm Al||ER ACR HVL"}},
    {1100, {"|Coefficient of Variation for Exposure|ER Coefficient of Variation Exposure",
            "|Coefficient of Variation for mAS|ER Coefficient of Variation mAs",
            "mrad|Computed Average Glandular Dose|ER Computed Average Glandular Dose"}},
    {1200, {"mR/sec|Exposure Rate|ER Exposure Rate(mR/sec)", "mGy/sec|Air Kerma Rate|ER Air Kerma Rate(mGy/sec)"}}};
// clang-format on

/// All rows of a test, in the editor's order.
Rows ExpectedRows(int32_t testId, const Rows& testRows) {
    Rows rows;
    if (testId != kGroupId) rows = kFirstRows;
    for (const std::string& row : testRows) rows.push_back("<op>Y</op>|" + row);
    rows.insert(rows.end(), kLastRows.begin(), kLastRows.end());
    return rows;
}

/// A coefficient of variation has rows in test 100 only; the voltages have a preset in every test.
std::string FirstJudgingForm(const std::string& limitKey, int32_t testId) {
    if (limitKey == "ER Exposure") return testId == kRadioRepro ? "CV" : "Y";
    return limitKey.starts_with("ER kV") ? "X+Y" : "Y";
}

class LimitData : public test::LibraryTest {
  protected:
    void SetUp() override {
        HostServices services;
        services.createStandards = [] { return std::make_shared<StandardCollection>(); };
        services.createStandard = [](std::string_view name, std::string_view version) {
            return std::make_shared<Standard>(name, version);
        };
        services.createExpectedResult = [] { return std::make_shared<ExpectedResult>(); };
        Install(services);
        Own(kRadioRepro);
    }
    void TearDown() override { InstallClasses({}); }

    void Own(int32_t testId) {
        owner->config = std::make_shared<CConfigCommon>();
        owner->config->DefaultValues(testId);
        owner->config->pNoOfExposures = 1;
        owner->config->pMeasurementExposure = kUnitR;
        owner->config->pMeasurementExposureRateUnit = 1;
        limits->SetOwner(owner, true);
    }
    /// Takes the limits of standards "A 1" and "B 1" out of their text.
    void Load(const std::string& a, const std::string& b = {}) {
        limits->Load(test::XmlText("<ExpectedResult><Standard Name=\"A\" Version=\"1\">" + a +
                                   "</Standard><Standard Name=\"B\" Version=\"1\">" + b +
                                   "</Standard></ExpectedResult>")
                         .Root(),
                     nullptr);
    }
    Rows Prepared(int32_t testId) {
        View view;
        limits->PrepareLimitDialog(view, testId);
        return view.rows;
    }
    /// Names of the selected standards that fail a value.
    std::string Failed(const std::string& measurementKey, TaggedValue value) {
        CMeasurement measurement;
        measurement.Initialize(measurementKey, "", "", kJudgedNumber);
        measurement.Value(std::move(value));
        std::string names;
        for (const auto& standard : limits->FindFailedStandards(&measurement, &selected))
            names += standard->Name();
        return names;
    }

    std::shared_ptr<test::ResultElement> owner = std::make_shared<test::ResultElement>();
    std::shared_ptr<CLimitData> limits = std::make_shared<CLimitData>();
    SelectedStandards selected;
};

std::string Limit(const std::string& limitKey, const std::string& sides) {
    return "<Limit Key=\"" + limitKey + "\" Unit=\"\">" + sides + "</Limit>";
}

TEST_F(LimitData, TheEditorShowsTheRowsOfEachTest) {
    for (const auto& [testId, testRows] : kTestRows) {
        View view;
        limits->PrepareLimitDialog(view, testId);
        Rows expected = ExpectedRows(testId, testRows);
        if (testId == kFluoroExposure) expected.insert(expected.begin(), "cleared");
        EXPECT_EQ(view.rows, expected) << testId;
        EXPECT_EQ(view.hint.empty(), testId != kFluoroAccuracy) << testId;
    }
    View view;
    limits->PrepareLimitDialog(view, kFluoroAccuracy);
    EXPECT_EQ(view.hint,
              "shown: You have to put +5% and -5% in the limit settings in order to get +/- limits.");
    EXPECT_TRUE(Prepared(kMqsaSurvey).empty());
}

TEST_F(LimitData, ANewStandardGetsAnEmptyLimitForEachRow) {
    for (const auto& [testId, testRows] : kTestRows) {
        Standard standard("New", "1");
        limits->CreateTestLimits(standard, testId);
        const Rows expected = ExpectedRows(testId, testRows);
        ASSERT_EQ(standard.Results().size(), expected.size()) << testId;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const IExpectedResult& limit = *standard.Results()[i];
            const auto cells = SplitText(expected[i], '|');
            EXPECT_EQ(limit.Key(), cells[3]) << testId;
            EXPECT_EQ(UnitText(limit.Unit()), cells[1]) << limit.Key();
            EXPECT_EQ(limit.Unit().empty() || limit.Unit() == "%",
                      limit.Unit().find("::") == std::string::npos)
                << "a file has the key of a unit";
            const std::string first = FirstJudgingForm(limit.Key(), testId);
            EXPECT_EQ(limit.Expression(kHighSide), first) << testId << " " << limit.Key();
            EXPECT_EQ(limit.Expression(kLowSide), first) << testId << " " << limit.Key();
            EXPECT_FALSE(limit.IsSet(kHighSide) || limit.IsSet(kLowSide)) << limit.Key();
        }
    }
    Standard survey("New", "1");
    limits->CreateTestLimits(survey, kMqsaSurvey);
    EXPECT_TRUE(survey.Results().empty());
}

TEST_F(LimitData, FluoroscopyHasALimitForEachExposure) {
    Own(kFluoroExposure);
    owner->config->pNoOfExposures = 3;
    owner->config->pMeasurementExposure = kUnitGy;
    owner->config->pMeasurementExposureRateUnit = 2;
    Load(Limit("ER Maxi. Exposure Rate2", "<High Value=\"9\"/>"));
    const Rows rows = Prepared(kFluoroExposure);
    ASSERT_EQ(rows.size(), 1 + kFirstRows.size() + 3 + kLastRows.size());
    for (int exposure = 1; exposure <= 3; ++exposure) {
        const std::string number = std::to_string(exposure);
        EXPECT_EQ(
            rows[kFirstRows.size() + static_cast<std::size_t>(exposure)],
            "<op>Y</op>|mGy/min|Max. Exposure Rate Exposure #" + number + "|ER Maxi. Exposure Rate" + number);
    }
    const ExpectedResults& old = limits->Standards()->Item(0)->Results();
    ASSERT_EQ(old.size(), 3U) << "the missing rows are added";
    EXPECT_EQ(old[0]->Value(kHighSide), 9.0F) << "what is there stays";
    EXPECT_EQ(old[1]->Key(), "ER Maxi. Exposure Rate1");
    EXPECT_EQ(old[2]->Key(), "ER Maxi. Exposure Rate3");
    EXPECT_EQ(old[2]->Unit(), text::kUnitMilligrayPerMin);
    EXPECT_EQ(old[2]->Expression(kHighSide), "Y");
    EXPECT_EQ(old[2]->Expression(kLowSide), "Y");
    EXPECT_FALSE(old[2]->IsSet(kHighSide) || old[2]->IsSet(kLowSide));
    Prepared(kFluoroExposure);
    EXPECT_EQ(old.size(), 3U) << "and not a second time";
}

/// Key and high side of the limits of a standard: "ER HVL 3;ER mA -;".
std::string HighSides(const IStandard& standard) {
    std::string sides;
    for (const auto& limit : standard.Results())
        sides +=
            limit->Key() + (limit->IsSet(kHighSide) ? " " + PlainText(limit->Value(kHighSide)) : " -") + ";";
    return sides;
}

TEST_F(LimitData, TheLimitsOfTest700FollowItsExposures) {
    const auto rate = [](int number) {
        const std::string text = std::to_string(number);
        return Limit("ER Maxi. Exposure Rate" + text, "<High Value=\"1" + text + "\"/>");
    };
    Own(kFluoroExposure);
    Load(rate(1) + Limit("ER HVL", "<High Value=\"3\"/>") + rate(2) + rate(3) + rate(10), rate(2));
    const auto sides = [&](int32_t standard) { return HighSides(*limits->Standards()->Item(standard)); };
    limits->ReorderLimits(2);
    EXPECT_EQ(sides(0),
              "ER Maxi. Exposure Rate1 11;ER HVL 3;ER Maxi. Exposure Rate2 13;ER Maxi. Exposure Rate9 110;");
    EXPECT_EQ(sides(1), "");
    limits->AppendExposureLimit(3);
    EXPECT_EQ(sides(1), "ER Maxi. Exposure Rate3 -;") << "without numbers";
    limits->AppendExposureLimit(1);
    EXPECT_EQ(sides(0),
              "ER Maxi. Exposure Rate1 11;ER HVL 3;ER Maxi. Exposure Rate2 13;"
              "ER Maxi. Exposure Rate9 110;ER Maxi. Exposure Rate3 -;")
        << "a limit that is there stays";
    Own(kFluoroAccuracy);
    limits->AppendExposureLimit(4);
    limits->ReorderLimits(1);
    EXPECT_EQ(sides(1), "ER Maxi. Exposure Rate3 -;ER Maxi. Exposure Rate1 -;") << "other tests have none";
}

TEST_F(LimitData, OldStandardsTakeThePresentUnit) {
    Own(kMammoAec);
    Load(Limit("ER Computed Average Glandular Dose", "") + Limit("ER HVL", ""));
    const auto unit = [&] { return limits->Standards()->Item(0)->Results()[0]->Unit(); };
    Prepared(kMammoAec);
    EXPECT_EQ(unit(), text::kUnitMillirad);
    owner->config->pMeasurementExposure = kUnitGy;
    Prepared(kMammoAec);
    EXPECT_EQ(unit(), text::kUnitMilligray);
    EXPECT_EQ(limits->Standards()->Item(0)->Results()[1]->Unit(), "") << "other rows keep theirs";
}

TEST_F(LimitData, AStandardComesFromThePlugInOrIsMadeEmpty) {
    const auto plugIn = std::make_shared<test::FakePlugIn>();
    SetPlugIn(plugIn);
    EXPECT_TRUE(limits->CreateStandard("Known", "2")->Results().empty());
    const auto made = limits->CreateStandard("Own", "1");
    EXPECT_EQ(made->Results().size(), kFirstRows.size() + kLastRows.size());
    EXPECT_EQ(plugIn->asked, "100 Known 2;100 Own 1;");
    EXPECT_EQ(limits->Standards()->Count(), 2);
    EXPECT_TRUE(limits->CreateStandard("Own", "1"));
    EXPECT_EQ(limits->Standards()->Count(), 2) << "a name and version occurs once";
    limits->CreateStandard("Own", "2");
    EXPECT_EQ(limits->Standards()->Count(), 3);
    plugIn->asked.clear();
    owner.reset();
    EXPECT_EQ(limits->CreateStandard("Known", "1")->Results().size(), kLastRows.size());
    EXPECT_EQ(plugIn->asked, "") << "without an owner, which is not kept alive";
}

TEST_F(LimitData, AnotherElementIsRefusedAndABrokenOneLeavesNoStandards) {
    EXPECT_FALSE(limits->Save(std::make_shared<OutputDocument>())) << "no standards, no element";
    EXPECT_FALSE(limits->Clone()->Standards());
    Load("");
    const auto load = [&] { limits->Load(test::XmlText("<Limits/>").Root(), nullptr); };
    EXPECT_EQ(test::FaultOf(load), (test::HostFault{0x8004A4EEU, "VorexZRD47500Test.CLimitData", 4}));
    EXPECT_TRUE(limits->Standards());
    EXPECT_ANY_THROW(Load(Limit("ER HVL", "<High Value=\"three\"/>")));
    EXPECT_FALSE(limits->Standards());
}

TEST_F(LimitData, TheDialogHostsTheEditorOfTheHost) {
    HostServices services = Services();
    InstallLibrary(services);
    EXPECT_TRUE(limits->HasDialog());
    EXPECT_FALSE(limits->CreateDialog()) << "the host has no editor";
    services.createLimitView = [] { return std::make_shared<View>(); };
    InstallLibrary(services);
    Own(kFluoroExposure);
    Load("");
    const auto dialog = std::dynamic_pointer_cast<FDialogWrapper>(limits->CreateDialog());
    ASSERT_TRUE(dialog);
    const auto view = std::dynamic_pointer_cast<View>(dialog->Control());
    ASSERT_TRUE(view);
    const OwnedLimits expected{limits, owner};
    EXPECT_EQ(view->given, ControlArgument(expected));
    EXPECT_EQ(view->rows.size(), 1 + kFirstRows.size() + 1 + kLastRows.size());
    EXPECT_EQ(view->standards, limits->Standards());
    owner->config->pNoOfExposures = 2;
    limits->AppendExposureLimit(2);
    EXPECT_EQ(view->rows.size(), 1 + kFirstRows.size() + 2 + kLastRows.size()) << "an open dialog follows";
    limits->HasDialogFlag(false);
    EXPECT_FALSE(limits->CreateDialog());
    EXPECT_FALSE(limits->Clone()->HasDialog());
}

TEST_F(LimitData, OnlySelectedStandardsThatAreHereJudge) {
    Load(Limit("ER HVL", "<High Value=\"3\"/>"), Limit("ER HVL", "<High Value=\"5\"/>"));
    EXPECT_EQ(Failed("HVL", "9"), "") << "none is selected";
    selected = SelectedStandards({{"B", "1"}, {"A", "1"}, {"A", "2"}, {"C", "1"}});
    EXPECT_EQ(Failed("HVL", "9"), "BA") << "in the order of the selection";
    EXPECT_EQ(Failed("HVL", "4"), "A");
    EXPECT_EQ(Failed("HVL", "3"), "") << "equal passes";
    EXPECT_EQ(Failed("Exposure", "9"), "") << "a key without a limit";
    EXPECT_TRUE(limits->FindFailedStandards(nullptr, &selected).empty());
    CMeasurement measurement;
    EXPECT_TRUE(limits->FindFailedStandards(&measurement, nullptr).empty());
    EXPECT_TRUE(CLimitData().FindFailedStandards(&measurement, &selected).empty());
}

}  // namespace
}  // namespace vorex
