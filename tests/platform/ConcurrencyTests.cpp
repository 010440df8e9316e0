#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "foundation/Errors.h"
#include "platform/concurrency/Background.h"
#include "platform/concurrency/TaskHandle.h"

namespace tessel {

namespace {

using namespace std::chrono_literals;

const auto loop = std::make_shared<RunLoop>();

auto start(Home home, auto task) {
    return startTask(home, Priority::userInitiated, std::move(task));
}

Task<std::thread::id> currentThread() {
    co_return std::this_thread::get_id();
}

Task<std::string> failInBackground() {
    co_await inBackground(Priority::utility, [] { throw std::runtime_error("broken"); });
    co_return "not reached";
}

/// Ends when it is cancelled, and tells how long that took in steps.
Task<int> countUntilCancelled() {
    for (int steps = 0;; ++steps) {
        if (co_await isCancelled()) co_return steps;
        co_await inBackground(Priority::utility, [] { std::this_thread::sleep_for(1ms); });
    }
}

}  // namespace

TEST(ConcurrencyTests, aTaskGoesOnAtItsHomeWhereverTheAwaitedWorkWasDone) {
    runUntilFinished(loop, []() -> Task<> {
        const auto mainThread = std::this_thread::get_id();
        const auto worker =
            co_await inBackground(Priority::utility, [] { return std::this_thread::get_id(); });
        EXPECT_NE(worker, mainThread);
        EXPECT_EQ(std::this_thread::get_id(), mainThread);

        const auto visitor = [](std::thread::id main) -> Task<> {
            const auto home = std::this_thread::get_id();
            EXPECT_NE(home, main);
            EXPECT_EQ(co_await onMain(currentThread()), main);
            EXPECT_EQ(std::this_thread::get_id(), home);
            EXPECT_EQ(co_await currentThread(), home);
            co_await sleepFor(1ms);
            EXPECT_EQ(std::this_thread::get_id(), home);
        };
        co_await start(Home::background(loop), visitor(mainThread)).value();
        EXPECT_EQ(std::this_thread::get_id(), mainThread);
    }());
}

TEST(ConcurrencyTests, errorsReachTheWaiterFromEveryThread) {
    runUntilFinished(loop, []() -> Task<> {
        const auto direct = co_await outcomeOf(failInBackground());
        EXPECT_THROW(std::rethrow_exception(direct.error()), std::runtime_error);
        const auto started = co_await outcomeOf(start(Home::background(loop), failInBackground()).value());
        EXPECT_THROW(std::rethrow_exception(started.error()), std::runtime_error);
        const auto visited = co_await outcomeOf(onMain(failInBackground()));
        EXPECT_THROW(std::rethrow_exception(visited.error()), std::runtime_error);
    }());
    EXPECT_THROW(runUntilFinished(loop, failInBackground()), std::runtime_error);
}

TEST(ConcurrencyTests, onlyCheckpointsAndSleepsNoticeACancellation) {
    runUntilFinished(loop, []() -> Task<> {
        std::atomic<bool> finishedWork = false;
        const auto work = [](std::atomic<bool>& finished) -> Task<> {
            co_await inBackground(Priority::utility, [&finished] {
                std::this_thread::sleep_for(30ms);
                finished = true;
            });
            EXPECT_TRUE(finished) << "waiting for work that was begun was cut short";
            EXPECT_TRUE(co_await isCancelled());
            co_await checkCancellation();
            ADD_FAILURE() << "a cancelled task passed a checkpoint";
        };
        const auto handle = start(Home::background(loop), work(finishedWork));
        handle.cancel();
        const auto outcome = co_await outcomeOf(handle.value());
        EXPECT_THROW(std::rethrow_exception(outcome.error()), CancellationError);
        EXPECT_FALSE(co_await isCancelled()) << "the cancellation of another task leaked into this one";
    }());
}

TEST(ConcurrencyTests, aCancellationEndsASleepEarly) {
    runUntilFinished(loop, []() -> Task<> {
        const auto begin = std::chrono::steady_clock::now();
        const auto handle = start(Home::main(loop), sleepFor(1h));
        co_await sleepFor(5ms);
        handle.cancel();
        const auto outcome = co_await outcomeOf(handle.value());
        EXPECT_THROW(std::rethrow_exception(outcome.error()), CancellationError);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 10min);
    }());
}

TEST(ConcurrencyTests, aWaiterHandsItsCancellationOnAndStillWaits) {
    runUntilFinished(loop, []() -> Task<> {
        const auto inner = start(Home::background(loop), countUntilCancelled());
        const auto outer = start(Home::main(loop), withForwardedCancellation(inner));
        co_await sleepFor(5ms);
        outer.cancel();
        EXPECT_GT(co_await outer.value(), 0);
    }());
}

TEST(ConcurrencyTests, aDroppedHandleDoesNotCancel) {
    runUntilFinished(loop, []() -> Task<> {
        std::atomic<bool> finished = false;
        const auto work = [](std::atomic<bool>& done) -> Task<> {
            co_await sleepFor(5ms);
            co_await checkCancellation();
            done = true;
        };
        {
            const auto dropped = start(Home::background(loop), work(finished));
        }
        while (!finished)
            co_await sleepFor(1ms);
    }());
}

TEST(ConcurrencyTests, manyTasksMeetOnTheMainThreadWithoutALock) {
    constexpr int tasks = 50;
    constexpr int visits = 20;
    const auto visit = [](int& counter) -> Task<> {
        ++counter;
        co_return;
    };
    const auto visitor = [](auto visitMain, int& counter) -> Task<> {
        for (int i = 0; i < visits; ++i)
            co_await onMain(visitMain(counter));
    };
    const auto everything = [](auto visitMain, auto makeVisitor, int& counter) -> Task<> {
        std::vector<TaskHandle<void>> handles;
        for (int i = 0; i < tasks; ++i) {
            handles.push_back(start(Home::background(loop), makeVisitor(visitMain, counter)));
        }
        for (const auto& handle : handles)
            co_await handle.value();
    };
    int counter = 0;
    runUntilFinished(loop, everything(visit, visitor, counter));
    EXPECT_EQ(counter, tasks * visits);
}

}  // namespace tessel
