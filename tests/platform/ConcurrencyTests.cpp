// Tasks, background work and pauses: their cancellation, and calls of the main thread.

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>

#include "foundation/Errors.h"
#include "platform/concurrency/Background.h"
#include "tests/support/RunLoop.h"

namespace tessel {

namespace {

using namespace std::chrono_literals;

const auto loop = std::make_shared<RunLoop>();

Task<> sleep(std::chrono::nanoseconds duration) {
    co_await sleepFor(duration);
}

Task<bool> wasCancelled() {
    co_return co_await isCancelled();
}

}  // namespace

TEST(ConcurrencyTests, blockingWorkLearnsOfACancellationAndIsNeverCutShort) {
    std::atomic<bool> isFinished = false;
    const auto work = [](std::atomic<bool>& finished) -> Task<> {
        co_await inBackground([&finished](const std::stop_token& stop) {
            while (!stop.stop_requested())
                std::this_thread::yield();
            std::this_thread::sleep_for(30ms);
            finished = true;
        });
        EXPECT_TRUE(finished) << "waiting for work that was begun was cut short";
        EXPECT_TRUE(co_await isCancelled());
        co_await checkCancellation();
        ADD_FAILURE() << "a cancelled task passed a checkpoint";
    };
    std::stop_source cancellation;
    std::thread canceller([&cancellation] {
        std::this_thread::sleep_for(10ms);
        cancellation.request_stop();
    });
    EXPECT_THROW(runUntilFinished(loop, work(isFinished), cancellation), CancellationError);
    canceller.join();
    EXPECT_FALSE(runUntilFinished(loop, wasCancelled())) << "it leaked into another task";
}

TEST(ConcurrencyTests, aCancellationEndsASleepEarly) {
    std::stop_source cancellation;
    const auto cancelLater = [](std::stop_source source) -> Task<> {
        co_await sleepFor(20ms);
        source.request_stop();
    };
    startTask(loop, cancelLater(cancellation));
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THROW(runUntilFinished(loop, sleep(1h), cancellation), CancellationError);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 10min);
}

TEST(ConcurrencyTests, aStartedTaskIsCancelledByItsHandleAndNotByDroppingIt) {
    const auto work = [](std::string& end) -> Task<> {
        const auto slept = co_await outcomeOf(sleep(50ms));
        end = slept.error() ? "cancelled" : "slept";
    };
    std::string dropped;
    std::string cancelled;
    startTask(loop, work(dropped));
    auto handle = startTask(loop, work(cancelled));
    handle.cancel();
    runUntilFinished(loop, [](const std::string& one, const std::string& other) -> Task<> {
        while (one.empty() || other.empty())
            co_await sleepFor(1ms);
    }(dropped, cancelled));
    EXPECT_EQ(dropped, "slept");
    EXPECT_EQ(cancelled, "cancelled");
}

TEST(ConcurrencyTests, aCallOfTheMainThreadWaitsForIt) {
    constexpr int threads = 20;
    constexpr int calls = 50;
    int counter = 0;  // without a lock: only the main thread touches it
    int ended = 0;
    const auto callOften = [](int& shared, int& ends) -> Task<> {
        co_await inBackground([&shared](const std::stop_token&) {
            for (int call = 0; call < calls; ++call) {
                int seen = -1;
                loop->call([&] { seen = ++shared; });
                EXPECT_GT(seen, 0);
            }
            EXPECT_THROW(loop->call([] { throw std::runtime_error("broken"); }), std::runtime_error);
        });
        ++ends;
    };
    for (int thread = 0; thread < threads; ++thread)
        startTask(loop, callOften(counter, ended));
    runUntilFinished(loop, [](const int& ends) -> Task<> {
        while (ends < threads)
            co_await sleepFor(1ms);
    }(ended));
    EXPECT_EQ(counter, threads * calls);
}

TEST(ConcurrencyTests, aCallOfAMainThreadThatHasEndedIsAnError) {
    class EndedMainThread : public MainThread {
        void post(std::function<void()>) override {}
        void postAfter(std::chrono::nanoseconds, std::function<void()>) override {}
    };
    EXPECT_THROW(EndedMainThread().call([] { ADD_FAILURE() << "nobody does this"; }), std::future_error);
}

}  // namespace tessel
