#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "files/element_document.h"
#include "files/element_output.h"
#include "support/library_test.h"
#include "test_paths.h"

namespace vorex::host_test {

/// The library inside the reference host, and a folder of the test's own.
class HostTest : public test::LibraryTest {
  protected:
    void SetUp() override {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        folder = std::filesystem::path(test::kScratchDir) /
                 (std::string("host_") + info->test_suite_name() + "_" + info->name());
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        InstallReferenceHost();
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    void Write(const std::string& name, const std::string& text) const {
        std::ofstream(folder / name, std::ios::binary) << text;
    }
    std::string Read(const std::string& name) const {
        std::ifstream stream(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::size_t FileCount() const {
        const std::filesystem::directory_iterator files(folder);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    std::filesystem::path folder;
};

/// Objects that write an element of their own, and what they write.
class XmlTest : public HostTest {
  protected:
    std::string Xml(const std::shared_ptr<IXmlElement>& element) {
        document->Top().AddChild(element);
        std::string text = document->Text();
        document = std::make_shared<OutputDocument>();
        text.erase(0, text.find('\n') + 1);
        text.pop_back();
        return text;
    }
    std::shared_ptr<IXmlElement> Element(const std::string& xml) {
        source = XmlSource::FromText(xml, "a.xml");
        return source->Element(source->Document().first_child());
    }

    std::shared_ptr<OutputDocument> document = std::make_shared<OutputDocument>();
    std::unique_ptr<XmlSource> source;
};

/// Sets or removes an environment variable during its lifetime.
class ScopedEnvironment {
  public:
    ScopedEnvironment(std::string name, const std::string& value) : mName(std::move(name)) {
        if (const char* old = std::getenv(mName.c_str())) mOld = old;
        ::setenv(mName.c_str(), value.c_str(), 1);
    }
    ~ScopedEnvironment() {
        if (mOld)
            ::setenv(mName.c_str(), mOld->c_str(), 1);
        else
            ::unsetenv(mName.c_str());
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

  private:
    std::string mName;
    std::optional<std::string> mOld;
};

inline std::string Sequence(const std::string& content) {
    return "<VorexSequence Version=\"1\">" + content + "</VorexSequence>";
}

/// An element of test 100 with two exposures; the extra text follows its configuration.
inline std::string Test100(int id, const std::string& extra = {}, const std::string& config = {}) {
    return "<TestElement PlugIn=\"ZRD47500\" TestID=\"100\" ID=\"" + std::to_string(id) +
           "\"><PlugInData PlugIn=\"ZRD47500\"><NumberOfExposures>2</NumberOfExposures>" + config +
           "</PlugInData>" + extra + "</TestElement>";
}

inline std::string Group(int id, const std::string& content) {
    return "<TestElement PlugIn=\"ZRD47500\" TestID=\"0\" ID=\"" + std::to_string(id) + "\">" + content +
           "</TestElement>";
}

}  // namespace vorex::host_test
