#include <iterator>

#include "cli/program_fixture.h"

namespace vorex::test {
namespace {

using SupersededTest = ProgramTest;

TEST_F(SupersededTest, ARedoKeepsWhatItReplacesAndNoVerdictUsesIt) {
    RunPassing(Element(1, 500, Exposures(2), Limit("ER kVp Avg", R"(<High Value="90"/>)")),
               Shot("95") + Shot("80") + Shot("96") + Shot("82"), "start,redo 1,redo 1,next");
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "82|80");
    std::string kept;
    for (pugi::xml_node item : ResultOf(1).children("SupersededExposure")) {
        kept += item.attribute("Exposure").value() + std::string(".") + item.attribute("Order").value() + " ";
        kept += item.attribute("Time").value();
        kept += " " + std::string(item.find_child_by_attribute("Key", "kVp Avg").child_value("Value")) + "; ";
    }
    // A tick each 500 ms: two exposures, then the redos.
    EXPECT_EQ(kept, "1.1 2026-01-15T09:00:01Z 95; 1.2 2026-01-15T09:00:02Z 96; ");
    ExpectJudgedAlike();
    // An element that is left as it is keeps them, and a fresh start drops them with its result.
    Write("left.xml", Read("out.xml"));
    ASSERT_EQ(RunFile("left.xml", "r.jsonl", "next"), kExitPassed) << err;
    EXPECT_EQ(Read("out.xml"), Read("left.xml"));
    ASSERT_EQ(RunFile("left.xml", "r.jsonl", "start,next"), kExitFailed) << err;
    EXPECT_TRUE(ResultOf(1).child("SupersededExposure").empty());
}

TEST_F(SupersededTest, ShowPrintsThemWhenAsked) {
    Write("s.xml", Sequence(Element(1, 100, Exposures(2) + "<NumberOfExposures0>1</NumberOfExposures0>")));
    const std::string shot = Shot("77.5", "10", Waves(Wave(1, "0,40.5,80.1,0")));
    Write("r.jsonl", kHead + shot + Shot("80") + Shot("81"));
    ASSERT_EQ(RunFile("s.xml", "r.jsonl", "start,redo 1,next"), kExitPassed) << err;
    EXPECT_THAT(Shown(), HasSubstr("Replaced by a redo: 1 exposure (vorex show --all)"));
    EXPECT_THAT(out, Not(HasSubstr("77.5"))) << out;
    ASSERT_EQ(Run({"show", "--all", Path("out.xml")}), kExitPassed);
    EXPECT_THAT(out, HasSubstr("Exposure 1, readings 1, replaced 2026-01-15T09:00:01Z\n"));
    EXPECT_THAT(out, HasSubstr("kVp Avg [KV]                                 77.5\n"));
    EXPECT_THAT(out, HasSubstr("Waveform: kV, 4 samples"));
    Write("s2.xml", Sequence(Element(1, 100, Exposures(1))));
    ASSERT_EQ(RunFile("s2.xml", "r.jsonl"), kExitPassed) << err;
    ASSERT_EQ(Run({"show", "--all", Path("out.xml")}), kExitPassed);
    EXPECT_THAT(out, Not(HasSubstr("Replaced"))) << "nothing was redone";
}

TEST_F(SupersededTest, OnlyANewReadingSupersedes) {
    // The second instrument of one exposure adds to it; a redo that is stopped before its reading does
    // nothing.
    const std::string both = Shot("80", "10", MasOf("20"));
    RunPassing(Element(1, 100, "<DetectorName>4</DetectorName>" + Exposures(2)),
               kHeadOfBoth + both + both + "{\"quiet\":3}\n" + both, "start,redo 2,next");
    const auto kept = ResultOf(1).children("SupersededExposure");
    EXPECT_EQ(std::distance(kept.begin(), kept.end()), 1);
    ASSERT_EQ(RunFile("s.xml", "r.jsonl", "start,redo 2,stop@0,next"), kExitPassed) << err;
    EXPECT_TRUE(ResultOf(1).child("SupersededExposure").empty());
}

TEST_F(SupersededTest, ABadOneIsAnErrorOfTheFile) {
    const std::string block =
        R"(<ResultItem><Status>1</Status><SupersededExposure Exposure="0"/></ResultItem>)";
    Write("s.xml", Sequence(Element(1, 100, Exposures(1), block)));
    EXPECT_EQ(Run({"show", Path("s.xml")}), kExitUsage);
    EXPECT_THAT(err, HasSubstr("attribute \"Exposure\""));
}

}  // namespace
}  // namespace vorex::test
