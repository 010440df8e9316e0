#include "platform/concurrency/Background.h"

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <utility>

#include "foundation/Errors.h"

namespace tessel {

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

void detail::Sleep::begin(const TaskContext& context, std::coroutine_handle<> task) {
    cancellation = context.cancellation;
    // The end of the duration and a stop may both come, but the task resumes once.
    const auto isAsleep = std::make_shared<bool>(true);
    const auto resume = [isAsleep, task] {
        if (std::exchange(*isAsleep, false)) task.resume();
    };
    context.mainThread->postAfter(duration, resume);
    wakeUp.emplace(cancellation, [mainThread = context.mainThread, resume] { mainThread->post(resume); });
}

}  // namespace tessel
