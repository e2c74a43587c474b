#include "files/json_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "files/run_journal.h"
#include "files/standard_file.h"
#include "files/survey_exchange.h"
#include "host/host_fixture.h"
#include "host/text_service.h"
#include "instruments/recording.h"
#include "instruments/room.h"
#include "support/file_fault.h"

namespace vorex {
namespace {

using testing::AllOf;
using testing::HasSubstr;

using test::MessageOf;

TEST(JsonReader, AValueKnowsItsLineItsNameAndItsPlaceAmongTheOthers) {
    const JsonValue file =
        JsonReader("f").Parse("{\n\"z\": 12\n, \"a\":\n [true,\n -0.50,\"\\n\"]}", "a file");
    ASSERT_EQ(file.items.size(), 2U);
    EXPECT_EQ(file.items[0].name, "z") << "in the order of the file";
    EXPECT_EQ(file.items[0].line, 2) << "the line break after a number belongs to the next line";
    const JsonValue& list = *file.Find("a");
    EXPECT_EQ(list.line, 4);
    ASSERT_EQ(list.items.size(), 3U);
    EXPECT_EQ(list.items[0].text, "true");
    EXPECT_EQ(list.items[1].line, 5);
    EXPECT_EQ(list.items[1].number, -0.5);
    EXPECT_EQ(list.items[2].name, "a");
    EXPECT_EQ(Shown(list), R"([true,-0.5,"\n"])");
    EXPECT_EQ(file.Find("b"), nullptr);
}

TEST(JsonReader, WhatIsNotStrictJsonIsNamedWithItsLine) {
    const std::pair<std::string, const char*> cases[] = {
        {"{\"a\":1,\n\"a\":2}", "f:2: found \"a\" twice; expected each name once in an object"},
        {"{}\n{}", "f:2: found broken JSON at column 1 of \"{}\"; expected a file"},
        {"{\"a\":\n1e999}", "f:2: found a number that is out of range"},
        {"\n\n[[[[[[[[[", "f:3: found brackets nested more than 8 deep"},
        {"[1,2,3,4,5,6,7,8,\n9,10]", "f:2: found more than 10 values"},
        {" \n", "f: found an empty file"},
        {std::string("{}\0", 3), "f: found a zero byte"},
    };
    for (const auto& [text, fault] : cases)
        EXPECT_THAT(MessageOf([&, &text = text] { JsonReader("f").Parse(text, "a file", 10); }),
                    testing::StartsWith(fault));
}

class JsonFilesTest : public host_test::HostTest {};

/// Each kind of file is read by the same rules.
TEST_F(JsonFilesTest, EachFileRefusesWhatOccursTwiceIsUnknownOrOfAnotherTypeAndWhatFollowsItsEnd) {
    struct FileKind {
        const char* name;
        const char* sound;  // without its closing bracket
        const char* member;
        bool anyMember;  // its members are data, and have no table
        void (*read)(const std::string& text, const std::filesystem::path& folder);
    };
    const FileKind kinds[] = {
        {"recording", R"({"recording":1,"kind":1)", "kind", false,
         [](const std::string& text, const auto&) { ParseRecording(text, "f"); }},
        {"room", R"({"room":1,"link":{})", "link", false,
         [](const std::string& text, const auto&) { ParseRoom(text, "f"); }},
        {"standard",
         R"({"standard":1,"name":"S","version":"1","limits":[{"tests":[100],"key":"K","high":{"value":1},)"
         R"("authority":"A","clause":"1"}])",
         "name", false,
         [](const std::string& text, const auto&) {
             ParseStandard(text, "f", [](int32_t, const StandardLimit&) { return std::string(); });
         }},
        {"survey", R"({"set":{},"answers":{})", "set", false,
         [](const std::string& text, const auto&) { ParseSurveyExchange(text, "f"); }},
        {"language", R"({"22237::Pass":"Gut")", "22237::Pass", true,
         [](const std::string& text, const std::filesystem::path& place) {
             std::ofstream(place / "xx.json") << text;
             TextService::ForLanguage("xx", std::vector<std::filesystem::path>{place});
         }},
        {"journal",
         R"({"vorexJournal":1,"program":"1","started":"","input":"","instruments":"","room":"","operator":"",)"
         R"("language":"","document":"","realTime":false)",
         "program", false,
         [](const std::string& text, const auto&) {
             uint32_t checksum = 0;
             ParseJournal(JournalLine(text, checksum), "f");
         }},
    };
    for (const FileKind& kind : kinds) {
        const auto fault = [&](const std::string& rest) {
            return MessageOf([&] { kind.read(kind.sound + rest, folder); });
        };
        const std::string member = "\"" + std::string(kind.member) + "\"";
        EXPECT_EQ(fault("}"), "") << kind.name;
        EXPECT_THAT(fault("," + member + ":1}"), HasSubstr("found " + member + " twice")) << kind.name;
        EXPECT_THAT(fault("} x"), HasSubstr("found broken JSON at column")) << kind.name;
        EXPECT_THAT(fault(",\"other\":1}"),
                    AllOf(HasSubstr(kind.anyMember ? "found \"other\":1" : "unknown \"other\""),
                          HasSubstr("; expected ")))
            << kind.name;
    }
}

}  // namespace
}  // namespace vorex
