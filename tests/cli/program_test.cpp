#include "cli/program.h"

#include <ostream>

#include "cli/program_fixture.h"

namespace vorex::test {
namespace {

using ProgramMainTest = ProgramTest;

TEST_F(ProgramMainTest, TheExitCodeSaysHowACommandEnded) {
    Write("good.xml", Sequence(Element(1, 100, Exposures(2), Limit("ER kVp Avg", R"(<High Value="90"/>)"))));
    Write("bad.xml", Sequence(Element(1, 100, Exposures(2), Limit("ER kVp Avg", R"(<High Value="70"/>)"))));
    Write("two.jsonl", kHead + Shot("80") + Shot("81"));
    Write("one.jsonl", kHead + Shot("80"));
    const std::string two = "recording:" + Path("two.jsonl");
    const std::string one = "recording:" + Path("one.jsonl");
    const std::string failed = Path("failed.xml");
    const struct {
        std::vector<std::string> arguments;
        int code;
    } cases[] = {
        {{"show", Path("good.xml")}, kExitPassed},
        {{"run", Path("good.xml"), "--instruments", two, "-o", Path("passed.xml")}, kExitPassed},
        {{"run", Path("bad.xml"), "--instruments", two, "-o", failed}, kExitFailed},
        {{"judge", failed, "-o", Path("judged.xml")}, kExitFailed},
        {{"show", failed}, kExitPassed},
        {{"report", failed, "-o", Path("r.txt")}, kExitPassed},
        {{}, kExitUsage},
        {{"run", Path("good.xml"), "--instruments", two, "--operator", "redo 1"}, kExitUsage},
        {{"judge", Path("absent.xml")}, kExitUsage},
        {{"resume", Path("passed.xml")}, kExitUsage},
        {{"run", Path("good.xml"), "--instruments", two, "--operator", "abort"}, kExitAborted},
        {{"run", Path("good.xml"), "--instruments", one}, kExitFault},
        {{"run", Path("good.xml"), "--instruments", two, "-o", Path("p.xml"), "--report",
          Path("absent/r.txt")},
         kExitUsage},
    };
    for (const auto& c : cases) {
        std::string command;
        for (const std::string& argument : c.arguments) command += " " + argument;
        EXPECT_EQ(Run(c.arguments), c.code) << command << "\n" << err;
        if (c.code == kExitUsage || c.code == kExitFault) {
            EXPECT_NE(err, "") << command;
        }
    }
}

TEST_F(ProgramMainTest, APersonSeesEachElementBeginAndEnd) {
    Write("s.xml", Sequence(Element(7, 500, Exposures(1)) + Element(8, 100, Exposures(1))));
    Write("r.jsonl", kHead + Shot("80") + Shot("81"));
    std::ostringstream printed;
    std::ostringstream progress;
    Terminal terminal{printed, progress, false, true};
    RunProgram({"run", Path("s.xml"), "--instruments", "recording:" + Path("r.jsonl"), "-o", Path("o.xml")},
               terminal);
    EXPECT_EQ(progress.str(),
              "7  Fluoroscopy Accuracy ...\n7  Fluoroscopy Accuracy: Pass\n"
              "8  Radiography Reproducibility ...\n8  Radiography Reproducibility: Pass\n");
}

}  // namespace
}  // namespace vorex::test
