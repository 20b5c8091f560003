#include "model/abandonable_call.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace varnelo {
namespace {

using std::chrono::milliseconds;
using Kind = ReplyStep::Kind;

constexpr CallLimits kPatient{milliseconds(60'000), milliseconds(60'000), milliseconds(60'000)};
constexpr milliseconds kShort(30);

const auto acceptAll = [](const ReplyStep&) { return true; };

// A door that stays closed until the test opens it, and that tells when somebody is through.
struct Door {
    std::promise<void> opened;
    std::promise<void> passed;
    std::shared_future<void> open = opened.get_future().share();
    std::future<void> through = passed.get_future();
};

class AbandonableCallTest : public testing::Test {
protected:
    AbandonableCallTest() { EXPECT_EQ(abandonedCalls(), 0); }
    ~AbandonableCallTest() override {
        for (const auto& door : doors) {
            door->opened.set_value();
            door->through.wait();
        }
        while (abandonedCalls() > 0) std::this_thread::yield();
    }

    // A call that hangs behind a door, which the end of the test opens.
    std::function<bool(ReplyRelay&)> hangingCall() {
        doors.push_back(std::make_shared<Door>());
        return [door = doors.back()](ReplyRelay& relay) {
            door->open.wait();
            const bool wanted = relay.pass({Kind::Bytes, 0, "too late"});
            door->passed.set_value();
            return wanted;
        };
    }

    std::vector<std::shared_ptr<Door>> doors;
};

TEST_F(AbandonableCallTest, StepsArriveInOrderOnTheCallingThread) {
    std::string seen;
    const auto caller = std::this_thread::get_id();
    std::thread::id talker;
    const auto talk = [&](ReplyRelay& relay) {
        talker = std::this_thread::get_id();
        return relay.pass({Kind::Sent}) && relay.pass({Kind::Status, 200}) &&
               relay.pass({Kind::Bytes, 0, "ab"}) && relay.pass({Kind::Bytes, 0, "c"});
    };
    EXPECT_TRUE(runAbandonable(talk, kPatient, [&](const ReplyStep& step) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        seen += std::to_string(static_cast<int>(step.kind)) +
                (step.status ? std::to_string(step.status) : "") + step.bytes + ";";
        return true;
    }));
    EXPECT_EQ(seen, "0;1200;2ab;2c;");
    EXPECT_NE(talker, caller);
}

TEST_F(AbandonableCallTest, AStepIsDealtWithBeforeTheCallGoesOn) {
    int dealtWith = 0;  // touched by both threads in turn: the thread sanitizer sees a turn that is not kept
    const auto talk = [&](ReplyRelay& relay) {
        for (int step = 1; step <= 200; ++step) {
            if (!relay.pass({Kind::Bytes})) return false;
            EXPECT_EQ(dealtWith, step);
        }
        return true;
    };
    EXPECT_TRUE(runAbandonable(talk, kPatient, [&](const ReplyStep&) { return ++dealtWith > 0; }));
    EXPECT_EQ(dealtWith, 200);
}

TEST_F(AbandonableCallTest, AFailedCallHasHandedOverWhatCameBefore) {
    std::string seen;
    const auto talk = [](ReplyRelay& relay) {
        relay.pass({Kind::Bytes, 0, "half"});
        return false;
    };
    EXPECT_FALSE(
        runAbandonable(talk, kPatient, [&](const ReplyStep& step) { return seen += step.bytes, true; }));
    EXPECT_EQ(seen, "half");
}

TEST_F(AbandonableCallTest, ARefusedStepStopsTheCallAndFailsIt) {
    int taken = 0;
    bool wentOn = true;
    const auto talk = [&](ReplyRelay& relay) {
        wentOn = relay.pass({Kind::Status, 404});
        relay.pass({Kind::Bytes, 0, "ignored"});
        return true;
    };
    EXPECT_FALSE(runAbandonable(talk, kPatient, [&](const ReplyStep&) { return ++taken == 0; }));
    EXPECT_FALSE(wentOn);
    EXPECT_EQ(taken, 1);
}

TEST_F(AbandonableCallTest, AnExceptionOnEitherSideIsAFailure) {
    EXPECT_FALSE(
        runAbandonable([](ReplyRelay&) -> bool { throw std::runtime_error("talk"); }, kPatient, acceptAll));
    EXPECT_FALSE(runAbandonable([](ReplyRelay& relay) { return relay.pass({Kind::Sent}), true; }, kPatient,
                                [](const ReplyStep&) -> bool { throw std::runtime_error("take"); }));
}

TEST_F(AbandonableCallTest, WhatTheCallOwnsEndsBeforeItsEndIsKnown) {
    auto owned = std::make_shared<int>();
    const std::weak_ptr<int> watched = owned;
    EXPECT_TRUE(runAbandonable([kept = std::move(owned)](ReplyRelay&) { return true; }, kPatient, acceptAll));
    EXPECT_TRUE(watched.expired());
}

TEST_F(AbandonableCallTest, ACallThatHangsIsAbandonedAndCleansUpWhenItComesBack) {
    bool taken = false;
    const auto take = [&](const ReplyStep&) { return taken = true; };
    EXPECT_FALSE(runAbandonable(hangingCall(), {kShort, milliseconds(60'000), milliseconds(60'000)}, take));
    EXPECT_EQ(abandonedCalls(), 1);
    doors[0]->opened.set_value();
    doors[0]->through.wait();
    while (abandonedCalls() > 0) std::this_thread::yield();
    EXPECT_FALSE(taken);
    doors.clear();
}

TEST_F(AbandonableCallTest, TheFirstStepAndTheNextOnesHaveLimitsOfTheirOwn) {
    const auto hang = hangingCall();
    std::string seen;
    const auto talk = [hang](ReplyRelay& relay) {
        return relay.pass({Kind::Bytes, 0, "first"}) && hang(relay);
    };
    EXPECT_FALSE(runAbandonable(talk, {milliseconds(60'000), kShort, milliseconds(60'000)},
                                [&](const ReplyStep& step) { return seen += step.bytes, true; }));
    EXPECT_EQ(seen, "first");
    EXPECT_EQ(abandonedCalls(), 1);
}

TEST_F(AbandonableCallTest, ALivelyCallEndsWithItsTotal) {
    auto ended = std::make_shared<std::promise<void>>();
    std::future<void> end = ended->get_future();
    const auto talk = [ended](ReplyRelay& relay) {
        while (relay.pass({Kind::Bytes, 0, "."})) {
        }
        ended->set_value();
        return true;
    };
    EXPECT_FALSE(runAbandonable(talk, {milliseconds(60'000), milliseconds(60'000), kShort}, acceptAll));
    end.wait();
}

TEST_F(AbandonableCallTest, AStoppedCallKeepsWhatCameBefore) {
    std::atomic<bool> stopped = false;
    CallLimits limits = kPatient;
    limits.stopped = &stopped;
    auto ended = std::make_shared<std::promise<bool>>();
    std::future<bool> wentOn = ended->get_future();
    const auto talk = [ended](ReplyRelay& relay) {
        ended->set_value(relay.pass({Kind::Bytes, 0, "first"}));
        return true;
    };
    std::string seen;
    EXPECT_FALSE(runAbandonable(talk, limits, [&](const ReplyStep& step) {
        seen += step.bytes;
        return stopped = true;
    }));
    EXPECT_EQ(seen, "first");
    EXPECT_FALSE(wentOn.get());
}

TEST_F(AbandonableCallTest, ACallThatWaitsNoticesThatItIsStopped) {
    std::atomic<bool> stopped = false;
    CallLimits limits = kPatient;
    limits.stopped = &stopped;
    const auto hang = hangingCall();
    std::promise<void> waiting;
    std::jthread stopper([&, begun = waiting.get_future()]() mutable {
        begun.wait();
        stopped = true;
    });
    const auto start = std::chrono::steady_clock::now();
    const auto talk = [hang, &waiting](ReplyRelay& relay) {
        waiting.set_value();
        return hang(relay);
    };
    EXPECT_FALSE(runAbandonable(talk, limits, acceptAll));
    EXPECT_LT(std::chrono::steady_clock::now() - start, limits.firstStep / 2);
}

TEST_F(AbandonableCallTest, AfterTheStopNoCallBegins) {
    const std::atomic<bool> stopped = true;
    CallLimits limits = kPatient;
    limits.stopped = &stopped;
    std::promise<void> end;
    const auto talk = [ended = end.get_future().share()](ReplyRelay&) { return ended.wait(), true; };
    EXPECT_FALSE(runAbandonable(talk, limits, acceptAll));
    EXPECT_EQ(abandonedCalls(), 0);
    end.set_value();
}

TEST_F(AbandonableCallTest, WhileTooManyHangNoFurtherOneBegins) {
    const CallLimits impatient{milliseconds(1), milliseconds(1), milliseconds(1)};
    for (int i = 0; i < kAbandonedCallLimit; ++i)
        EXPECT_FALSE(runAbandonable(hangingCall(), impatient, acceptAll));
    EXPECT_EQ(abandonedCalls(), kAbandonedCallLimit);
    bool began = false;
    const auto talk = [&began](ReplyRelay&) { return began = true; };
    EXPECT_FALSE(runAbandonable(talk, kPatient, acceptAll));
    EXPECT_FALSE(began);

    doors[0]->opened.set_value();
    doors[0]->through.wait();
    while (abandonedCalls() == kAbandonedCallLimit) std::this_thread::yield();
    doors.erase(doors.begin());
    EXPECT_TRUE(runAbandonable(talk, kPatient, acceptAll));
    EXPECT_TRUE(began);
}

}  // namespace
}  // namespace varnelo
