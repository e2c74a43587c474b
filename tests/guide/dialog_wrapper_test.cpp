#include "guide/dialog_wrapper.h"

#include "config/config_common.h"
#include "config/config_mqsa.h"
#include "mqsa/result_mqsa.h"
#include "results/result_common.h"
#include "support/fake_control.h"
#include "support/fake_platform.h"
#include "support/library_test.h"

namespace vorex::test {
namespace {

constexpr WindowHandle kForm = 3;
constexpr WindowHandle kHost = 5;
using Parent = std::pair<WindowHandle, WindowHandle>;

class DialogWrapper : public LibraryTest {
  protected:
    DialogWrapper() {
        static constexpr ClassEntry kClasses[] = {
            {"Control", [] { return std::shared_ptr<LibraryObject>(new FakeControl); }},
            {"NoControl", [] { return std::make_shared<LibraryObject>(); }},
        };
        HostServices services;
        services.platform = platform;
        Install(services);
        InstallClasses(kClasses);
        dialog.hWnd(kForm);
    }
    FakeControl& MakeControl() {
        dialog.CreateSetupCtrl(ClassName("Control"));
        return dynamic_cast<FakeControl&>(*dialog.Control());
    }

    std::shared_ptr<FakePlatform> platform = std::make_shared<FakePlatform>();
    FDialogWrapper dialog;
};

TEST_F(DialogWrapper, HasNoControlForAnEmptyOrUnknownClassOrOneThatIsNoControl) {
    for (const std::string& name : {std::string(), ClassName("Nobody"), ClassName("NoControl")}) {
        EXPECT_FALSE(dialog.CreateSetupCtrl(name)) << name;
        EXPECT_FALSE(CreateControlDialog(name, {})) << name;
    }
    dialog.Initialize({});
    dialog.Locked(true);
    dialog.Refresh();
    EXPECT_FALSE(dialog.Locked());
    EXPECT_FALSE(dialog.CallBack());
}

TEST_F(DialogWrapper, ForwardsToItsControl) {
    const ControlArgument argument = std::make_shared<CConfigCommon>();
    const auto callback = std::make_shared<FakeCallback>();
    FakeControl& control = MakeControl();
    dialog.Initialize(argument);
    dialog.CallBack(callback);
    dialog.Locked(true);
    dialog.Refresh();
    dialog.SetFocus();
    dialog.GotFocus();
    EXPECT_EQ(control.given, argument);
    EXPECT_EQ(dialog.CallBack(), callback);
    EXPECT_TRUE(control.Locked() && dialog.Locked());
    EXPECT_EQ(control.refreshed, 1);
    EXPECT_EQ(control.focused, 2);
}

TEST_F(DialogWrapper, DocksItsControlIntoAnotherWindowAndTakesItBack) {
    MakeControl();
    dialog.Dock(0);
    EXPECT_FALSE(dialog.IsDocked());
    dialog.Dock(kHost);
    EXPECT_TRUE(dialog.IsDocked());
    dialog.UnDock();
    EXPECT_FALSE(dialog.IsDocked());
    EXPECT_EQ(platform->parents, (std::vector<Parent>{{7, kHost}, {7, kForm}}));
}

TEST_F(DialogWrapper, TakesADockedControlBackWhenItIsUnloaded) {
    MakeControl();
    dialog.Show();
    dialog.Dock(kHost);
    dialog.Unload();
    EXPECT_EQ(platform->parents.back(), (Parent{7, kForm}));
    EXPECT_FALSE(dialog.Visible());
    EXPECT_FALSE(dialog.Control());
    dialog.Show();
    EXPECT_TRUE(dialog.Visible());
    dialog.Hide();
    EXPECT_FALSE(dialog.Visible());
}

TEST_F(DialogWrapper, MovesTheControlWhenDockedElseItself) {
    MakeControl();
    dialog.Move(1, 2, 0, 10);
    dialog.Move(1, 2, 30, 10);
    dialog.Dock(kHost);
    dialog.Move(1, 2, 30, 10);
    EXPECT_EQ(platform->moved, (std::vector<WindowHandle>{kForm, 7}));
}

/// Each object whose dialog hosts a control of its own, and the class of that control.
TEST_F(DialogWrapper, IsMadeWithItsControlInitialised) {
    static std::shared_ptr<FakeControl> made;
    const auto expectControl = [](std::string_view name, const auto& object, const ControlArgument& given) {
        const ClassEntry only[] = {
            {name, [] { return std::shared_ptr<LibraryObject>(made = std::make_shared<FakeControl>()); }}};
        InstallClasses(only);
        EXPECT_TRUE(object->CreateDialog()) << name;
        EXPECT_EQ(made->given, given) << name;
        made.reset();
        InstallClasses({});
        EXPECT_FALSE(object->CreateDialog()) << "no control of the class exists";
    };
    const std::pair<int32_t, const char*> configs[] = {
        {100, "XRadioReproConfig"},     {200, "XRadioAccuracyConfig"},  {300, "XRadioLinearityConfig"},
        {500, "XFluoroAccuracyConfig"}, {700, "XFluoroExposureConfig"}, {900, "XMammoAccReproConfig"},
        {1100, "XMammoAECConfig"},      {1200, "XMammoRadiationConfig"}};
    for (const auto& [testId, name] : configs) {
        const auto config = std::make_shared<CConfigCommon>();
        config->DefaultValues(testId);
        expectControl(name, config, std::shared_ptr<IConfigData>(config));
    }
    const auto survey = std::make_shared<CConfigMQSA>();
    EXPECT_TRUE(survey->HasDialog());
    expectControl("XMQSAConfig", survey, std::shared_ptr<IConfigData>(survey));
    const auto waveforms = std::make_shared<CResultCommon>();
    expectControl("XDischargeWaveform", waveforms, std::shared_ptr<IResultData>(waveforms));
    const auto comment = std::make_shared<CResultMQSA>();
    expectControl("XDetailedResult", comment, std::shared_ptr<IResultData>(comment));
}

}  // namespace
}  // namespace vorex::test
