#include "cli/program_fixture.h"

namespace vorex::test {
namespace {

class ShowTest : public ProgramTest {
  protected:
    bool Prints(const std::string& words) const { return out.find(words) != std::string::npos; }
};

TEST_F(ShowTest, WaveformsAreListedInOneLineByExposureAndKind) {
    const std::string kv = Wave(1, "0,40.5,80.1,0");
    const std::string ma = Wave(3, "0,200,0");
    Write("s.xml", Sequence(Element(1, 100,
                                    "<DetectorName>4</DetectorName>" + Exposures(2) +
                                        "<NumberOfExposures0>1</NumberOfExposures0>"
                                        "<NumberOfExposures1>1</NumberOfExposures1>")));
    struct Case {
        std::string first, second;
        const char* line;  ///< empty for none
    };
    const Case cases[] = {
        {kv + "," + ma, kv,
         "Waveforms: kV of exposure 1, 4 samples; mA of exposure 1, 3 samples; kV of exposure 2, 4 "
         "samples\n"},
        {"", ma, "Waveforms: mA of exposure 2, 3 samples\n"},
        {"", "", ""},
    };
    for (const Case& c : cases) {
        Write("r.jsonl", kHeadOfBoth + Shot("80", "10", MasOf("20") + Waves(c.first)) +
                             Shot("80", "10", MasOf("20") + Waves(c.second)));
        ASSERT_EQ(RunFile("s.xml", "r.jsonl"), kExitPassed) << err;
        ASSERT_EQ(Run({"show", Path("out.xml")}), kExitPassed);
        EXPECT_EQ(Prints("Waveforms:"), *c.line != '\0') << out;
        EXPECT_TRUE(Prints(c.line)) << out;
    }
}

TEST_F(ShowTest, OfManyEditedSettingsFourAreShownAndTheOthersCounted) {
    RunPassing(Element(1, 500, Exposures(1)), Shot("80"));
    struct Case {
        int edited;
        const char* line;  ///< empty for none
    };
    int edited = 0;
    auto setting = ResultOf(1).child("Technique").first_child();
    for (const Case& c : {Case{4, ""}, Case{5, "and 1 more"}, Case{7, "and 3 more"}}) {
        for (; edited < c.edited; ++edited, setting = setting.next_sibling()) {
            ASSERT_TRUE(setting);
            setting.text().set("another");
        }
        result.save_file(Path("edited.xml").c_str(), "  ");
        ASSERT_EQ(Run({"show", Path("edited.xml")}), kExitPassed) << err;
        EXPECT_TRUE(Prints("Settings edited since:")) << out;
        std::size_t shown = 0;
        for (std::size_t at = out.find("then another"); at != std::string::npos;
             at = out.find("then another", at + 1))
            ++shown;
        EXPECT_EQ(shown, 4U) << c.edited;
        EXPECT_EQ(Prints(" more"), *c.line != '\0') << out;
        EXPECT_TRUE(Prints(c.line)) << out;
    }
}

TEST_F(ShowTest, ABlankLineIsBetweenTestsAndASurveyListsWhatIsFilledIn) {
    Write("s.xml", Sequence(Element(1, 100, Exposures(1)) + Element(2, 200, Exposures(1)) +
                            Element(3, 1300, {}, "<ResultItem><Status>1</Status></ResultItem>")));
    ASSERT_EQ(Run({"survey", Path("s.xml"), "--set", "Collimation.SID=651", "-o", Path("out.xml")}), 0)
        << err;
    ASSERT_EQ(Run({"show", Path("out.xml")}), 0) << err;
    for (const char* element : {"\n\n2  ", "\n\n3  "}) EXPECT_TRUE(Prints(element)) << out;
    EXPECT_TRUE(Prints(" 651\n")) << out;
    EXPECT_FALSE(Prints("Functioning Masks")) << "nothing is filled in there";
}

TEST_F(ShowTest, AnExposureWithoutAReadingSaysSo) {
    RunPassing(Element(1, 700, Exposures(2) + "<MeasurementMode>2</MeasurementMode>"),
               "{\"stopButton\":true}\n{\"stopButton\":true}\n{\"stopButton\":false}\n" + Shot("80"),
               "start,stop@0,next");
    EXPECT_THAT(Shown(), HasSubstr("  no reading          80\n"));
}

TEST_F(ShowTest, ExposuresThatAreMissingAreCountedNextToTheVerdict) {
    struct Case {
        const char* script;
        const char* words;  ///< empty for none
    };
    for (const Case& c :
         {Case{"start,next", ""}, Case{"na", ""}, Case{"skip", ""}, Case{"start,stop@1,next", "1 of 2"}}) {
        RunOn(Element(1, 100, Exposures(2)), Shot("80") + Shot("81"), c.script);
        ASSERT_EQ(Run({"show", Path("out.xml")}), kExitPassed) << err;
        EXPECT_EQ(Prints("stored"), *c.words != '\0') << c.script << out;
        EXPECT_TRUE(Prints(c.words)) << c.script << out;
    }
}

}  // namespace
}  // namespace vorex::test
