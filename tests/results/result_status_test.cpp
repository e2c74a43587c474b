#include "results/result_fixture.h"

namespace vorex {
namespace {

const SurveyOutcomes kNoneOfSeven{0, 0, 0, 0, 0, 0, 0};

class ResultStatus : public test::ResultTest {
  protected:
    int32_t StatusOf(std::size_t row, std::string_view measurementKey) const {
        const CMeasurement* item = FindMeasurement(*result->Rows().at(row), measurementKey);
        return item == nullptr ? -1 : item->Status();
    }
};

TEST_F(ResultStatus, TheKvpCriterionDecidesWhichErrorOfTest200Counts) {
    struct Case {
        const char* criterion;
        const char* percent;   ///< limit 5 at most
        const char* absolute;  ///< limit 4 at most
        int32_t afterExposure, afterAll, percentStatus, absoluteStatus;
    };
    const Case cases[] = {
        {"1", "4.0", "9.0", kPassed, kPassed, kPassed, kPassed},
        {"1", "6.0", "1.0", kFailed, kFailed, kFailed, kPassed},
        {"2", "6.0", "1.0", kPassed, kPassed, kPassed, kPassed},
        {"2", "4.0", "9.0", kFailed, kFailed, kPassed, kFailed},
        // Either may pass: open until all rows are judged.
        {"3", "4.0", "1.0", kFailed, kPassed, kPassed, kPassed},
        {"3", "6.0", "1.0", kFailed, kPassed, kFailed, kPassed},
        {"3", "4.0", "9.0", kFailed, kPassed, kPassed, kFailed},
        {"3", "6.0", "9.0", kFailed, kFailed, kFailed, kFailed},
        {"4", "4.0", "1.0", kPassed, kPassed, kPassed, kPassed},
        {"4", "6.0", "1.0", kFailed, kFailed, kFailed, kPassed},
        {"4", "4.0", "9.0", kFailed, kFailed, kPassed, kFailed},
    };
    owner.limits->AtMost("ER RA Percentage kVp Avg Error", 5);
    owner.limits->AtMost("ER RA Absolute kVp Avg Error", 4);
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string("criterion ") + c.criterion + " with " + c.percent + " and " + c.absolute);
        Begin(kRadioAccuracy, kZrd, 1);
        config->passFailCriterion = {c.criterion};
        Expose(1, std::string("0,80,80,80,1,1,100,3,") + c.percent + "," + c.absolute);
        EXPECT_EQ(result->Status(), c.afterExposure);
        result->UpdateAllStatus(owner, &selected);
        EXPECT_EQ(result->Status(), c.afterAll);
        EXPECT_EQ(StatusOf(0, key::kPercentKvpError), c.percentStatus);
        EXPECT_EQ(StatusOf(0, key::kAbsoluteKvpError), c.absoluteStatus);
    }
}

TEST_F(ResultStatus, TheTimerErrorCountsForMaTimesTimeOnly) {
    owner.limits->AtMost("ER RA Percentage Timer Error", 5);
    Begin(kRadioAccuracy, kZrd, 1);
    config->pGeneratorSetup = kSetupMaTime;
    result->Initialize(config);
    Expose(1, "0,80,80,80,1,1,100,3,0.0,0.0,7.0");
    EXPECT_EQ(result->Status(), kFailed);
    config->pGeneratorSetup = kSetupMas;
    result->UpdateAllStatus(owner, &selected);
    EXPECT_EQ(result->Status(), kPassed);
}

TEST_F(ResultStatus, VoltageVariationOfTest100IsJudgedInTheLastRowOnly) {
    owner.limits->AtMost("ER kVp Avg CV", 0.05);
    owner.limits->AtMost("ER Exposure CV", 0.05);
    Begin(kRadioRepro, kZrd, 2);
    const std::string readings = "0,80,81,80,12,1,100,3,80,81,80,12,1,100,3,";
    Expose(1, readings + "0.06,0,0,0,0,0,0");
    EXPECT_EQ(StatusOf(0, key::kErKvpAvg), kFailed);
    Expose(2, readings + "0.01,0,0,0.06,0,0,0");
    result->UpdateAllStatus(owner, &selected);
    EXPECT_EQ(StatusOf(0, key::kErKvpAvg), kPassed) << "belongs to the last row";
    EXPECT_EQ(StatusOf(1, key::kErKvpAvg), kPassed);
    EXPECT_EQ(StatusOf(1, key::kErExposure), kFailed);
    EXPECT_EQ(result->Status(), kFailed);
}

