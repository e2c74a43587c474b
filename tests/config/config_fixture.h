#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "config/config_common.h"
#include "foundation/host_services.h"
#include "host/test_guide_config.h"
#include "support/fake_host.h"
#include "support/library_test.h"

namespace vorex::test {

class ConfigTest : public LibraryTest {
  protected:
    void SetUp() override { Install('.'); }

    void Install(char decimalSign) {
        HostServices services;
        services.text = texts;
        services.settings = settings;
        services.decimalSign = decimalSign;
        services.createTestGuideConfig = [] { return std::make_shared<TestGuideConfig>(); };
        LibraryTest::Install(services);
    }

    static std::shared_ptr<CConfigCommon> New(int32_t testId) {
        auto config = std::make_shared<CConfigCommon>();
        config->DefaultValues(testId);
        return config;
    }

    std::shared_ptr<FakeTexts> texts = std::make_shared<FakeTexts>();
    std::shared_ptr<FakeSettings> settings = std::make_shared<FakeSettings>();
    std::shared_ptr<OutputDocument> document = std::make_shared<OutputDocument>();
};

}  // namespace vorex::test
