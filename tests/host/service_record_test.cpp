#include "host/service_record.h"

#include "host/host_fixture.h"

namespace vorex::host_test {
namespace {

using ServiceRecordTest = XmlTest;

TEST_F(ServiceRecordTest, AServiceRecordNeedsACode) {
    ServiceRecord record;
    EXPECT_EQ(record.Save(document), nullptr);
    record.Initialize("F", "/kVp Avg/HVL");
    EXPECT_EQ(Xml(record.Save(document)), "<ServiceRecord Code=\"F\">/kVp Avg/HVL</ServiceRecord>");
    record.Load(Element("<ServiceRecord Code=\"NA\">/HVL</ServiceRecord>"));
    EXPECT_EQ(record.Code(), "NA");
    EXPECT_EQ(record.Text(), "/HVL");
}

}  // namespace
}  // namespace vorex::host_test
