#include "foundation/utilities.h"

#include "foundation/number_text.h"
#include "foundation/registration.h"
#include "support/fake_detector.h"
#include "support/fake_element.h"
#include "support/library_test.h"
#include "support/limits.h"

namespace vorex {
namespace {

class Utilities : public test::LibraryTest {
  protected:
    void SetUp() override {
        HostServices services;
        services.text = texts;
        services.settings = settings;
        Install(services);
    }
    void HostVersion(const std::string& version) {
        settings->values[{std::string(setting::kUninstallPath), "DisplayVersion"}] = version;
    }

    std::shared_ptr<test::FakeTexts> texts = std::make_shared<test::FakeTexts>();
    std::shared_ptr<test::FakeSettings> settings = std::make_shared<test::FakeSettings>();
};

TEST_F(Utilities, AKeyShowsItsDefaultTextWithoutALanguage) {
    EXPECT_EQ(DefaultText("22338:: %%1", {}), " %%1");
    EXPECT_EQ(DefaultText("plain", {}), "plain");
    EXPECT_EQ(DefaultText("1::a::b", {}), "a::b");
    EXPECT_EQ(DefaultText("", {}), "");
    InstallServices({});
    EXPECT_EQ(Translate("22550::Calculted HVL"), "Calculted HVL");
    EXPECT_EQ(Translate("9::%%2 before %%1", {"one", "two"}), "two before one");
}

/// A control with two captions.
class Labels : public ICaptions {
  public:
    void ForEachCaption(const std::function<void(std::string&)>& function) override {
        for (std::string& caption : captions) function(caption);
    }
    std::vector<std::string> captions = {"22237::Pass", "22238::Fail"};
};

TEST_F(Utilities, TranslatesEveryCaptionOfAControl) {
    texts->words["22237::Pass"] = "Bestanden";
    Labels german;
    TranslateControl(german);
    EXPECT_EQ(german.captions, (std::vector<std::string>{"Bestanden", "Fail"}));
    InstallServices({});
    Labels english;
    TranslateControl(english);
    EXPECT_EQ(english.captions, (std::vector<std::string>{"Pass", "Fail"})) << "without a text service";
}

TEST_F(Utilities, AStatusHasAWordUnlessNothingWasTested) {
    EXPECT_EQ(StatusText(kNotTested), "");
    EXPECT_EQ(StatusText(kPassed), "Pass");
    EXPECT_EQ(StatusText(kFailed), "Fail");
    EXPECT_EQ(StatusText(kNotApplicable), "NA");
    EXPECT_EQ(StatusText(7), "");
}

TEST_F(Utilities, OnlyTheTwoRangeMarksAreNoReading) {
    for (const char* mark : {"OL", "ol", "Ol", "UL", "ul"}) EXPECT_FALSE(IsValidReading(mark)) << mark;
    for (const char* reading : {"", "80.1", "-1", "0", "-", "OLX", " OL", "Pass"})
        EXPECT_TRUE(IsValidReading(reading)) << reading;
    texts->words["22420::OL"] = "----";
    texts->words["22421::UL"] = "Unten";
    EXPECT_FALSE(IsValidReading("----"));
    EXPECT_FALSE(IsValidReading("UNTEN"));
    EXPECT_TRUE(IsValidReading("OL")) << "only the words of the present language count";
}

TEST_F(Utilities, AComposedUnitIsTheTextsOfItsParts) {
    EXPECT_EQ(DosimeterRateUnitKey(0, 3), "25114::R/25119::/Pulse");
    EXPECT_EQ(DosimeterRateUnitKey(kDoseInCoulomb, 0), "25120::A");
    texts->words["25114::R"] = "Rö";
    texts->words["25116::/Sec"] = "/s";
    const std::pair<const char*, const char*> cases[] = {
        {"25114::R/25116::/Sec", "Rö/s"},
        {"25114::R", "Rö"},
        {"R/Sec", "R/Sec"},  // as older versions saved it
        {"22243::mR/sec", "mR/sec"},
        {"22243::mR/2 sec", "mR/2 sec"},
        {"", ""},
    };
    for (const auto& [unit, words] : cases) EXPECT_EQ(UnitText(unit), words);
    EXPECT_EQ(DefaultUnitText("25114::R/25116::/Sec"), "R/Sec");
}

TEST_F(Utilities, AStoredMessageIsShownInTheLanguageOfItsReader) {
    texts->words[std::string(text::kReasonLinkLost)] = "Verbindung verloren";
    texts->words[std::string(text::kReasonInRedo)] = "Wiederholung %%1: %%2";
    const std::string redo = StoredMessage(text::kReasonInRedo, {"2", std::string(text::kReasonLinkLost)});
    EXPECT_EQ(redo, "31487::redo of exposure %%1: %%2|2|31480::the link to the instruments was lost");
    EXPECT_EQ(MessageText(redo), "Wiederholung 2: Verbindung verloren");
    EXPECT_EQ(DefaultMessageText(redo), "redo of exposure 2: the link to the instruments was lost");
    EXPECT_EQ(MessageText(StoredMessage(text::kReasonInRedo, {"2", "a|b"})), "Wiederholung 2: a|b");
    // As older versions saved it, and what instruments said.
    for (const char* text : {"redo of exposure 2: lost", "", "12: a fault", "Poll failed: 3::4"})
        EXPECT_EQ(MessageText(text), text);
}

TEST_F(Utilities, ACommentHoldsOneMarkerBetweenWordsAndLog) {
    EXPECT_EQ(CommentWords("words"), "words");
    EXPECT_EQ(CommentLog("words"), "");
    const std::string once = AppendComment("words", "first\n");
    EXPECT_EQ(once, "words[¤]override[¤]first\n");
    const std::string twice = AppendComment(once, "second\n");
    EXPECT_EQ(CommentWords(twice), "words");
    EXPECT_EQ(CommentLog(twice), "first\nsecond\n");
    EXPECT_EQ(AppendComment("", "first"), "[¤]override[¤]first");
}

TEST_F(Utilities, TimeOutsAreMinutesWithADefaultForZeroAndForWords) {
    EXPECT_EQ(SleepTimeOut(), 300000);
    EXPECT_EQ(ShutdownTimeOut(), 1200000);
    settings->Set("ShutdownTimeout", std::string("2"));
    EXPECT_EQ(ShutdownTimeOut(), 120000);
    EXPECT_EQ(SleepTimeOut(), 300000) << "the other value is still missing";
    for (const char* nothing : {"0", "", "soon", "5 minutes"}) {
        settings->Set("SleepTimeOut", std::string(nothing));
        EXPECT_EQ(SleepTimeOut(), 300000) << nothing;
    }
    settings->Set("SleepTimeOut", 7.0);
    EXPECT_EQ(SleepTimeOut(), 420000) << "read anew, and as a number too";
    settings->Set("SleepTimeOut", std::string("2000000000"));
    EXPECT_EQ(SleepTimeOut(), 2147483647);
    InstallServices({});
    EXPECT_EQ(SleepTimeOut(), 300000);
}

TEST_F(Utilities, TheExposureCaptionHasNineCharactersForOneVersionOfTheHost) {
    const std::tuple<const char*, const char*, const char*> kRows[] = {
        {"2.7.0", "Exposure ", "Exposure "},       {"2.7.0", "Exposures ", "Exposures"},
        {"2.7.0", "Shot ", "    Shot "},           {"2.7.0", "", "         "},
        {"2.7.0", "Añadiré éx", "Añadiré é"},      {"2.7.0", "Añadiré xé", "Añadiré x"},
        {"2.7", "Exposures ", "23183::Exposure "}, {"2.7.0.1", "Exposures ", "23183::Exposure "},
        {"", "Exposures ", "23183::Exposure "}};
    for (const auto& [version, translation, caption] : kRows) {
        texts->words["23183::Exposure "] = translation;
        HostVersion(version);
        FixExposureCaption();
        EXPECT_EQ(Services().exposureCaption, caption) << version << " " << translation;
    }
}

TEST_F(Utilities, OnlyThisLibrarysPlugInIsKept) {
    test::FakeElement repro, accuracy;
    repro.fakeTestId = 100;
    accuracy.fakeTestId = 200;
    std::string name = "Known";
    std::string version = "1";
    GGlobals entry;
    entry.SetPlugInPointer(nullptr);
    entry.SetPlugInPointer(std::make_shared<test::FakePlugIn>("zrd47500"));
    EXPECT_EQ(LoadStandard(repro, name, version), nullptr);
    entry.SetPlugInPointer(std::make_shared<test::FakePlugIn>("ZRD47500"));
    entry.SetPlugInPointer(std::make_shared<test::FakePlugIn>("Other"));
    const auto standard = LoadStandard(repro, name, version);
    ASSERT_TRUE(standard);
    EXPECT_EQ(standard->Name(), "Known");
    EXPECT_EQ(LoadStandard(accuracy, name, version), nullptr);
}

TEST_F(Utilities, RegistrationFixesTheCaptionAndIsUndoneOnce) {
    const auto room = std::make_shared<test::FakeInstruments>();
    HostServices services;
    services.settings = settings;
    services.createDetectorLink = [&] { return std::make_shared<test::FakeLink>(room); };
    InstallServices(services);
    HostVersion("2.7.0");
    CRegisterDll registrar;
    registrar.CloseApp();
    EXPECT_TRUE(room->calls.empty());
    registrar.RegisterApp();
    EXPECT_EQ(Services().exposureCaption, "Exposure ");
    registrar.CloseApp();
    registrar.CloseApp();
    EXPECT_EQ(room->calls, (std::vector<std::string>{"Register", "Unregister"}));
}

}  // namespace
}  // namespace vorex
