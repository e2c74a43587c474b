#include "foundation/class_registry.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "foundation/host_error.h"

namespace vorex {
namespace {

struct Spoken {
    virtual ~Spoken() = default;
    virtual std::string Word() const = 0;
};
struct First : LibraryObject, Spoken {
    std::string Word() const override { return "first"; }
};
struct Silent : LibraryObject {};

template <typename Class>
std::shared_ptr<LibraryObject> Make() {
    return std::make_shared<Class>();
}

constexpr ClassEntry kClasses[] = {
    {"First", Make<First>}, {"Silent", Make<Silent>}, {"VorexView.Foreign", Make<First>}};
constexpr ClassEntry kTwice[] = {{"Other", Make<Silent>}, {"First", Make<First>}, {"Other", Make<First>}};

class Registry : public ::testing::Test {
  protected:
    void SetUp() override { InstallClasses(kClasses); }
    void TearDown() override { InstallClasses({}); }
};

TEST_F(Registry, AClassIsMadeByProjectAndName) {
    const auto first = CreateObjectAs<Spoken>("VorexZRD47500Test.First");
    ASSERT_TRUE(first);
    EXPECT_EQ(first->Word(), "first");
    EXPECT_NE(first, CreateObjectAs<Spoken>(ClassName("First"))) << "each call makes an object";
    EXPECT_TRUE(CreateObjectAs<Spoken>("VorexView.Foreign")) << "a class of the host has its full name";
}

TEST_F(Registry, AnUnknownNameGivesNothing) {
    for (const char* name : {"", "First", "VorexView.First", "VorexZRD47500Test", "VorexZRD47500Test.",
                             "VorexZRD47500Test.first", "VorexZRD47500TestFirst", "VorexZRD47500Test..First",
                             "Foreign", "VorexZRD47500Test.VorexView.Foreign"})
        EXPECT_FALSE(CreateObject(name)) << name;
    EXPECT_TRUE(CreateObject(ClassName("Silent")));
    EXPECT_FALSE(CreateObjectAs<Spoken>(ClassName("Silent"))) << "made, but not of the interface";
}

TEST_F(Registry, ANameThatOccursTwiceIsRefusedAndChangesNothing) {
    EXPECT_THROW(InstallClasses(kTwice), std::invalid_argument);
    EXPECT_FALSE(CreateObject(ClassName("Other")));
    EXPECT_TRUE(CreateObject(ClassName("First")));
}

TEST(HostErrors, AnErrorSaysWhatIsWrongAndWhoSaysSo) {
    try {
        RaiseHostError(kErrorBadLimits, "CLimitData", 4, {"found \"Result\""});
        FAIL() << "nothing was raised";
    } catch (const HostError& error) {
        EXPECT_EQ(error.Arguments(), std::vector<std::string>{"found \"Result\""});
        EXPECT_STREQ(error.what(),
                     "the limit data is not an \"ExpectedResult\": found \"Result\" "
                     "(VorexZRD47500Test.CLimitData, 0x8004A4EE)");
    }
}

}  // namespace
}  // namespace vorex
