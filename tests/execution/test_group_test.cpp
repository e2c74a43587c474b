#include "execution/test_group.h"

#include "execution/execution_fixture.h"

namespace vorex::test {
namespace {

class TestGroupTest : public ExecutionTest {
  protected:
    /// A tree such as "(a(b)())": a letter is an element of test 100, brackets are groups.
    std::shared_ptr<CTestGroup> Tree(const std::string& text, std::size_t& at) {
        auto group = CTestGroup::Create();
        group->Initialize(nullptr, kPlugInId, kGroupId);
        for (++at; at < text.size() && text[at] != ')'; ++at) {
            std::shared_ptr<ITestElement> child;
            if (text[at] == '(') {
                child = Tree(text, at);
            } else {
                const auto element = Make(kRadioRepro, 1);
                ConfigOf(*element).TestGuideConfig()->Buttons(kSkipButtonBit | kNaButtonBit);
                leaves.push_back(element);
                child = element;
            }
            group->Add(child, nullptr, kAddAtEnd);
        }
        return group;
    }
    std::shared_ptr<CTestGroup> Tree(const std::string& text) {
        leaves.clear();
        std::size_t at = 0;
        return Tree(text, at);
    }
    /// A letter for each leaf: "-" without a result, else its status.
    std::string Leaves() const {
        std::string all;
        for (const auto& leaf : leaves)
            all += leaf->Result() ? std::to_string(leaf->Result()->Status()) : "-";
        return all;
    }

    std::vector<std::shared_ptr<CTestCommon>> leaves;
};

TEST_F(TestGroupTest, SkipAndNaOfTheFirstChildReachAllOthersAndNothingElse) {
    struct Case {
        const char* tree;
        int32_t button;
        int pressed;  ///< at which of the guides that open; at the others a run is taken
        const char* leaves;
        int guides;  ///< opened
    };
    const Case cases[] = {
        {"(ab)", guide_button::kSkip, 1, "--", 1},
        {"(a(bc)d)", guide_button::kSkip, 1, "----", 1},
        {"(a(bc)d)", guide_button::kNa, 1, "3333", 1},
        {"(a((b)())c)", guide_button::kNa, 1, "333", 1},
        // An empty group at the end must not leave the flag to the element that follows.
        {"(a(b())c)", guide_button::kSkip, 2, "1-1", 3},
        {"(a(b())c)", guide_button::kNa, 2, "131", 3},
        {"(a(b(c()))d)", guide_button::kNa, 2, "1331", 3},
    };
    for (const Case& c : cases) {
        const auto group = Tree(c.tree);
        int guides = 0;
        platform->onIdle = [&] {
            FZRD47500TestGuide& guide = Guide();
            if (++guides == c.pressed) {
                EXPECT_TRUE(guide.PressButton(c.button));
                return;
            }
            Expose("80");
            guide.PressButton(guide_button::kStart);
            guide.PressButton(guide_button::kNext);
        };
        group->Perform(pipe);
        EXPECT_EQ(Leaves(), c.leaves) << c.tree << " " << c.button;
        EXPECT_EQ(guides, c.guides) << c.tree << " " << c.button;
        EXPECT_FALSE(group->Sequence()->gSkipRemaining) << c.tree;
        EXPECT_FALSE(group->Sequence()->gNARemaining) << c.tree;
        const auto result = group->Result();
        EXPECT_EQ(result->MeasurementCount(), 0) << "it has only a status";
        EXPECT_FALSE(result->Measurement(0) || result->ServiceRecord() || result->HasDialog());
    }
}

}  // namespace
}  // namespace vorex::test
