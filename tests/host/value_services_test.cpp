#include "files/element_document.h"
#include "files/element_output.h"
#include "foundation/vocabulary.h"
#include "host/host_fixture.h"
#include "host/measurement_codec.h"
#include "host/service_record.h"
#include "host/test_guide_config.h"

namespace vorex::host_test {
namespace {

/// The small objects that write an element of their own.
class ValueServicesTest : public HostTest {
  protected:
    std::string Xml(const std::shared_ptr<IXmlElement>& element) {
        document->Top().AddChild(element);
        std::string text = document->Text();
        document = std::make_shared<OutputDocument>();
        text.erase(0, text.find('\n') + 1);
        text.pop_back();
        return text;
    }
    std::shared_ptr<IXmlElement> Element(const std::string& xml) {
        source = XmlSource::FromText(xml, "a.xml");
        return source->Element(source->Document().first_child());
    }

    std::shared_ptr<OutputDocument> document = std::make_shared<OutputDocument>();
    std::unique_ptr<XmlSource> source;
    MeasurementCodec codec;
};

TEST_F(ValueServicesTest, ValuesAreWrittenWithTheirTypeAndAPoint) {
    HostServices services = Services();
    services.decimalSign = ',';
    InstallServices(services);
    EXPECT_EQ(Xml(codec.WriteValue(document, 80.1, 1)), "<Value Type=\"1\">80.1</Value>");
    EXPECT_EQ(Xml(codec.WriteValue(document, 0.1 + 0.2, 1)), "<Value Type=\"1\">0.3</Value>");
    EXPECT_EQ(Xml(codec.WriteValue(document, std::string("80.1*"), 5)), "<Value Type=\"5\">80.1*</Value>");
    EXPECT_EQ(Xml(codec.WriteValue(document, {}, 5)), "<Value Type=\"5\" />");
    EXPECT_EQ(ValueFormatter().ToText(1.5F), "1.5");
}

TEST_F(ValueServicesTest, AValueOfTypeOneReadsAsANumber) {
    TaggedValue value;
    int32_t type = 0;
    codec.ReadValue(*Element("<Value Type=\"1\">80.10</Value>"), value, type);
    EXPECT_EQ(type, 1);
    EXPECT_EQ(value, TaggedValue(80.1));
    codec.ReadValue(*Element("<Value Type=\"5\">80.10</Value>"), value, type);
    EXPECT_EQ(type, 5);
    EXPECT_EQ(value, TaggedValue(std::string("80.10")));
    codec.ReadValue(*Element("<Value>x</Value>"), value, type);
    EXPECT_EQ(type, 0);
}

TEST_F(ValueServicesTest, AStatusHasItsCompanionOnlyWhenThereIsOne) {
    EXPECT_EQ(Xml(codec.WriteStatus(document, 2, 0)), "<Status>2</Status>");
    EXPECT_EQ(Xml(codec.WriteStatus(document, 1, -7)), "<Status Extra=\"-7\">1</Status>");
    int32_t status = 0;
    int32_t extra = 5;
    codec.ReadStatus(*Element("<Status>3</Status>"), status, extra);
    EXPECT_EQ(status, 3);
    EXPECT_EQ(extra, 0);
    codec.ReadStatus(*Element("<Status Extra=\"4\">1</Status>"), status, extra);
    EXPECT_EQ(extra, 4);
}

TEST_F(ValueServicesTest, AServiceRecordNeedsACode) {
    ServiceRecord record;
    EXPECT_EQ(record.Save(document), nullptr);
    record.Initialize("F", "/kVp Avg/HVL");
    EXPECT_EQ(Xml(record.Save(document)), "<ServiceRecord Code=\"F\">/kVp Avg/HVL</ServiceRecord>");
    record.Load(Element("<ServiceRecord Code=\"NA\">/HVL</ServiceRecord>"));
    EXPECT_EQ(record.Code(), "NA");
    EXPECT_EQ(record.Text(), "/HVL");
}

TEST_F(ValueServicesTest, TheGuideHasBothButtonsUntilToldOtherwise) {
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
