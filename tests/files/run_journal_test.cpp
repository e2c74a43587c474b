#include "files/run_journal.h"

#include "host/host_fixture.h"
#include "support/file_fault.h"

namespace vorex::host_test {
namespace {

class RunJournalTest : public HostTest {
  protected:
    std::filesystem::path Output() const { return folder / "out.xml"; }
    std::string Text() const { return Read("out.xml.journal"); }
    /// The fault of reading a text as a journal; empty when it can be read.
    static std::string FaultOf(const std::string& text) {
        return test::MessageOf([&] { ParseJournal(text, "j"); });
    }
};

JournalHead Head() {
    return {"0.1.0",
            "2026-01-15T09:00:00Z",
            "unit.xml",
            "<a b=\"1\">\n\"\xC3\xA4\"</a>",
            "recording:r",
            "room.json",
            "start,redo 1,next",
            "de",
            true};
}

JournalRecord Record(int32_t exposure) {
    return {3,
            exposure,
            1,
            0,
            "0,80.1,\"x\"",
            "112",
            "2026-01-15T09:00:04Z",
            2,
            1,
            14,
            {{"ExposureDone", 4, {"1"}}, {"VTI_DataReady", 4, {"80.1", "", "OL"}}}};
}

TEST_F(RunJournalTest, ALineBeginsWithAChecksumThatContinuesThatOfTheLineBefore) {
    uint32_t checksum = 0;
    // The published check value of this CRC.
    EXPECT_EQ(JournalLine("123456789", checksum), "cbf43926 123456789\n");
    EXPECT_EQ(checksum, 0xcbf43926U);
    uint32_t whole = 0;
    JournalLine("123456789abc", whole);
    JournalLine("abc", checksum);
    EXPECT_EQ(checksum, whole);
}

TEST_F(RunJournalTest, WhatWasWrittenIsReadAndContinued) {
    auto journal = RunJournal::Create(Output(), Head());
    journal->Append(Record(1));
    journal->Append(Record(2));
    journal.reset();
    JournalContent content;
    journal = RunJournal::Open(Output(), content);
    EXPECT_EQ(content.head, Head());
    EXPECT_EQ(content.records, (std::vector<JournalRecord>{Record(1), Record(2)}));
    EXPECT_FALSE(content.torn);
    journal->Append(Record(3));
    journal.reset();
    RunJournal::Open(Output(), content);
    EXPECT_EQ(content.records.size(), 3U);
}

TEST_F(RunJournalTest, EveryActOfAPersonIsReadAgain) {
    std::vector<JournalRecord> records;
    for (int kind = 0; kind <= static_cast<int>(OperatorAct::Kind::kConfirm); ++kind) {
        JournalRecord record;
        record.element = 3;
        record.polls = 14;
        record.notes = {{"Poll", 7, {"0"}}};
        record.act = OperatorAct{static_cast<OperatorAct::Kind>(kind), 255, 10, "12,5 \"x\""};
        records.push_back(record);
    }
    auto journal = RunJournal::Create(Output(), Head());
    for (const JournalRecord& record : records) journal->Append(record);
    JournalContent content = ParseJournal(Text(), "j");
    EXPECT_EQ(content.records, records);
    EXPECT_TRUE(content.ByHand());
    EXPECT_EQ(JournalSummary(content), "no exposure");
    journal.reset();
    EXPECT_FALSE(std::filesystem::exists(folder / "out.xml.journal")) << "no exposure is lost with it";
}

// Blocks may reach the disk out of order: a last line of the right length can be wrong as well.
TEST_F(RunJournalTest, ALastLineThatIsWrongIsTorn) {
    auto journal = RunJournal::Create(Output(), Head());
    journal->Append(Record(1));
    journal->Append(Record(2));
    std::string wrong = Text();
    wrong[wrong.size() - 5] = '#';
    EXPECT_TRUE(ParseJournal(wrong, "j").torn);
    EXPECT_EQ(ParseJournal(wrong, "j").records.size(), 1U);
}

TEST_F(RunJournalTest, AFileThatIsTooLargeIsNoJournal) {
    Write("out.xml.journal", "");
    std::filesystem::resize_file(folder / "out.xml.journal", (std::uintmax_t{1} << 30U) + 1);
    JournalContent content;
    EXPECT_NE(test::MessageOf([&] { RunJournal::Open(Output(), content); }).find("is larger than 1 GB"),
              std::string::npos);
}

TEST_F(RunJournalTest, WhatIsNoJournalGetsOneClearError) {
    uint32_t checksum = 0;
    const std::string head = JournalLine(
        R"({"vorexJournal":1,"program":"1","started":"t","input":"i","instruments":"r","room":"","operator":"",)"
        R"("language":"en","document":"<x/>","realTime":false})",
        checksum);
    const uint32_t headSum = checksum;
    const auto line = [&](const char* object) {
        uint32_t sum = headSum;
        return head + JournalLine(object, sum);
    };
    const auto alone = [](const char* object) {
        uint32_t sum = 0;
        return JournalLine(object, sum);
    };
    ASSERT_EQ(FaultOf(head), "");
    std::string damaged = line("{}") + "more\n";
    damaged[head.size() + 10] = '?';
    std::string moved = head;
    moved[20] = '?';
    const std::pair<std::string, const char*> cases[] = {
        {"", "j:1: the first line is not whole"},
        {head.substr(0, 40), "j:1: the first line is not whole"},
        {"<VorexSequence/>\n<more/>\n", "j:1: is no journal; expected a journal of an interrupted run"},
        {moved + "more\n", "j:1: is no journal"},
        {damaged, "j:2: the line is damaged: its checksum is wrong"},
        {head + head + "more\n", "j:2: the line is damaged"},  // it does not go on from the first
        {alone("[1]"), "j:1: found [1]; expected an object with \"vorexJournal\""},
        {alone("{\"recording\":1}"), "j:1: found unknown \"recording\" in the first line"},
        {alone("{\"vorexJournal\":2}"), "j:1: found \"vorexJournal\":2; expected version 1"},
        {alone("{\"vorexJournal\":1}"), "j:1: found the first line without \"realTime\""},
        {line("{\"element\":\"1\"}"), "j:2: found \"element\":\"1\"; expected a whole number from 0"},
        {line("{\"element\":-1}"), "j:2: found \"element\":-1; expected a whole number from 0"},
        {line("{\"notes\":[[\"a\",1]]}"), "j:2: found \"notes\":[\"a\",1]; expected [operation, call"},
    };
    for (const auto& [text, expected] : cases) {
        const std::string fault = FaultOf(text);
        EXPECT_TRUE(fault.starts_with(expected)) << "\"" << fault << "\" for " << text;
    }
}

}  // namespace
}  // namespace vorex::host_test
