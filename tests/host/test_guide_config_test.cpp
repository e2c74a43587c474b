#include "host/test_guide_config.h"

#include "foundation/vocabulary.h"
#include "host/host_fixture.h"

namespace vorex::host_test {
namespace {

using TestGuideConfigTest = XmlTest;

TEST_F(TestGuideConfigTest, TheGuideHasBothButtonsByDefault) {
    TestGuideConfig config;
    EXPECT_EQ(config.Buttons(), kSkipButtonBit | kNaButtonBit);
    config.Load(Element("<TestGuideSettings><Buttons>2</Buttons></TestGuideSettings>"));
    EXPECT_EQ(config.Clone()->Buttons(), kNaButtonBit);
    EXPECT_EQ(Xml(config.Save(document)),
              "<TestGuideSettings>\n  <Buttons>2</Buttons>\n</TestGuideSettings>");
    config.Load(Element("<TestGuideSettings/>"));
    EXPECT_EQ(config.Buttons(), kNaButtonBit);
}

}  // namespace
}  // namespace vorex::host_test