TEST_F(ResultStatus, ACoefficientOfLinearityIsJudgedAfterItsExposureButNotWithAllRows) {
    owner.limits->AtMost("ER Non Adjacent", 0.1);
    owner.limits->AtMost("ER Adjacent", 0.2);
    Begin(kRadioLinearity, kZrd, 3);
    Expose(1, "0,0,80,80,80,10,1,100,3,1.0,");
    EXPECT_EQ(StatusOf(0, key::kErNonAdjacent), kPassed);
    Expose(2, "0,1,80,80,80,13,1,100,3,1.3,0.13");
    EXPECT_EQ(StatusOf(1, key::kErNonAdjacent), kFailed) << "judged as non-adjacent whatever the marker";
    EXPECT_EQ(result->Status(), kFailed);
    result->UpdateAllStatus(owner, &selected);
    EXPECT_EQ(result->Status(), kPassed);
    EXPECT_EQ(StatusOf(1, key::kErAdjacent), kPassed) << "the marked row takes the adjacent key";
    EXPECT_EQ(StatusOf(0, key::kErNonAdjacent), kPassed);
}

TEST_F(ResultStatus, EditingTheAdjacentMarkerJudgesTheCoefficient) {
    owner.limits->AtMost("ER Non Adjacent", 0.1);
    owner.limits->AtMost("ER Adjacent", 0.2);
    Begin(kRadioLinearity, kZrd, 3);
    EXPECT_EQ(result->UpdateAdjacentResult(owner, &selected, 0, 1), -1) << "nothing stored";
    for (uint8_t n = 1; n <= 3; ++n) Expose(n, "0,0,80,80,80,13,1,100,3,1.3,0.13");
    result->UpdateAllStatus(owner, &selected);
    EXPECT_EQ(result->UpdateAdjacentResult(owner, &selected, 2, 1), 1);
    EXPECT_EQ(ValueOf(2, key::kAdjacent), "1");
    EXPECT_EQ(result->UpdateAdjacentResult(owner, &selected, 2, 0), 0);
    EXPECT_EQ(result->Status(), kFailed);
    EXPECT_EQ(result->UpdateAdjacentResult(owner, &selected, 3, 0), -1);
    EXPECT_EQ(result->UpdateAdjacentResult(owner, &selected, 0, 0), 1) << "nothing to compare with";
    EXPECT_EQ(StatusOf(0, key::kErNonAdjacent), kPassed);
    for (const auto& [flag, outcome] : {std::pair{0, 0}, {1, 1}, {0, 0}}) {
        EXPECT_EQ(result->UpdateAdjacentResult(owner, &selected, 1, static_cast<uint8_t>(flag)), outcome);
        EXPECT_EQ(StatusOf(1, flag == 1 ? key::kErAdjacent : key::kErNonAdjacent),
                  outcome == 1 ? kPassed : kFailed);
    }
}

TEST_F(ResultStatus, EachExposureRateOfTest700HasALimitOfItsOwn) {
    owner.limits->AtMost("ER Maxi. Exposure Rate1", 10);
    owner.limits->AtMost("ER Maxi. Exposure Rate2", 5);
    Begin(kFluoroExposure, kZrd, 2);
    Expose(1, "0,80,81,80,1,8,1,3,5 cm,Normal");
    Expose(2, "0,80,81,80,1,8,1,3,5 cm,Normal");
    EXPECT_EQ(StatusOf(0, "ER Maxi. Exposure Rate1"), kPassed);
    EXPECT_EQ(StatusOf(1, "ER Maxi. Exposure Rate2"), kFailed);
    // A repeat of the first exposure keeps its key and its place.
    Expose(1, "0,80,81,80,1,11,1,3,5 cm,Normal");
    EXPECT_EQ(StatusOf(0, "ER Maxi. Exposure Rate1"), kFailed);
    EXPECT_EQ(result->ExposureCount(), 2);
}

TEST_F(ResultStatus, LatestStatisticsOfTest900AreInEveryRow) {
    owner.limits->AtMost("ER Percentage Error", 5);
    owner.limits->AtMost("ER CV", 0.02);
    Begin(kMammoAccRepro, kZrd, 2);
    const std::string readings = "0,28,28,28,10,1,100,0.3,";
    Expose(1, readings + "28.0,0.0,28.0,0.0,0.0,1.4,1.0,0.0");
    Expose(2, readings + "28.0,0.0,28.0,0.0,0.0,1.4,6.0,0.01");
    EXPECT_EQ(ValueOf(0, key::kPercentError), "6.0");
    EXPECT_EQ(StatusOf(0, key::kPercentError), kFailed);
    EXPECT_EQ(ValueOf(0, key::kCv), "0.01");
    EXPECT_EQ(ValueOf(0, key::kMeanKvp), "28.0") << "only judged statistics are copied";
}

