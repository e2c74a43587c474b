#include "foundation/sequence_state.h"

#include "files/element_file.h"
#include "host/host_fixture.h"

namespace vorex::host_test {
namespace {

using SequenceStateTest = HostTest;

TEST_F(SequenceStateTest, AnElementHasTheStateOfItsTree) {
    const auto first = ElementFile::FromText(Sequence(Group(1, Test100(2))), "first");
    const auto second = ElementFile::FromText(Sequence(Group(1, {}) + Test100(2)), "second");
    const auto test = first->FindElement(2);
    EXPECT_EQ(test->Sequence(), first->FindElement(1)->Sequence());
    EXPECT_NE(test->Sequence(), second->FindElement(2)->Sequence());
    EXPECT_EQ(second->FindElement(1)->Sequence(), second->FindElement(2)->Sequence());
    const auto group = std::dynamic_pointer_cast<ITestContainer>(first->FindElement(1));
    group->Remove(test);
    EXPECT_NE(test->Sequence(), first->FindElement(1)->Sequence()) << "on its own";
    std::dynamic_pointer_cast<ITestContainer>(second->FindElement(1))->Add(test, nullptr, kAddAtEnd);
    EXPECT_EQ(test->Sequence(), second->FindElement(2)->Sequence());
    EXPECT_NE(test->Clone()->Sequence(), test->Sequence());
}

TEST_F(SequenceStateTest, ARunBeginsWithClearedFlagsAndKeepsTheRoots) {
    const auto file = ElementFile::FromText(Sequence(Test100(1)), "file");
    const auto state = file->FindElement(1)->Sequence();
    state->gSkipRemaining = state->gNARemaining = state->gRunActive = state->gMenuOpen = true;
    state->watchFailures = 3;
    state->Reset();
    EXPECT_FALSE(state->gSkipRemaining || state->gNARemaining || state->gRunActive || state->gMenuOpen);
    EXPECT_EQ(state->watchFailures, 0);
    EXPECT_EQ(state->Roots(), file->Elements());
}

}  // namespace
}  // namespace vorex::host_test
