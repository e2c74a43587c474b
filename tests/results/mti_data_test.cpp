#include "results/mti_data.h"

#include "host/execution_pipe.h"
#include "support/library_test.h"

namespace vorex {
namespace {

CMtiData2 Record(const std::string& name, const std::string& serial) {
    CMtiData2 record;
    record.Name(name);
    record.SerialNumber(serial);
    record.CalibrationDate("2026-01-15");
    return record;
}

class Instruments : public test::LibraryTest {
  protected:
    MtiList list;

    std::vector<MtiEntry> Entries() const { return {list.Entries().begin(), list.Entries().end()}; }
};

TEST_F(Instruments, AnInstrumentOfTheSameNameAndSerialNumberIsReused) {
    list.Add({7, "Other", "A", "1", ""});
    list.Add({3, "ZRD47500", "A", "2", "2020-01-01"});
    EXPECT_EQ(MergeMti(list, Record("A", "2")), 3);
    ASSERT_EQ(Entries().size(), 2U);
    EXPECT_EQ(Entries()[1].calibrationDate, "2020-01-01") << "the entry is kept as it is";
    EXPECT_EQ(MergeMti(list, Record("B", "2")), 8) << "the number after the largest";
    EXPECT_EQ(Entries()[2], (MtiEntry{8, "ZRD47500", "B", "2", "2026-01-15"}));
    EXPECT_EQ(MergeMti(list, Record("A", "02")), 9) << "serial numbers are texts";
}

TEST_F(Instruments, WithoutASerialNumberAboveZeroNothingIsEntered) {
    for (const char* serial : {"", "0", "-5", "SN 12", "none"})
        EXPECT_EQ(MergeMti(list, Record("A", serial)), 0);
    EXPECT_TRUE(Entries().empty());
    EXPECT_EQ(MergeMti(list, Record("A", "12-B")), 1) << "the leading number counts";
}

}  // namespace
}  // namespace vorex
