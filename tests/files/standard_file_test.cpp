#include "files/standard_file.h"

#include "files/standards_library.h"
#include "host/host_fixture.h"
#include "support/file_fault.h"

namespace vorex {
namespace {

std::string NoFault(int32_t /*testId*/, const StandardLimit& /*limit*/) {
    return {};
}

/// A standard with one limit, whose members follow those that each has.
std::string OneLimit(const std::string& members, const std::string& tests = "[100]") {
    return R"({"standard":1,"name":"Site","version":"1","limits":[{"tests":)" + tests +
           R"(,"key":"ER HVL","authority":"A","clause":"1.a")" + members + "}]}";
}

TEST(StandardFileTest, ReadsSidesSourcesAndNumbersByVoltage) {
    const StandardFile file =
        ParseStandard(OneLimit(R"(,"unit":"mm Al","low":{"byVoltage":[[60,1.3],[70,1.5]]},)"
                               R"("high":{"value":-4.5,"expression":"X+Y"},"readings":"R","note":"N")",
                               "[100,300]"),
                      "site.json", NoFault);
    EXPECT_EQ(file.name, "Site");
    EXPECT_EQ(file.version, "1");
    ASSERT_EQ(file.limits.size(), 1U);
    const StandardLimit& limit = file.limits[0];
    EXPECT_EQ(limit.tests, (std::vector<int32_t>{100, 300}));
    EXPECT_EQ(limit.unit, "mm Al");
    ASSERT_EQ(limit.low.byVoltage.size(), 2U);
    EXPECT_EQ(limit.low.byVoltage[1].kv, 70);
    EXPECT_EQ(limit.low.byVoltage[1].value, 1.5);
    EXPECT_EQ(limit.low.expression, "Y");
    EXPECT_EQ(limit.high.value, -4.5);
    EXPECT_EQ(limit.high.expression, "X+Y");
    EXPECT_EQ(limit.clause, "1.a");
    EXPECT_TRUE(file.HasTest(300));
    EXPECT_FALSE(file.HasTest(200));
}

TEST(StandardFileTest, AFaultIsNamedWithItsPlaceAndWhatWasExpected) {
    const std::string high = R"(,"high":{"value":1})";
    const std::string frame = R"({"standard":1,"name":"S","version":"1","limits":[]})";
    struct Case {
        const char* name;
        std::string text;
        std::vector<std::string> message;
    };
    const Case cases[] = {
        {"empty", "", {"an empty file"}},
        {"a list", "[]", {"[]", "object"}},
        {"other version", R"({"standard":2})", {"\"standard\":2", "version 1"}},
        {"no limits", frame, {"limits", "not empty"}},
        {"no name", R"({"standard":1,"version":"1"})", {"\"name\""}},
        {"colon in the name", R"({"standard":1,"name":"A:B"})", {"A:B", "without"}},
        {"unknown member of a limit", OneLimit(high + R"(,"max":1)"), {"limit 1", "ER HVL", "max"}},
        {"unknown member of a side", OneLimit(R"(,"high":{"val":1})"), {"limit 1", "high", "val"}},
        {"no side", OneLimit(""), {"limit 1", "no side"}},
        {"a word as number", OneLimit(R"(,"high":{"value":"1"})"), {"limit 1", "high", "number"}},
        {"null", OneLimit(R"(,"high":{"value":null})"), {"null", "number"}},
        {"too large for a single", OneLimit(R"(,"high":{"value":1e39})"), {"number"}},
        {"unknown expression", OneLimit(R"(,"high":{"value":1,"expression":"Z"})"), {"\"Z\"", "X+Y"}},
        {"value and table", OneLimit(R"(,"low":{"value":1,"byVoltage":[[1,1]]})"), {"either"}},
        {"falling voltages", OneLimit(R"(,"low":{"byVoltage":[[70,1],[60,1]]})"), {"rise"}},
        {"one number in a point", OneLimit(R"(,"low":{"byVoltage":[[70]]})"), {"[kV, number]"}},
        {"low above high", OneLimit(R"(,"low":{"value":2},"high":{"value":1})"), {"\"low\" is above"}},
        {"unknown test", OneLimit(high, "[400]"), {"400", "1200"}},
        {"a word as test", OneLimit(high, "[\"100\"]"), {"100", "1200"}},
        {"no test", OneLimit(high, "[]"), {"tests", "not empty"}},
        {"test twice", OneLimit(high, "[100,100]"), {"100", "once"}},
        {"other readings", OneLimit(high + R"(,"readings":"rad")"), {"rad", "\"Gy\""}},
        {"control character", OneLimit(high + ",\"note\":\"a\\u001b[2J\""), {"note", "control"}},
    };
    for (const Case& c : cases) {
        const std::string message = test::MessageOf([&] { ParseStandard(c.text, "site.json", NoFault); });
        EXPECT_TRUE(message.starts_with("site.json")) << c.name << ": " << message;
        for (const std::string& part : c.message)
            EXPECT_NE(message.find(part), std::string::npos) << c.name << ": " << message;
    }
}

TEST(StandardFileTest, OneKeyOfATestHasOneLimitInAUnit) {
    const std::string limit = R"({"tests":[700],"key":"K","high":{"value":1},"authority":"A","clause":"1")";
    const auto file = [&](const std::string& unit) {
        return R"({"standard":1,"name":"S","version":"1","limits":[)" + limit + R"(,"unit":"R/min"},)" +
               limit + R"(,"unit":")" + unit + "\"}]}";
    };
    EXPECT_EQ(ParseStandard(file("mGy/min"), "s.json", NoFault).limits.size(), 2U);
    EXPECT_THROW(ParseStandard(file("R/min"), "s.json", NoFault), FileError);
}

TEST(StandardFileTest, WhatTheCheckFindsNamesTheTest) {
    const LimitCheck check = [](int32_t test, const StandardLimit&) {
        return test == 300 ? "no such key" : "";
    };
    const std::string message = test::MessageOf(
        [&] { ParseStandard(OneLimit(R"(,"high":{"value":1})", "[100,300]"), "site.json", check); });
    EXPECT_NE(message.find("test 300: no such key"), std::string::npos) << message;
}

class StandardsLibraryTest : public host_test::HostTest {
  protected:
    StandardsLibrary Open() {
        faults.clear();
        return {std::vector{folder}, NoFault, [this](const std::string& fault) { faults.push_back(fault); }};
    }
    std::vector<std::string> faults;
};

TEST_F(StandardsLibraryTest, ABadFileAndASecondOneOfANameAreSkippedAndNamed) {
    Write("a.json", OneLimit(R"(,"high":{"value":1})"));
    Write("b.json", "{");
    Write("c.json", OneLimit(R"(,"high":{"value":2})"));
    Write("notes.txt", "not a standard");
    std::filesystem::create_directory(folder / "d.json");
    const StandardsLibrary library = Open();
    ASSERT_EQ(library.Standards().size(), 1U);
    EXPECT_EQ(library.Find("Site", "1")->limits[0].high.value, 1);
    EXPECT_EQ(library.Find("Site", "2"), nullptr);
    ASSERT_EQ(faults.size(), 3U);
    EXPECT_NE(faults[0].find("b.json"), std::string::npos) << faults[0];
    EXPECT_NE(faults[1].find("c.json"), std::string::npos) << faults[1];
    EXPECT_NE(faults[1].find("a.json already"), std::string::npos) << faults[1];
    EXPECT_NE(faults[2].find("d.json: found a folder"), std::string::npos) << faults[2];
}

TEST_F(StandardsLibraryTest, HandsOutTheLimitsOfATestAndNothingForOthers) {
    Write("a.json", OneLimit(R"(,"unit":"mm Al","low":{"value":2.9},"high":{"value":5,"expression":"X+Y"})"));
    StandardsLibrary library = Open();
    std::string name = "Site";
    std::string version = "1";
    const auto standard = library.LoadStandard(100, name, version);
    ASSERT_TRUE(standard);
    ASSERT_EQ(standard->Results().size(), 1U);
    const IExpectedResult& limit = *standard->Results()[0];
    EXPECT_EQ(limit.Key(), "ER HVL");
    EXPECT_EQ(limit.Unit(), "mm Al");
    EXPECT_FLOAT_EQ(limit.Value(kLowSide), 2.9F);
    EXPECT_EQ(limit.Expression(kHighSide), "X+Y");
    EXPECT_FALSE(library.LoadStandard(200, name, version));
    version = "2";
    EXPECT_FALSE(library.LoadStandard(100, name, version));
}

TEST_F(StandardsLibraryTest, WithoutAnElementALimitByVoltageStaysOut) {
    Write("a.json", OneLimit(R"(,"low":{"byVoltage":[[70,1.5]]})"));
    StandardsLibrary library = Open();
    std::string name = "Site";
    std::string version = "1";
    EXPECT_TRUE(library.LoadStandard(100, name, version)->Results().empty());
    const auto fitted = StandardsLibrary::Build(*library.Find("Site", "1"), 100, [](StandardLimit limit) {
        limit.low = {1.5, {}, "Y"};
        return std::vector{limit, limit};
    });
    ASSERT_EQ(fitted->Results().size(), 1U) << "the first of a key";
    EXPECT_EQ(fitted->Results()[0]->Value(kLowSide), 1.5F);
    EXPECT_TRUE(library.LoadStandard(100, name, version)->Results().empty()) << "the fit is not kept";
}

TEST_F(StandardsLibraryTest, TheUsersFolderIsNamedOrNextToTheSettings) {
    const host_test::ScopedEnvironment settings("VOREX_SETTINGS", (folder / "settings.ini").string());
    const host_test::ScopedEnvironment none("VOREX_STANDARDS", "");
    EXPECT_EQ(UserStandardsFolder(), std::filesystem::path());
    std::filesystem::create_directory(folder / "standards");
    EXPECT_EQ(UserStandardsFolder(), folder / "standards");
    const host_test::ScopedEnvironment named("VOREX_STANDARDS", "/elsewhere");
    EXPECT_EQ(UserStandardsFolder(), "/elsewhere");
}

}  // namespace
}  // namespace vorex
