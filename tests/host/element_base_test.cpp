#include "host/element_base.h"

#include "foundation/host_error.h"
#include "foundation/vocabulary.h"
#include "host/host_fixture.h"
#include "support/recording_report.h"

namespace vorex::host_test {
namespace {

using ElementBaseTest = XmlTest;

TEST_F(ElementBaseTest, TheFrameIsReadAndWritten) {
    TestElementBase base;
    base.Initialize(nullptr, kPlugInId, kGroupId);
    base.Load(Element("<TestElement ID=\"4\" Name=\"Room 1\"><Filter Print=\"False\"/></TestElement>"),
              nullptr);
    EXPECT_EQ(base.ID(), 4);
    EXPECT_EQ(base.Info()->Name(), "Room 1");
    EXPECT_EQ(base.Info()->ServiceFlags(), kKeepServiceRecord);
    EXPECT_TRUE(base.Filter()->Save());
    EXPECT_FALSE(base.Filter()->Print());
    EXPECT_TRUE(base.Filter()->Evaluate());
    EXPECT_EQ(Xml(base.Save(document, 0)),
              "<TestElement PlugIn=\"ZRD47500\" TestID=\"0\" ID=\"4\" Name=\"Room 1\">\n"
              "  <Filter Save=\"True\" Print=\"False\" Evaluate=\"True\" />\n"
              "</TestElement>");
}

TEST_F(ElementBaseTest, AForeignElementIsRefused) {
    const struct {
        int32_t testId;
        const char* xml;
        uint32_t code;
    } cases[] = {{kRadioRepro, "<TestElement ID=\"4\"/>", kErrorForeignConfiguration},
                 {kGroupId, "<Result/>", kErrorNotAGroup}};
    for (const auto& c : cases) {
        const auto load = [&] { CreateTestElement(c.testId)->Load(Element(c.xml), nullptr); };
        EXPECT_EQ(std::get<0>(test::FaultOf(load)), c.code);
    }
    EXPECT_THROW(LoadTestElement(Element("<TestElement PlugIn=\"ZRD47500\" TestID=\"1400\"/>"), nullptr),
                 std::runtime_error);
}

TEST_F(ElementBaseTest, AnElementKnowsItsParentAndPlugIn) {
    const auto group = CreateTestElement(kGroupId);
    TestContainerBase base;
    base.Initialize(group, kPlugInId, kGroupId);
    EXPECT_EQ(base.Parent(), group);
    const auto copy = base.Clone();
    EXPECT_EQ(copy->PlugInID(), "ZRD47500");
    EXPECT_EQ(copy->TestID(), kGroupId);
    EXPECT_EQ(group->PlugInID(), "ZRD47500");
    EXPECT_TRUE(group->QuerySetParent(nullptr));
}

TEST_F(ElementBaseTest, ACloneHasConfigurationAndLimitsButNoResultAndNoNumber) {
    const auto element = LoadTestElement(
        Element(Test100(6,
                        "<Filter Evaluate=\"False\"/><ExpectedResult><Standard Name=\"S\" Version=\"1\"/>"
                        "</ExpectedResult><ResultItem><Status>1</Status></ResultItem>",
                        "<MachineKV>81</MachineKV>")),
        nullptr);
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

// ------------------------------------------------------------------------------------------- print

class ElementPrintTest : public XmlTest {
  protected:
    std::shared_ptr<ITestElement> Load(const std::string& xml) {
        return LoadTestElement(Element(xml), nullptr);
    }
    /// An output test with one exposure that failed on its HVL, and a waveform.
    static std::string Output(const std::string& id, const std::string& filter = "",
                              const std::string& configuration = "") {
        return "<TestElement PlugIn=\"ZRD47500\" TestID=\"1200\" ID=\"" + id + "\" Name=\"Output " + id +
               "\">" + filter +
               "<PlugInData "
               "PlugIn=\"ZRD47500\"><DetectorName>1</DetectorName><NumberOfExposures>1</NumberOfExposures>" +
               configuration +
               "</PlugInData><ExpectedResult><Standard Name=\"Site\" Version=\"1\"><Limit Key=\"ER HVL\">"
               "<High Value=\"0.4\"/></Limit></Standard></ExpectedResult>"
               "<ResultItem><Status>2</Status><Comment>A; b|\n\nline 2[¤]override[¤]log</Comment>"
               "<Measurement Key=\"HVL\"><Description>22150::HVL</Description><Value Type=\"5\">0.5</Value>"
               "<Unit>22207::mm Al</Unit><Status>2</Status></Measurement>"
               "<Waveform>0,28,0<PrintWaveform>True</PrintWaveform></Waveform></ResultItem></TestElement>";
    }
    /// Headings, first rows of tables and figures, in order.
    std::string Shape() const {
        std::string shape;
        for (const std::string& call : report.calls) {
            if (call.starts_with("heading ") || call.starts_with("figure ")) shape += call + "\n";
            if (call.starts_with("table ")) {
                const std::size_t row = call.find('\n') + 1;
                shape += call.substr(row, call.find('\n', row) - row) + "\n";
            }
        }
        return shape;
    }

    test::RecordingReport report;
};

const std::string kConfigurationHead = "|{\\i\\b Configuration}|{\\i\\b Value};\n";
const std::string kExposureHead = "|{\\i\\b SID(cm)          }|{\\i\\b mAs          };\n";
const std::string kResultRows =
    "|{\\i\\b Result:}|{\\i\\b }|{\\i\\b Value}|{\\i\\b Unit}|{\\i\\b High limit}|{\\i\\b Low limit}|"
    "{\\i\\b Standard};\n|Exposure 1;\n"
    "|HVL      ||0.5|mm Al|0.4||Site||{{\\fonttbl{\\f0\\fcharset2 Wingdings}}\\f0\\fs18 û};\n";

TEST_F(ElementPrintTest, AnElementPrintsConfigurationResultsWaveformsAndComment) {
    const auto element = Load(Output("1"));
    element->PrintReport(nullptr, nullptr);
    report.options = kReportLimits | kReportWaveforms | kReportComments;
    element->PrintReport(&report, nullptr);
    EXPECT_EQ(Shape(), "heading Output 1 / Fail\n" + kConfigurationHead + kExposureHead + kResultRows +
                           "figure KV Waveform\n;\n|{\\i\\b Comments:};\n");
    EXPECT_EQ(report.calls.back(),
              "table <+560|<+8960;\n|{\\i\\b Comments:};\n|A\\; b\\|;\n|line 2;\n|log;\n");
}

TEST_F(ElementPrintTest, AGroupPrintsItselfAndTheChildrenThatTheFilterLetsThrough) {
    const std::string group = "<TestElement PlugIn=\"ZRD47500\" TestID=\"0\" ID=\"7\" Name=\"Room\">";
    const std::string children =
        Output("1", "<Filter Print=\"False\"/>") + Output("2", "", "<OverridePrint>False</OverridePrint>");
    report.options = kReportLimits;
    Load(group + children + "</TestElement>")->PrintReport(&report, nullptr);
    EXPECT_EQ(Shape(), "heading Room / \nheading Output 2 / Fail\n" + kResultRows);
    report.calls.clear();
    Load(group + "<Filter Print=\"False\"/>" + children + "</TestElement>")->PrintReport(&report, nullptr);
    EXPECT_EQ(report.Calls(), "");
}

TEST_F(ElementPrintTest, AnElementWithoutANameAndAResultPrintsTheTitleOfItsTest) {
    Load(
        "<TestElement PlugIn=\"ZRD47500\" TestID=\"500\" ID=\"1\"><PlugInData "
        "PlugIn=\"ZRD47500\"/></TestElement>")
        ->PrintReport(&report, nullptr);
    EXPECT_TRUE(Shape().starts_with("heading Fluoroscopy Accuracy / \n")) << Shape();
}

}  // namespace
}  // namespace vorex::host_test
