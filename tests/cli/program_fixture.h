#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <pugixml.hpp>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "cli/program.h"
#include "files/run_journal.h"

namespace vorex::test {

using ::testing::HasSubstr;
using ::testing::Not;

inline std::string Sequence(const std::string& elements) {
    return "<VorexSequence Version=\"1\">" + elements + "</VorexSequence>";
}
inline const std::string kHead =
    R"({"recording":1,"kind":1,"serialNumbers":"4711","calibrationDates":"2026-01-15"})"
    "\n";

/// Runs the program in a folder of its own, as a user would from a shell.
class ProgramTest : public ::testing::Test {
  protected:
    void SetUp() override {
        folder = std::filesystem::temp_directory_path() /
                 ("vorex-test-" + std::to_string(getpid()) + "-" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        setenv("LC_ALL", "C", 1);
        setenv("VOREX_NOW", "2026-01-15T09:00:00Z", 1);
        setenv("VOREX_SETTINGS", Path("settings.ini").c_str(), 1);
    }
    void TearDown() override {
        for (const char* name : {"VOREX_NOW", "VOREX_SETTINGS", "VOREX_STANDARDS"}) unsetenv(name);
        std::filesystem::remove_all(folder);
    }

    std::string Path(const std::string& name) const { return (folder / name).string(); }
    std::string Write(const std::string& name, const std::string& text) const {
        std::ofstream(Path(name), std::ios::binary) << text;
        return Path(name);
    }
    std::string Read(const std::string& name) const {
        std::ifstream file(Path(name), std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
    bool Exists(const std::string& name) const { return std::filesystem::exists(Path(name)); }

    /// Exit code of a command; its output is in `out` and `err`.
    int Run(std::vector<std::string> arguments, const std::vector<std::string>& more = {}) {
        arguments.insert(arguments.end(), more.begin(), more.end());
        std::ostringstream outStream;
        std::ostringstream errStream;
        Terminal terminal{outStream, errStream};
        const int code = RunProgram(arguments, terminal);
        out = outStream.str();
        err = errStream.str();
        return code;
    }
    /// Runs a file on a recording, with the result in out.xml.
    int RunFile(const std::string& file, const std::string& recording, const std::string& script = {}) {
        return RunToOut(
            {"run", Path(file), "--instruments", "recording:" + Path(recording), "--operator", script});
    }
    /// Runs a command that writes out.xml, and loads it.
    int RunToOut(std::vector<std::string> arguments, const std::vector<std::string>& more = {}) {
        arguments.insert(arguments.end(), {"-o", Path("out.xml")});
        const int code = Run(std::move(arguments), more);
        result.load_file(Path("out.xml").c_str());
        return code;
    }
    /// Runs elements on events of the ZRD 47500, or on a whole recording.
    int RunOn(const std::string& elements, const std::string& events, const std::string& script = {}) {
        Write("s.xml", Sequence(elements));
        Write("r.jsonl", (events.starts_with("{\"recording\"") ? "" : kHead) + events);
        return RunFile("s.xml", "r.jsonl", script);
    }
    void RunPassing(const std::string& elements, const std::string& events, const std::string& script = {}) {
        EXPECT_EQ(RunOn(elements, events, script), kExitPassed) << script << err;
    }
    /// Judges out.xml, which must not change.
    void ExpectJudgedAlike(int code = kExitPassed) {
        EXPECT_EQ(Run({"judge", Path("out.xml"), "-o", Path("again.xml")}), code) << err;
        EXPECT_EQ(Read("again.xml"), Read("out.xml"));
    }
    /// What "show" prints of a file.
    std::string Shown(const std::string& file = "out.xml") {
        EXPECT_EQ(Run({"show", Path(file)}), kExitPassed) << err;
        return out;
    }

    /// The "ResultItem" of the element of an ID in out.xml.
    pugi::xml_node ResultOf(int id) const {
        const std::string query = "//TestElement[@ID='" + std::to_string(id) + "']/ResultItem";
        return result.select_node(query.c_str()).node();
    }
    std::string StatusOf(int id) const { return ResultOf(id).child_value("Status"); }
    /// Values of all measurements of a key, in order of the exposures, joined by "|".
    std::string ValuesOf(int id, const std::string& measurementKey) const {
        std::string values;
        for (pugi::xml_node item : ResultOf(id).children("Measurement"))
            if (item.attribute("Key").value() == measurementKey)
                values += (values.empty() ? "" : "|") + std::string(item.child_value("Value"));
        return values;
    }

    std::filesystem::path folder;
    std::string out;
    std::string err;
    pugi::xml_document result;
};

/// An element of a test, with limits or result blocks between the settings and the end.
inline std::string Element(int id, int test, const std::string& settings, const std::string& blocks = {}) {
    return "<TestElement PlugIn=\"ZRD47500\" TestID=\"" + std::to_string(test) + "\" ID=\"" +
           std::to_string(id) + "\" Name=\"T\"><PlugInData PlugIn=\"ZRD47500\">" + settings +
           "</PlugInData>" + blocks + "</TestElement>";
}
inline std::string Group(int id, const std::string& children) {
    return "<TestElement PlugIn=\"ZRD47500\" TestID=\"0\" ID=\"" + std::to_string(id) + "\" Name=\"G\">" +
           children + "</TestElement>";
}
/// A standard "Site 1" with one limit; sides are given as XML, e.g. `<High Value="5"/>`.
inline std::string Limit(const std::string& limitKey, const std::string& sides) {
    return "<ExpectedResult><Standard Name=\"Site\" Version=\"1\"><Limit Key=\"" + limitKey + "\">" + sides +
           "</Limit></Standard></ExpectedResult>";
}
/// A journal with a text of it replaced, and checksums that fit again.
inline std::string Sealed(const std::string& journal, const std::string& from, const std::string& to) {
    std::string sealed;
    uint32_t checksum = 0;
    bool found = false;
    std::istringstream lines(journal);
    for (std::string line; std::getline(lines, line);) {
        std::string object = line.substr(9);
        if (const std::size_t at = object.find(from); !found && at != std::string::npos) {
            object.replace(at, from.size(), to);
            found = true;
        }
        sealed += JournalLine(object, checksum);
    }
    EXPECT_TRUE(found) << from;
    return sealed;
}
inline std::string Exposures(int count) {
    return "<NumberOfExposures>" + std::to_string(count) + "</NumberOfExposures>";
}
/// The first line of a recording of a ZRD 47500 and an mAs meter.
inline const std::string kHeadOfBoth = R"({"recording":1,"kind":4,"serialNumbers":"4711,88"})"
                                       "\n";
/// An exposure of the ZRD 47500 with a voltage and an exposure; further readings and waveforms follow.
inline std::string Shot(const std::string& kvp, const std::string& exposure = "10",
                        const std::string& more = {}) {
    return R"({"exposure":{"detector":[")" + kvp + R"(","81","80",")" + exposure +
           R"(","100","100","10","0","0","3.1"])" + more + "}}\n";
}
inline std::string MasOf(const std::string& mas) {
    return R"(,"mas":["200",")" + mas + R"(","0","0.5"])";
}
inline std::string Wave(int type, const std::string& samples) {
    return R"({"type":)" + std::to_string(type) + R"(,"resolution":10,"samples":")" + samples + "\"}";
}
inline std::string Waves(const std::string& list) {
    return ",\"waveforms\":[" + list + "]";
}

}  // namespace vorex::test
