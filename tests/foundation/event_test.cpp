#include "foundation/event.h"

#include <stdexcept>

#include "support/library_test.h"

namespace vorex {
namespace {

class Events : public test::LibraryTest {
  protected:
    void SetUp() override {
        HostServices services;
        services.log = [this](std::string_view line) { log.emplace_back(line); };
        Install(services);
    }
    std::vector<std::string> log;
};

TEST_F(Events, HandlersRunInTheOrderOfConnection) {
    Event<int, const std::string&> event;
    std::string seen;
    EXPECT_FALSE(event.Connected());
    event.Raise(0, "nobody listens");
    event.Connect([&](int number, const std::string& word) { seen += word + std::to_string(number); });
    event.Connect([&](int number, const std::string&) { seen += "/" + std::to_string(number + 1); });
    EXPECT_TRUE(event.Connected());
    event.Raise(7, "a");
    EXPECT_EQ(seen, "a7/8");
    event.Clear();
    event.Raise(9, "b");
    EXPECT_EQ(seen, "a7/8");
}

TEST_F(Events, AFailingHandlerIsLoggedAndDoesNotStopTheOthers) {
    Event<> event("Ready");
    int calls = 0;
    event.Connect([] { throw std::runtime_error("no link"); });
    event.Connect([] { throw 5; });
    event.Connect([&] { ++calls; });
    EXPECT_NO_THROW(event.Raise());
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(log, (std::vector<std::string>{"Ready: no link", "Ready: unknown error"}));
}

TEST_F(Events, AHandlerMayConnectAndClearWhileTheEventIsRaised) {
    Event<> event;
    int first = 0;
    int second = 0;
    event.Connect([&] {
        ++first;
        event.Clear();
        event.Connect([&] { ++second; });
    });
    event.Raise();
    EXPECT_EQ(second, 0) << "the change holds from the next raise on";
    event.Raise();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
}

TEST_F(Events, AListenerMayEndBeforeTheEventAndTheEventBeforeItsListener) {
    std::string seen;
    Connection longer;
    {
        Event<char> event;
        longer = event.Listen([&](char letter) { seen += letter; });
        {
            const Connection shorter = event.Listen([&](char letter) { seen += std::string{'<', letter}; });
            event.Raise('a');
        }
        event.Raise('b');
        EXPECT_EQ(seen, "a<ab");
        EXPECT_TRUE(longer.Connected());
        longer.Disconnect();
        EXPECT_FALSE(event.Connected());
        event.Raise('c');
        EXPECT_EQ(seen, "a<ab");
        longer = event.Listen([&](char letter) { seen += letter; });
        event.Raise('d');
    }
    EXPECT_EQ(seen, "a<abd");
    EXPECT_FALSE(longer.Connected());
}

TEST_F(Events, AHandlerThatADifferentOneDisconnectsIsNotCalledInTheSameRaise) {
    Event<> event;
    auto captured = std::make_shared<int>(0);
    Connection first;
    Connection second;
    first = event.Listen([&] {
        second.Disconnect();
        first.Disconnect();  // its own call continues
        ++*captured;
    });
    second = event.Listen([captured] { *captured += 100; });
    EXPECT_EQ(captured.use_count(), 2);
    event.Raise();
    event.Raise();
    EXPECT_EQ(*captured, 1);
    EXPECT_EQ(captured.use_count(), 1) << "a disconnected handler lets go of what it holds";
}

TEST_F(Events, AGuardReportsWhetherItsHandlerEnded) {
    EXPECT_TRUE(Guarded("tick", [] {}));
    EXPECT_FALSE(Guarded("tick", [] { throw std::logic_error("late"); }));
    EXPECT_EQ(log, std::vector<std::string>{"tick: late"});
}

}  // namespace
}  // namespace vorex
