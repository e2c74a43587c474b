#include "host/element_base.h"

#include "files/element_document.h"
#include "files/element_output.h"
#include "foundation/host_error.h"
#include "foundation/vocabulary.h"
#include "host/host_fixture.h"

namespace vorex::host_test {
namespace {

class ElementBaseTest : public HostTest {
  protected:
    static std::unique_ptr<XmlSource> Source(const std::string& text) {
        return XmlSource::FromText(text, "a.xml");
    }
    static std::shared_ptr<IXmlElement> Root(XmlSource& source) {
        return source.Element(source.Document().first_child());
    }
};

TEST_F(ElementBaseTest, TheFrameIsReadAndWritten) {
    const auto source =
        Source("<TestElement ID=\"4\" Name=\"Room 1\"><Filter Print=\"False\"/></TestElement>");
    TestElementBase base;
    base.Initialize(nullptr, kPlugInId, kGroupId);
    base.Load(Root(*source), nullptr);
    EXPECT_EQ(base.ID(), 4);
    EXPECT_EQ(base.Info()->Name(), "Room 1");
    EXPECT_EQ(base.Info()->ServiceFlags(), kKeepServiceRecord);
    EXPECT_TRUE(base.Filter()->Save());
    EXPECT_FALSE(base.Filter()->Print());
    EXPECT_TRUE(base.Filter()->Evaluate());
    const auto document = std::make_shared<OutputDocument>();
    document->Top().AddChild(base.Save(document, 0));
    EXPECT_EQ(document->Text(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<TestElement PlugIn=\"ZRD47500\" TestID=\"0\" ID=\"4\" Name=\"Room 1\">\n"
              "  <Filter Save=\"True\" Print=\"False\" Evaluate=\"True\" />\n"
              "</TestElement>\n");
}

TEST_F(ElementBaseTest, AConfigurationNeedsItsBlock) {
    const auto source = Source("<TestElement ID=\"4\"/>");
    const auto element = CreateTestElement(kRadioRepro);
    try {
        element->Load(Root(*source), nullptr);
        ADD_FAILURE();
    } catch (const HostError& error) {
        EXPECT_EQ(error.Code(), kErrorForeignConfiguration);
    }
}

TEST_F(ElementBaseTest, ACloneHasConfigurationAndLimitsButNoResultAndNoNumber) {
    const auto source =
        Source(Test100(6,
                       "<Filter Evaluate=\"False\"/><ExpectedResult><Standard Name=\"S\" Version=\"1\"/>"
                       "</ExpectedResult><ResultItem><Status>1</Status></ResultItem>",
                       "<MachineKV>81</MachineKV>"));
    const auto element = LoadTestElement(Root(*source), nullptr);
    ASSERT_TRUE(element->Result());
    const auto clone = element->Clone();
    EXPECT_EQ(clone->Result(), nullptr);
    EXPECT_EQ(clone->TestID(), kRadioRepro);
    EXPECT_LT(clone->ID(), 0);
    EXPECT_FALSE(clone->Filter()->Evaluate());
    EXPECT_NE(clone->Configuration(), element->Configuration());
    EXPECT_EQ(clone->Limits()->Standards()->Count(), 1);
    EXPECT_NE(clone->Limits()->Standards()->Item(0), element->Limits()->Standards()->Item(0));
}

TEST_F(ElementBaseTest, AGroupAddsFindsAndRemovesElements) {
    TestContainerBase group;
    std::vector<std::shared_ptr<ITestElement>> tests;
    for (int32_t id = 1; id <= 3; ++id) {
        tests.push_back(CreateTestElement(kRadioRepro));
        tests.back()->ID(id);
    }
    const auto inner = CreateTestElement(kGroupId);
    inner->ID(9);
    group.Add(tests[0], nullptr, kAddAtEnd);
    group.Add(inner, nullptr, kAddAtEnd);
    group.Add(tests[1], tests[0], kAddBehind);
    std::dynamic_pointer_cast<ITestContainer>(inner)->Add(tests[2], nullptr, kAddAtEnd);
    EXPECT_EQ(group.Item(1), tests[0]);
    EXPECT_EQ(group.Item(2), tests[1]);
    EXPECT_EQ(group.Item(3), inner);
    EXPECT_EQ(group.Item(0), nullptr);
    EXPECT_EQ(group.Item(4), nullptr);
    EXPECT_EQ(group.FindElement(3), tests[2]) << "at any depth";
    EXPECT_EQ(group.FindElement(4), nullptr);
    group.Remove(tests[0]);
    EXPECT_EQ(group.NewEnum(), (std::vector<std::shared_ptr<ITestElement>>{tests[1], inner}));
}

TEST_F(ElementBaseTest, TerminateLetsGoOfEverything) {
    const auto group = CreateTestElement(kGroupId);
    auto test = CreateTestElement(kRadioRepro);
    std::dynamic_pointer_cast<ITestContainer>(group)->Add(test, nullptr, kAddAtEnd);
    const std::weak_ptr<ITestElement> child = test;
    const std::weak_ptr<IConfigData> configuration = test->Configuration();
    test.reset();
    group->Terminate();
    EXPECT_TRUE(child.expired());
    EXPECT_TRUE(configuration.expired());
    EXPECT_EQ(group->Limits(), nullptr);
}

}  // namespace
}  // namespace vorex::host_test
