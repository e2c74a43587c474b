#include "execution/test_common.h"

#include "host/host_fixture.h"
#include "host/standards.h"
#include "results/limit_data.h"

namespace vorex {
namespace {

class TestCommon : public host_test::HostTest {
  protected:
    static std::shared_ptr<CTestCommon> FluoroExposures() {
        auto element = CTestCommon::Create();
        element->Initialize(nullptr, kPlugInId, kFluoroExposure);
        element->Limits()->CreateStandard("Site", "1");
        return element;
    }
    static CConfigCommon& ConfigOf(const CTestCommon& element) {
        return *std::dynamic_pointer_cast<CConfigCommon>(element.Configuration());
    }
    /// Numbers of the exposures that have a limit of their own.
    static std::string Exposures(const CTestCommon& element) {
        std::string numbers;
        for (const auto& limit : element.Limits()->Standards()->Item(0)->Results())
            if (IsMaxExposureRate(limit->Key()))
                numbers += limit->Key().substr(key::kMaxExposureRate.size()) + " ";
        return numbers;
    }
};

TEST_F(TestCommon, LimitsFollowTheExposuresThatTheSetupAddsAndRemoves) {
    const auto element = FluoroExposures();
    EXPECT_EQ(Exposures(*element), "1 ");
    ConfigOf(*element).SetAddLimitStatus(2);
    ConfigOf(*element).SetAddLimitStatus(3);
    EXPECT_EQ(Exposures(*element), "1 2 3 ");
    const auto clone = std::dynamic_pointer_cast<CTestCommon>(element->Clone());
    ConfigOf(*clone).SetDeleteLimitStatus(1);
    EXPECT_EQ(Exposures(*clone), "1 2 ");
    EXPECT_EQ(Exposures(*element), "1 2 3 ") << "a clone follows its own";
}

TEST_F(TestCommon, AConfigurationThatOutlivesItsElementHasNoListeners) {
    auto element = FluoroExposures();
    const auto config = std::dynamic_pointer_cast<CConfigCommon>(element->Configuration());
    const auto standard = element->Limits()->Standards()->Item(0);
    const std::size_t limits = standard->Results().size();
    element.reset();
    config->SetAddLimitStatus(2);
    EXPECT_EQ(standard->Results().size(), limits);
    EXPECT_FALSE(config->LimitAdded.Connected() || config->LimitDeleted.Connected());
}

}  // namespace
}  // namespace vorex
