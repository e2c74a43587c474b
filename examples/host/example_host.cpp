// An independent host for the installed test library: it implements the services that the library asks for,
// runs one reproducibility test of three exposures through the test guide, judges it by its own standard, and
// prints and saves the result. Its readings are fixed: 80, 81 and 84.5 KV against a limit of 84.

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "execution/test_common.h"
#include "foundation/registration.h"
#include "foundation/utilities.h"
#include "library.h"
#include "own_document.h"
#include "own_element.h"
#include "own_instruments.h"
#include "own_platform.h"
#include "own_standards.h"

namespace {

/// Texts of this host: its own words for the verdicts, the library's defaults for everything else.
class OwnTexts final : public vorex::ITextService {
  public:
    std::string Translate(std::string_view, std::string_view key,
                          vorex::TextArguments arguments) const override {
        if (key == vorex::text::kPass) return "within its limits";
        if (key == vorex::text::kFail) return "outside its limits";
        return vorex::DefaultText(key, arguments);
    }
    std::string ServiceRecordText(int32_t, bool) const override { return {}; }
};

std::vector<vorex::ZrdReading> Readings() {
    std::vector<vorex::ZrdReading> readings;
    for (const char* kvp : {"80", "81", "84.5"})
        readings.push_back({kvp, kvp, kvp, "10", "100", "100", "0", "0", "0", "3.1"});
    return readings;
}

/// Presses Start once, then Next.
bool Press(vorex::IModalWindow& guide, bool& started) {
    if (started) return guide.PressButton(vorex::guide_button::kNext);
    started = true;
    return guide.PressButton(vorex::guide_button::kStart);
}

}  // namespace

int main() {
    const auto platform = std::make_shared<OwnPlatform>();
    const auto readings = std::make_shared<std::vector<vorex::ZrdReading>>(Readings());
    vorex::HostServices services;
    services.text = std::make_shared<OwnTexts>();
    services.codec = std::make_shared<OwnCodec>();
    services.formatter = std::make_shared<OwnFormatter>();
    services.settings = std::make_shared<NoSettings>();
    services.platform = platform;
    services.createElementBase = [] { return std::make_shared<OwnElementBase>(); };
    services.createStandards = [] { return std::make_shared<OwnStandards>(); };
    services.createStandard = [](std::string_view name, std::string_view version) {
        return std::make_shared<OwnStandard>(name, version);
    };
    services.createExpectedResult = [] { return std::make_shared<OwnLimit>(); };
    services.createDetectorService = [&] { return std::make_shared<OwnDetector>(readings); };
    services.createDetectorLink = [] { return std::make_shared<OwnLink>(); };
    services.program = "example host";
    vorex::InstallLibrary(services);
    vorex::CRegisterDll registration;
    registration.RegisterApp();

    // A test with its defaults, and a limit for its voltages.
    const auto element = vorex::CTestCommon::Create();
    element->Initialize(nullptr, vorex::kPlugInId, vorex::kRadioRepro);
    element->Info()->Name("Voltage of room 3");
    const auto config = std::dynamic_pointer_cast<vorex::CConfigCommon>(element->Configuration());
    config->DefaultValues(vorex::kRadioRepro);
    config->DetectorName = vorex::kZrd;
    config->pNoOfExposures = 3;
    // A new standard has a row for each value that can be judged; this one sets the two sides of a row.
    for (const auto& limit : element->Limits()->CreateStandard("House", "1")->Results()) {
        if (limit->Key() != "ER kVp Avg") continue;
        limit->Setup(limit->Key(), limit->Unit(), "84", "76");
        for (const int32_t side : {vorex::kHighSide, vorex::kLowSide}) limit->Expression(side, "Y");
    }

    bool started = false;
    platform->person = [&](vorex::IModalWindow& window) { return Press(window, started); };
    const auto pipe = std::make_shared<OwnPipe>(std::vector<vorex::StandardName>{{"House", "1"}});
    element->Perform(pipe);

    const auto result = std::dynamic_pointer_cast<vorex::CResultCommon>(element->Result());
    if (!result) {
        std::cerr << "example_host: the test has no result\n";
        return 1;
    }
    std::string voltages;
    for (const auto& row : result->Rows())
        for (const auto& item : *row)
            if (item->Key() == "kVp Avg")
                voltages += item->ShownText() + "=" + vorex::StatusText(item->Status()) + "\n";
    std::cout << element->Info()->Name() << " is " << vorex::StatusText(result->Status()) << "\n" << voltages;

    // Saved into a document of this host.
    const auto saved = element->Save(std::make_shared<OwnDocument>(), 0);
    std::size_t stored = 0;
    for (const auto& item : saved->FindChild(vorex::tag::kResultItem)) stored += item->Children().size();
    std::cout << stored << " values are saved, measured with " << pipe->Entries().front().name << "\n";
    element->Terminate();
    registration.CloseApp();
    return voltages == "80=within its limits\n81=within its limits\n84.5=outside its limits\n" && stored > 0
               ? 0
               : 1;
}
