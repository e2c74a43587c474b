#include "host/settings_registry.h"

#include <gmock/gmock.h>

#include "foundation/file_error.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "host/host_fixture.h"

namespace vorex::host_test {
namespace {

using SettingsRegistryTest = HostTest;

TEST_F(SettingsRegistryTest, ValuesAreFoundByPathAndNameWhateverTheCase) {
    Write("settings.ini",
          "; of this machine\n[Software\\Brenlo\\vorex\\ZRD47500]\r\n  SleepTimeOut = 10 \nDelay=\n\n"
          "[SOFTWARE\\Brenlo\\vorex]\nDecimalSign=,\n");
    const SettingsRegistry settings(folder / "settings.ini");
    EXPECT_EQ(settings.ValueCount(setting::kPlugInPath), 2);
    EXPECT_EQ(settings.ReadValue(setting::kPlugInPath, "sleeptimeout"), TaggedValue(std::string("10")));
    EXPECT_EQ(settings.ReadValue(setting::kPlugInPath, "Delay"), TaggedValue(std::string()));
    EXPECT_EQ(settings.ReadValue(setting::kPlugInPath, "None"), TaggedValue());
    EXPECT_EQ(settings.ValueCount(setting::kUninstallPath), 0);
    EXPECT_EQ(settings.DecimalSign(), ',');
    const SettingsRegistry missing(folder / "none.ini");
    EXPECT_EQ(missing.ValueCount(setting::kPlugInPath), 0);
    EXPECT_EQ(missing.DecimalSign(), '.');
}

TEST_F(SettingsRegistryTest, BrokenLinesAreSkippedAndReported) {
    Write("settings.ini", "Delay=1\n[Software\\Brenlo\\vorex\\ZRD47500]\nwhat\n=3\nDelay=2\n[open\n");
    std::vector<std::string> words;
    const SettingsRegistry settings(folder / "settings.ini",
                                    [&](std::string_view line) { words.emplace_back(line); });
    EXPECT_EQ(settings.ReadValue(setting::kPlugInPath, "Delay"), TaggedValue(std::string("2")));
    const std::string file = (folder / "settings.ini").string();
    EXPECT_THAT(words, testing::ElementsAre(file + ":1: ignored: Delay=1", file + ":3: ignored: what",
                                            file + ":4: ignored: =3", file + ":6: ignored: [open"));
}

TEST_F(SettingsRegistryTest, TheFileIsWhereTheEnvironmentSays) {
    const ScopedEnvironment home("HOME", "/home/me");
    const ScopedEnvironment xdg("XDG_CONFIG_HOME", "");
    const ScopedEnvironment named("VOREX_SETTINGS", "");
    EXPECT_EQ(SettingsFile(), "/home/me/.config/vorex/settings.ini");
    const ScopedEnvironment otherXdg("XDG_CONFIG_HOME", "/conf");
    EXPECT_EQ(SettingsFile(), "/conf/vorex/settings.ini");
    const ScopedEnvironment otherName("VOREX_SETTINGS", "/tmp/my.ini");
    EXPECT_EQ(SettingsFile(), "/tmp/my.ini");
}

/// The host as a whole takes them.
TEST_F(SettingsRegistryTest, TheHostReadsTheSettingsAndWritesTheLog) {
    Write("settings.ini",
          "[Software\\Brenlo\\vorex\\ZRD47500]\nShutdownTimeout=2\nbroken\n[Software\\Brenlo\\vorex]"
          "\nDecimalSign=,\n");
    const ScopedEnvironment named("VOREX_SETTINGS", (folder / "settings.ini").string());
    const ScopedEnvironment log("VOREX_LOG", (folder / "log.txt").string());
    InstallLibrary(MakeReferenceHost({}));
    EXPECT_EQ(ShutdownTimeOut(), 120000);
    EXPECT_EQ(Services().decimalSign, ',');
    LogDiagnostic("a cause");
    InstallServices({});
    const ScopedEnvironment noFile("VOREX_LOG", folder.string());
    EXPECT_THROW(MakeReferenceHost({}), FileError);
    EXPECT_EQ(Read("log.txt"), (folder / "settings.ini").string() + ":3: ignored: broken\na cause\n");
}

}  // namespace
}  // namespace vorex::host_test
