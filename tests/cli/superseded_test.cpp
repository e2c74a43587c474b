#include <iterator>

#include "cli/program_fixture.h"

namespace vorex::test {
namespace {

using SupersededTest = ProgramTest;

TEST_F(SupersededTest, ARedoKeepsWhatItReplacesAndNoVerdictUsesIt) {
    Write("s.xml", Sequence(Element(1, 500, Exposures(2), Limit("ER kVp Avg", R"(<High Value="90"/>)"))));
    Write("r.jsonl", kHead + Shot("95") + Shot("80") + Shot("96") + Shot("82"));
    ASSERT_EQ(RunFile("s.xml", "r.jsonl", "start,redo 1,redo 1,next"), kExitPassed) << err;
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "82|80");
    std::string kept;
    for (pugi::xml_node item : ResultOf(1).children("SupersededExposure")) {
        kept += item.attribute("Exposure").value() + std::string(".") + item.attribute("Order").value() + " ";
        kept += item.attribute("Time").value();
        kept += " " + std::string(item.find_child_by_attribute("Key", "kVp Avg").child_value("Value")) + "; ";
    }
    // A tick each 500 ms: two exposures, then the redos.
    EXPECT_EQ(kept, "1.1 2026-01-15T09:00:01Z 95; 1.2 2026-01-15T09:00:02Z 96; ");
    ASSERT_EQ(Run({"judge", Path("out.xml"), "-o", Path("again.xml")}), kExitPassed) << err;
    EXPECT_EQ(Read("again.xml"), Read("out.xml"));
    // An element that is left as it is keeps them, and a fresh start drops them with its result.
    Write("left.xml", Read("out.xml"));
    ASSERT_EQ(RunFile("left.xml", "r.jsonl", "next"), kExitPassed) << err;
    EXPECT_EQ(Read("out.xml"), Read("left.xml"));
    ASSERT_EQ(RunFile("left.xml", "r.jsonl", "start,next"), kExitFailed) << err;
    EXPECT_TRUE(ResultOf(1).child("SupersededExposure").empty());
}

TEST_F(SupersededTest, ShowPrintsThemWhenAsked) {
    Write("s.xml", Sequence(Element(1, 100, Exposures(2) + "<NumberOfExposures0>1</NumberOfExposures0>")));
    const std::string shot =
        R"({"exposure":{"detector":["77.5","81","80","10","100","100","10","0","0","3"],)"
        R"("waveforms":[{"type":1,"resolution":10,"samples":"0,40.5,80.1,0"}]}})"
        "\n";
    Write("r.jsonl", kHead + shot + Shot("80") + Shot("81"));
    ASSERT_EQ(RunFile("s.xml", "r.jsonl", "start,redo 1,next"), kExitPassed) << err;
    ASSERT_EQ(Run({"show", Path("out.xml")}), kExitPassed);
    EXPECT_NE(out.find("Replaced by a redo: 1 exposure (vorex show --all)"), std::string::npos) << out;
    EXPECT_EQ(out.find("77.5"), std::string::npos) << out;
    ASSERT_EQ(Run({"show", "--all", Path("out.xml")}), kExitPassed);
    EXPECT_NE(out.find("Exposure 1, readings 1, replaced 2026-01-15T09:00:01Z\n"), std::string::npos) << out;
    EXPECT_NE(out.find("kVp Avg [KV]                                 77.5\n"), std::string::npos) << out;
    EXPECT_NE(out.find("Waveform: kV, 4 samples"), std::string::npos) << out;
    Write("s2.xml", Sequence(Element(1, 100, Exposures(1))));
    ASSERT_EQ(RunFile("s2.xml", "r.jsonl"), kExitPassed) << err;
    ASSERT_EQ(Run({"show", "--all", Path("out.xml")}), kExitPassed);
    EXPECT_EQ(out.find("Replaced"), std::string::npos) << "nothing was redone";
}

TEST_F(SupersededTest, OnlyANewReadingSupersedes) {
    // The second instrument of one exposure adds to it; a redo that is stopped before its reading does
    // nothing.
    const std::string both =
        R"({"exposure":{"detector":["80","81","80","10","100","100","10","0","0","3"],"mas":["200","20","0","0.5"]}})"
        "\n";
    Write("s.xml", Sequence(Element(1, 100, "<DetectorName>4</DetectorName>" + Exposures(2))));
    Write("r.jsonl", R"({"recording":1,"kind":4,"serialNumbers":"4711,88"})"
                     "\n" +
                         both + both + "{\"quiet\":3}\n" + both);
    ASSERT_EQ(RunFile("s.xml", "r.jsonl", "start,redo 2,next"), kExitPassed) << err;
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
    EXPECT_NE(err.find("attribute \"Exposure\""), std::string::npos) << err;
}

}  // namespace
}  // namespace vorex::test
