#include "cli/program.h"

#include "cli/program_fixture.h"

namespace vorex::test {
namespace {

using ProgramMainTest = ProgramTest;

TEST_F(ProgramMainTest, HelpAndVersionAreAnswersAndNoFaults) {
    for (const auto& [option, words] : {std::pair("--help", "resume"), std::pair("--version", "vorex ")}) {
        EXPECT_EQ(Run({option}), kExitPassed);
        EXPECT_THAT(out, HasSubstr(words));
        EXPECT_EQ(err, "");
    }
}

TEST_F(ProgramMainTest, TheHelpOfEachCommandHasAnExample) {
    using Words = std::vector<std::string>;
    for (const Words& command : std::vector<Words>{{"new"},
                                                   {"run"},
                                                   {"resume"},
                                                   {"judge"},
                                                   {"report"},
                                                   {"show"},
                                                   {"survey"},
                                                   {"standards"},
                                                   {"standards", "add"},
                                                   {"standards", "select"}}) {
        Words words = command;
        words.push_back("--help");
        EXPECT_EQ(Run(words), kExitPassed);
        EXPECT_THAT(out, HasSubstr("\n  vorex " + command.front() + " ")) << command.back();
    }
}

TEST_F(ProgramMainTest, APersonSeesEachElementBeginAndEnd) {
    Write("s.xml", Sequence(Element(7, 500, Exposures(1)) + Element(8, 100, Exposures(1))));
    Write("r.jsonl", kHead + Shot("80") + Shot("81"));
    std::ostringstream printed, progress;
    Terminal terminal{printed, progress, false, true};
    RunProgram({"run", Path("s.xml"), "--instruments", "recording:" + Path("r.jsonl"), "-o", Path("o.xml")},
               terminal);
    EXPECT_EQ(progress.str(),
              "7  Fluoroscopy Accuracy ...\n7  Fluoroscopy Accuracy: Pass\n"
              "8  Radiography Reproducibility ...\n8  Radiography Reproducibility: Pass\n");
}

}  // namespace
}  // namespace vorex::test
