#include "app/open_file.h"

#include <stdexcept>

#include "app/session.h"
#include "cli/program_fixture.h"
#include "foundation/vocabulary.h"
#include "test_paths.h"

namespace vorex::test {
namespace {

/// One exposure of test 500 with a voltage, passed, and a limit for it.
std::string Measured(int id, const std::string& kvp, const std::string& high) {
    return Element(id, 500, Exposures(1),
                   Limit("ER kVp Avg", "<High Value=\"" + high + "\"/>") +
                       "<ResultItem><Status>1</Status><Measurement Key=\"kVp Avg\"><Value Type=\"5\">" + kvp +
                       "</Value><Status>1</Status></Measurement></ResultItem>");
}

int32_t StatusIn(const OpenFile& file, int32_t id) {
    const auto element = file.File().FindElement(id);
    return element->Result() ? element->Result()->Status() : -1;
}

TEST(OpenFileTest, JudgingGivesAGroupTheResultThatItsChildrenComeTo) {
    struct Case {
        const char* what;
        std::string children;
        int32_t outer, inner;
    };
    const std::string unmeasured = Element(5, 100, Exposures(1));
    const Case cases[] = {
        {"a child failed", Group(3, Measured(4, "84", "83") + unmeasured), kFailed, kFailed},
        {"all passed", Group(3, Measured(4, "84", "90") + unmeasured), kPassed, kPassed},
        {"nothing was measured", Group(3, unmeasured), -1, -1},
    };
    const Session session;
    for (const Case& c : cases) {
        const auto file = OpenFile::FromText(Sequence(Group(1, Group(2, "") + c.children)), "s.xml");
        IAppListener nobody;
        file->Judge(nobody);
        EXPECT_EQ(StatusIn(*file, 1), c.outer) << c.what;
        EXPECT_EQ(StatusIn(*file, 3), c.inner) << c.what;
        EXPECT_EQ(StatusIn(*file, 2), -1) << c.what << ": an empty group has nothing to come to";
    }
}

/// The limit dialog and the command that adds standards take the same limits, also those by voltage.
TEST(OpenFileTest, AStandardThatIsCreatedHasTheLimitsOfOneThatIsAdded) {
    setenv("VOREX_STANDARDS", (std::string(kSourceDir) + "/standards").c_str(), 1);
    Session session;
    IAppListener nobody;
    StandardsLibrary& library = session.Standards(nobody);
    const std::string text = Sequence(Element(1, 900, Exposures(1) + "<MachineKV>28</MachineKV>"));
    const auto added = OpenFile::FromText(text, "added.xml");
    const StandardName name =
        added->AddStandard(library, "FDA mammography half-value layer", {}, nobody).name;
    const auto created = OpenFile::FromText(text, "created.xml");
    const auto standard = created->Elements()[0]->Limits()->CreateStandard(name.name, name.version);
    ASSERT_TRUE(standard);
    EXPECT_FALSE(standard->Results().empty());
    EXPECT_EQ(created->File().Text(), added->File().Text());
    unsetenv("VOREX_STANDARDS");
}

}  // namespace
}  // namespace vorex::test
