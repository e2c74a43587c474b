#include "host/measurement_codec.h"

#include "host/host_fixture.h"

namespace vorex::host_test {
namespace {

class MeasurementCodecTest : public XmlTest {
  protected:
    MeasurementCodec codec;
};

TEST_F(MeasurementCodecTest, ValuesAreWrittenWithTheirTypeAndAPoint) {
    HostServices services = Services();
    services.decimalSign = ',';
    InstallServices(services);
    EXPECT_EQ(Xml(codec.WriteValue(document, 80.1, 1)), "<Value Type=\"1\">80.1</Value>");
    EXPECT_EQ(Xml(codec.WriteValue(document, 0.1 + 0.2, 1)), "<Value Type=\"1\">0.3</Value>");
    EXPECT_EQ(Xml(codec.WriteValue(document, std::string("80.1*"), 5)), "<Value Type=\"5\">80.1*</Value>");
    EXPECT_EQ(Xml(codec.WriteValue(document, {}, 5)), "<Value Type=\"5\" />");
    EXPECT_EQ(ValueFormatter().ToText(1.5F), "1.5");
}

TEST_F(MeasurementCodecTest, AValueOfTypeOneReadsAsANumber) {
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

TEST_F(MeasurementCodecTest, AStatusHasItsCompanionOnlyWhenThereIsOne) {
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

}  // namespace
}  // namespace vorex::host_test
