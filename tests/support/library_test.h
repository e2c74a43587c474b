#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "foundation/host_services.h"
#include "host/reference_host.h"
#include "library.h"
#include "support/checked_helper.h"
#include "support/fake_host.h"

namespace vorex::test {

/// A test of the library in a fake host: it starts from a fresh state, and no object that was passed between
/// library and host may outlive it.
class LibraryTest : public ::testing::Test {
  protected:
    LibraryTest() { Install({}); }
    ~LibraryTest() override {
        InstallServices({});
        EXPECT_EQ(live.Alive(), std::vector<std::string>{}) << "left alive";
    }

    void Install(HostServices services) {
        live.WatchServices(services);
        InstallServices(std::move(services));
    }
    /// The reference host, whose helpers check the order of the calls that reach them.
    void InstallReferenceHost(const ReferenceHostOptions& options = {}) {
        HostServices services = MakeReferenceHost(options);
        services.createElementBase = [this] { return std::make_shared<CheckedHelper>(helpers, live); };
        services.createContainerBase = [this] { return std::make_shared<CheckedGroupHelper>(helpers, live); };
        live.WatchServices(services);
        InstallLibrary(std::move(services));
    }

    LiveObjects live;
    HelperCalls helpers;
};

}  // namespace vorex::test
