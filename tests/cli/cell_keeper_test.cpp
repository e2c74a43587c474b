#include "cli/cell_keeper.h"

#include "cli/program_fixture.h"
#include "host/element_file.h"
#include "host/reference_host.h"
#include "library.h"

namespace vorex::test {
namespace {

TEST(CellKeeper, OfSeveralSurveysNoneLeavesItsOutcomesToTheOthers) {
    InstallLibrary(MakeReferenceHost({}));
    const std::string result = "<ResultItem><Status>0</Status><Dose80>2</Dose80></ResultItem>";
    for (const bool several : {false, true}) {
        const std::string other = several ? Element(20, 1300, {}) : std::string();
        const auto file = ElementFile::FromText(Sequence(Element(10, 1300, {}, result) + other), "in.xml");
        State().cells = {};
        {
            CellKeeper cells(*file);
            cells.Enter(*file->Elements().front());
            EXPECT_EQ(State().cells.Dose80, 2);
        }
        EXPECT_EQ(State().cells.Dose80, several ? 0 : 2);
    }
    ResetState();
    InstallServices({});
}

}  // namespace
}  // namespace vorex::test
