#include "results/mti_data.h"

#include "support/library_test.h"

namespace vorex {
namespace {

class List : public IMtiList {
  public:
    std::span<const MtiEntry> Entries() const override { return entries; }
    void Add(MtiEntry entry) override { entries.push_back(std::move(entry)); }
    std::vector<MtiEntry> entries;
};

CMtiData2 Record(const std::string& name, const std::string& serial, const std::string& date = "2026-01-15") {
    CMtiData2 record;
    record.Name(name);
    record.SerialNumber(serial);
    record.CalibrationDate(date);
    return record;
}

class Instruments : public test::LibraryTest {
  protected:
    List list;
};

TEST_F(Instruments, ARecordWithoutANameNamesTheDetector) {
    EXPECT_EQ(Record("", "1").Name(), "ZRD 47500WD");
    EXPECT_EQ(Record("mAs meter", "1").Name(), "mAs meter");
    EXPECT_EQ(CMtiData2().SerialNumber(), "");
}

TEST_F(Instruments, ANewInstrumentTakesTheNextNumber) {
    EXPECT_EQ(MergeMti(list, Record("", "4711")), 1);
    EXPECT_EQ(MergeMti(list, Record("mAs meter", "88", "2026-02-01")), 2);
    const std::vector<MtiEntry> expected = {{1, "ZRD47500", "ZRD 47500WD", "4711", "2026-01-15"},
                                            {2, "ZRD47500", "mAs meter", "88", "2026-02-01"}};
    EXPECT_EQ(list.entries, expected);
}

TEST_F(Instruments, AnInstrumentOfTheSameNameAndSerialNumberIsReused) {
    list.entries = {{7, "Other", "A", "1", ""}, {3, "ZRD47500", "A", "2", "2020-01-01"}};
    EXPECT_EQ(MergeMti(list, Record("A", "2")), 3);
    EXPECT_EQ(list.entries.size(), 2U);
    EXPECT_EQ(list.entries[1].calibrationDate, "2020-01-01") << "the entry is kept as it is";
    EXPECT_EQ(MergeMti(list, Record("B", "2")), 8) << "the number after the largest";
    EXPECT_EQ(MergeMti(list, Record("A", "02")), 9) << "serial numbers are texts";
}

TEST_F(Instruments, WithoutASerialNumberAboveZeroNothingIsEntered) {
    for (const char* serial : {"", "0", "-5", "SN 12", "none"})
        EXPECT_EQ(MergeMti(list, Record("A", serial)), 0);
    EXPECT_TRUE(list.entries.empty());
    EXPECT_EQ(MergeMti(list, Record("A", "12-B")), 1) << "the leading number counts";
}

}  // namespace
}  // namespace vorex
