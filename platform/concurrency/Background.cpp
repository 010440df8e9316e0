#include "platform/concurrency/Background.h"

#include <condition_variable>
#include <mutex>

#include "foundation/Errors.h"

namespace tessel {

Task<bool> isCancelled() {
    co_return (co_await currentContext()).cancellation.stop_requested();
}

Task<> checkCancellation() {
    if (co_await isCancelled()) throw CancellationError();
}

Task<> sleepFor(std::chrono::nanoseconds duration) {
    const auto cancellation = (co_await currentContext()).cancellation;
    co_await inBackground(Priority::utility, [cancellation, duration] {
        std::mutex mutex;
        std::unique_lock lock(mutex);
        std::condition_variable_any().wait_for(lock, cancellation, duration, [] { return false; });
    });
    co_await checkCancellation();
}

}  // namespace tessel
