#include "platform/concurrency/Background.h"

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <utility>

#include "foundation/Errors.h"

namespace tessel {

namespace {

/// Resumes at once with the current task's stop token.
struct CurrentToken {
    std::stop_token token;

    bool await_ready() const noexcept { return false; }
    template <typename Promise>
    bool await_suspend(std::coroutine_handle<Promise> task) {
        token = task.promise().context.cancellation;
        return false;
    }
    std::stop_token await_resume() { return std::move(token); }
};

}  // namespace

std::thread startThread(std::function<void()> work) {
    try {
        return std::thread(std::move(work));
    } catch (const std::system_error& error) {
        throw posixError("No thread could be started", error.code().value());
    }
}

void checkCancellation(const std::stop_token& stop) {
    if (stop.stop_requested()) throw CancellationError();
}

void sleepFor(std::chrono::nanoseconds duration, const std::stop_token& stop) {
    std::mutex mutex;
    std::unique_lock lock(mutex);
    std::condition_variable_any().wait_for(lock, stop, duration, [] { return false; });
    checkCancellation(stop);
}

Task<> checkCancellation() {
    checkCancellation(co_await CurrentToken());
}

Task<> sleepFor(std::chrono::nanoseconds duration) {
    co_await inBackground([duration](const std::stop_token& stop) { sleepFor(duration, stop); });
}

Task<bool> isCancelled() {
    co_return (co_await CurrentToken()).stop_requested();
}

}  // namespace tessel
