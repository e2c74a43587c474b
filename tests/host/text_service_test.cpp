#include "host/text_service.h"

#include "foundation/text_keys.h"
#include "host/host_fixture.h"
#include "support/file_fault.h"

namespace vorex::host_test {
namespace {

class TextServiceTest : public HostTest {
  protected:
    std::string FaultOf(const std::string& code) const {
        return test::MessageOf(
            [&] { TextService::ForLanguage(code, std::vector<std::filesystem::path>{folder}); });
    }
};

TEST_F(TextServiceTest, AKeyAsAWholeIsLookedUpAndTheDefaultIsTheRest) {
    Write("de.json",
          R"({"22237::Pass": "Bestanden", "22340::1. Set Machine kVp to %%1 KV.": "1. Stelle %%1 kV ein."})");
    const auto german =
        TextService::ForLanguage("de", std::vector<std::filesystem::path>{folder / "none", folder});
    const std::vector<std::string> kv = {"80"};
    EXPECT_EQ(german->Translate("ZRD47500", text::kPass, {}), "Bestanden");
    EXPECT_EQ(german->Translate("ZRD47500", text::kFail, {}), "Fail");
    EXPECT_EQ(german->Translate("ZRD47500", "22237::pass", {}), "pass") << "another key with the same number";
    EXPECT_EQ(german->Translate("ZRD47500", "22340::1. Set Machine kVp to %%1 KV.", kv),
              "1. Stelle 80 kV ein.");
    EXPECT_EQ(TextService::ForLanguage("en", {})->Translate("", "22340::Set %%1", kv), "Set 80");
}

TEST_F(TextServiceTest, AnUnknownLanguageIsRefusedWithTheKnownOnes) {
    Write("de.json", "{}");
    Write("fr.json", "{}");
    Write("notes.txt", "");
    EXPECT_EQ(FaultOf("xx"), "there is no language \"xx\"; expected one of de, en, fr");
    EXPECT_EQ(FaultOf("../de"), "there is no language \"../de\"; expected one of de, en, fr");
    Write("pt-BR_2.json", "{}");
    EXPECT_EQ(FaultOf("pt-BR_2"), "");
    std::filesystem::remove(folder / "pt-BR_2.json");
    EXPECT_EQ(FaultOf(""), "there is no language \"\"; expected one of de, en, fr");
}

TEST_F(TextServiceTest, ATableThatIsBrokenIsNamed) {
    for (const std::string text : {"{", "[]", R"({"22237::Pass": 1})"}) {
        Write("de.json", text);
        EXPECT_NE(FaultOf("de").find("de.json"), std::string::npos) << text;
    }
}

}  // namespace
}  // namespace vorex::host_test
