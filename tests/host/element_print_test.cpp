#include "files/element_document.h"
#include "foundation/vocabulary.h"
#include "host/element_base.h"
#include "host/host_fixture.h"
#include "support/recording_report.h"

namespace vorex::host_test {
namespace {

class ElementPrintTest : public HostTest {
  protected:
    static std::shared_ptr<ITestElement> Load(const std::string& xml) {
        static std::unique_ptr<XmlSource> source;
        source = XmlSource::FromText(xml, "a.xml");
        return LoadTestElement(source->Element(source->Document().first_child()), nullptr);
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
