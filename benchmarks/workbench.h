#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/program.h"
#include "foundation/number_text.h"
#include "host/headless_platform.h"
#include "host/reference_host.h"
#include "instruments/recorded_instruments.h"
#include "library.h"

/// What the benchmarks share: a scratch folder, an installed library, and the files that they measure with.
namespace vorex::bench {

/// A folder of its own, removed at the end. The user's settings do not affect the measurements.
class Scratch {
  public:
    Scratch() {
        std::string name = (std::filesystem::temp_directory_path() / "vorex-benchmark-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no scratch folder: " + name);
        mFolder = name;
        setenv("VOREX_SETTINGS", Path("settings.ini").c_str(), 1);
    }
    ~Scratch() {
        std::error_code error;
        std::filesystem::remove_all(mFolder, error);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    std::string Path(const std::string& name) const { return (mFolder / name).string(); }
    std::string Write(const std::string& name, std::string_view text) const {
        std::ofstream(Path(name), std::ios::binary) << text;
        return Path(name);
    }

  private:
    std::filesystem::path mFolder;
};

/// Installs the library in the reference host, without a window and in virtual time.
inline std::shared_ptr<HeadlessPlatform> Install(ReferenceHostOptions options = {}) {
    const auto platform = std::make_shared<HeadlessPlatform>();
    options.platform = platform;
    InstallLibrary(MakeReferenceHost(options));
    return platform;
}

// ------------------------------------------------------------------------------------------ element files

inline std::string Sequence(std::string_view elements) {
    return R"(<VorexSequence Version="1">)" + std::string(elements) + "</VorexSequence>";
}

/// An element of a test with a number of exposures; other blocks, such as limits, unchanged.
inline std::string Element(int32_t id, int32_t testId, int32_t exposures, std::string_view blocks = {}) {
    return R"(<TestElement PlugIn="ZRD47500" TestID=")" + PlainText(testId) + R"(" ID=")" + PlainText(id) +
           R"(" Name="Annual"><PlugInData PlugIn="ZRD47500"><NumberOfExposures>)" + PlainText(exposures) +
           "</NumberOfExposures></PlugInData>" + std::string(blocks) + "</TestElement>";
}

/// Ten limits for the columns of test 100.
inline constexpr std::string_view kTenLimits = R"x(<ExpectedResult><Standard Name="Site" Version="1">
  <Limit Key="ER kVp Avg" Unit=""><High Value="5" Expression="X+(X*Y%)"/><Low Value="-5" Expression="X+(X*Y%)"/></Limit>
  <Limit Key="ER kVp Max" Unit=""><High Value="8" Expression="X+Y"/></Limit>
  <Limit Key="ER kV Ppv" Unit=""><High Value="8" Expression="X+Y"/></Limit>
  <Limit Key="ER Exposure" Unit=""><High Value="0.05" Expression="CV"/></Limit>
  <Limit Key="ER Exposure Rate" Unit=""><High Value="2000"/></Limit>
  <Limit Key="ER Exposure Time" Unit=""><High Value="200"/></Limit>
  <Limit Key="ER HVL" Unit="mm Al"><Low Value="2.3"/></Limit>
  <Limit Key="ER Avg kVp Avg" Unit=""><High Value="90"/></Limit>
  <Limit Key="ER mA" Unit="mA"><High Value="250"/></Limit>
  <Limit Key="ER mAs" Unit="mAs"><High Value="25"/></Limit>
</Standard></ExpectedResult>)x";

// -------------------------------------------------------------------------------------------- recordings

inline std::string RecordingHead(int32_t kind) {
    return R"({"recording":1,"kind":)" + PlainText(kind) +
           R"(,"serialNumbers":"4711,88","calibrationDates":"2026-01-15,2026-02-01",)"
           R"("instrumentNames":["ZRD 47500WD","mAs meter"]})"
           "\n";
}

/// Exposures whose readings differ a little from each other, with the mAs meter's for kind 4.
inline std::string RecordedExposures(int32_t kind, int32_t count) {
    std::string text;
    for (int32_t i = 0; i < count; ++i) {
        const auto digit = [i](int32_t column) { return PlainText((i + column) % 10); };
        text += R"({"exposure":{"detector":["80.)" + digit(1) + R"(","81.)" + digit(2) + R"(","80.)" +
                digit(3) + R"(","12.)" + digit(4) + R"(","123.)" + digit(5) + R"(","100.)" + digit(6) +
                R"(","10","0","0","3.1"])";
        if (kind == kZrdAndMas)
            text +=
                R"(,"mas":["20)" + digit(7) + R"(","20.)" + digit(8) + R"(","0","0.6)" + digit(9) + R"("])";
        text += "}}\n";
    }
    return text;
}

/// Whether a run keeps a journal next to its output.
enum class Journal { kNone, kKept };

/// Runs a file on recorded instruments with the program's own command; the result is in `output`. Without
/// a journal it passes through standard output.
inline void RunFile(const std::string& input, const std::string& recording, const std::string& output,
                    Journal journal = Journal::kNone) {
    const bool kept = journal == Journal::kKept;
    std::ofstream out(kept ? "/dev/null" : output, std::ios::binary);
    std::ofstream nowhere("/dev/null");
    Terminal terminal{out, nowhere};
    std::vector<std::string> arguments = {"run", input, "--instruments", "recording:" + recording};
    if (kept) arguments.insert(arguments.end(), {"-o", output});
    const int code = RunProgram(arguments, terminal);
    if (code != 0 && code != 1) throw std::runtime_error("the run ended with " + std::to_string(code));
}

}  // namespace vorex::bench
