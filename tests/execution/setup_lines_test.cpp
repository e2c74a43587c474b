#include "execution/setup_lines.h"

#include <algorithm>

#include "foundation/test_sets.h"
#include "support/distinct_config.h"
#include "support/library_test.h"

namespace vorex {
namespace {

using SetupLines = test::LibraryTest;

using Lines = std::vector<std::string>;

struct Row {
    int32_t testId, setup;
    Lines lines;  ///< of the second exposure, without "    Set " in front of all but the first
    std::vector<int32_t> perExposure;
};

// clang-format off
const std::vector<Row>& Rows() {
    static const std::string sdd = "1. Set SDD to 61.5 Inches.", large = "FSS to Large.", time = "Machine Time to 84 ms.";
    static const std::string small = "Focal Spot Size to Small.", kv = "Machine kVp to 81 KV.", mA = "Machine mA to 82 mA.";
    static const std::string rowKv = "Machine kVp to 91 KV.", rowMa = "Machine mA to 92 mA.", rowMas = "Machine mAs to 93.";
    static const std::vector<Row> rows = {
        {100, kSetupMas, {sdd, large, kv, "Machine mAs to 83."}, {}},
        {100, kSetupMaTime, {sdd, large, kv, mA, time}, {}},
        {200, kSetupMas, {sdd, small, rowKv, rowMas}, {2, 3, 4}},
        {200, kSetupMaTime, {sdd, small, rowKv, rowMa, "Machine Time to 94 ms."}, {2, 3, 4, 5}},
        {300, kSetupMas, {sdd, small, kv, rowMas}, {2, 4}},
        {300, kSetupMaTime, {sdd, small, kv, rowMa, time}, {2, 4}},
        {500, kSetupMas, {sdd, large, rowKv, rowMa}, {3, 4}},
        {700, kSetupMas, {sdd, large, rowKv, rowMa, "Phantom Thickness to 9 cm.", "Mode to high."}, {3, 4, 5, 6}},
        {900, kSetupMas, {"1. Set Machine kVp to 81 KV.", mA, "Machine mAs to 83.", time, large}, {}},
        {1100, kSetupMas,
         {"1. Set SDD to 27.", "Machine kVp to 26 KV.", rowMas, "Breast Thickness to 4.5 cm.", "SBD to 64 cm.",
          "SID to 65 cm.", "Filter to filter.", "Target Material to target.", "Glandular Fraction to 0.4.",
          "Energy Correction Factor to 1.1.", "Density Control Settings to dc.", "Cassette Size to 18 cm.",
          "Film Type to film.", "AEC Mode to aec.", "Field Restriction to field.", "Imaging Mode to imaging.",
          "Screen Type to screen.", "Measured HVL to 0.31.", "Phantom to phantom."}, {3}},
        {1200, kSetupMas,
         {"1. Set SDD to 85.", kv, time, "Anode to anode.", "Filter to machine filter.", "SID to 95 cm.", rowMas}, {6, 7}},
    };
    return rows;
}
// clang-format on

TEST_F(SetupLines, EachLineHasTheSettingOfItsTestAndExposureForEveryKind) {
    TestSet seen;
    for (const Row& row : Rows()) {
        seen = seen | row.testId;
        Lines lines = row.lines;
        for (std::size_t i = 1; i < lines.size(); ++i) lines[i] = "    Set " + lines[i];
        for (int32_t kind : kDetectorKinds) {
            CConfigCommon config = *test::DistinctConfig(row.testId, row.setup);
            config.DetectorName = kind;
            EXPECT_EQ(BuildSetupLines(config, 1), lines) << row.testId << " kind " << kind;
        }
        const SetupLineNumbers numbers = NumberSetupLines(row.testId, row.setup);
        EXPECT_EQ(numbers.count, static_cast<int32_t>(row.lines.size())) << row.testId;
        EXPECT_EQ(numbers.perExposure, row.perExposure) << row.testId;
        // The lines that change with the exposure are exactly these.
        const Lines first = BuildSetupLines(*test::DistinctConfig(row.testId, row.setup), 0);
        for (std::size_t i = 0; i < first.size(); ++i) {
            const bool changes =
                std::count(row.perExposure.begin(), row.perExposure.end(), static_cast<int32_t>(i) + 1) == 1;
            EXPECT_EQ(first[i] != lines[i], changes) << row.testId << ": " << first[i];
        }
    }
    EXPECT_TRUE(seen == TestSet::AllBut({})) << "a test has no row here";
}

}  // namespace
}  // namespace vorex