TEST_F(ResultStatus, AFailureInAnyRowOfTest900StaysInItsCells) {
    struct Case {
        const char* error[2];
        const char* cv[2];
        int32_t l38, l39, l36;
    };
    const Case cases[] = {
        {{"1.0", "2.0"}, {"0.01", "0.01"}, 1, 1, 1}, {{"6.0", "1.0"}, {"0.01", "0.01"}, 2, 1, 2},
        {{"1.0", "6.0"}, {"0.01", "0.01"}, 2, 1, 2}, {{"1.0", "1.0"}, {"0.03", "0.01"}, 1, 2, 2},
        {{"OL", "1.0"}, {"0.01", "0.01"}, 1, 1, 1},  // a mark fails the test, not the cell
    };
    owner.limits->AtMost("ER Percentage Error", 5);
    owner.limits->AtMost("ER CV", 0.02);
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.error[0]) + ", " + c.error[1] + ", CV " + c.cv[0]);
        Begin(kMammoAccRepro, kZrd, 2);
        for (uint8_t n = 1; n <= 2; ++n) Expose(n, "0,28,28,28,10,1,100,0.3,28,0,28,0,0,1.4,1.0,0.01");
        for (uint8_t row = 0; row < 2; ++row) {
            result->SetValue(row, ColumnNumber(result->Current(), key::kPercentError), c.error[row]);
            result->SetValue(row, ColumnNumber(result->Current(), key::kCv), c.cv[row]);
        }
        const SurveyOutcomes expected{c.l36, c.l38, c.l39};
        EXPECT_EQ(result->UpdateAllStatus(owner, &selected), expected);
        EXPECT_EQ(result->UpdateResult(owner, &selected, 1, 0), expected);
    }
    EXPECT_EQ(result->UpdateAllStatus(owner, &selected, true), kNoneOfSeven) << "not applicable";
    EXPECT_EQ(result->Status(), kNotApplicable);
}

TEST_F(ResultStatus, WithoutAnExposureAllRowsPassAndNotApplicableStoresNone) {
    Begin(kMammoRadiation, kZrd, 1);
    EXPECT_EQ(result->Status(), kNotTested);
    result->UpdateAllStatus(owner, &selected);
    EXPECT_EQ(result->Status(), kPassed);
    EXPECT_EQ(result->UpdateStatus(owner, &selected, 1, true), kNoneOfSeven);
    EXPECT_EQ(result->Status(), kNotApplicable);
    EXPECT_TRUE(result->Rows().empty());
}

TEST_F(ResultStatus, StoredColumnsKeepTheNumberTypeOnlyWhereTheyAreJudged) {
    Begin(kRadioRepro, kZrdAndMas, 1);
    Expose(1, "0,80,81,80,12,1,100,3,80,81,80,12,1,100,3,0,0,0,0,0,0,0");
    const MeasurementRow& row = *result->Rows()[0];
    EXPECT_EQ(FindMeasurement(row, key::kErKvpAvg)->ValueType(), kJudgedNumber);
    EXPECT_EQ(FindMeasurement(row, key::kErExposure)->ValueType(), kTextOnly);
    EXPECT_EQ(FindMeasurement(row, key::kMas)->ValueType(), kTextOnly);
    EXPECT_EQ(FindMeasurement(row, key::kKvpAvg)->ValueType(), kTextOnly);
}

// The empty reading is judged as 0, which a limit on the low side fails; the log names it.
TEST_F(ResultStatus, AnEmptyReadingIsJudgedAsZeroAndReported) {
    std::vector<std::string> log;
    HostServices services;
    services.log = [&](std::string_view line) { log.emplace_back(line); };
    InstallServices(services);
    Begin(kMammoRadiation, kZrd, 1);
    owner.limits->ranges["ER Exposure"] = {50, 200};
    Expose(1, "0,28,28,28,,1000,100,0.3,1000.0,8.73");
    result->UpdateAllStatus(owner, &selected);
    EXPECT_EQ(StatusOf(0, key::kExposure), kFailed);
    EXPECT_EQ(log, std::vector<std::string>{"exposure 1: \"Exposure\" was not measured and is judged as 0"});
    InstallServices({});
}

}  // namespace
}  // namespace vorex
