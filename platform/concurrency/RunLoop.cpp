#include "platform/concurrency/RunLoop.h"

#include <utility>

namespace tessel {

void RunLoop::post(std::function<void()> work) {
    const std::lock_guard lock(mutex);
    pending.push_back(std::move(work));
    changed.notify_one();
}

void RunLoop::run() {
    std::unique_lock lock(mutex);
    while (true) {
        changed.wait(lock, [this] { return isStopped || !pending.empty(); });
        if (std::exchange(isStopped, false)) return;
        auto work = std::move(pending.front());
        pending.pop_front();
        lock.unlock();
        work();
        work = nullptr;
        lock.lock();
    }
}

void RunLoop::stop() {
    const std::lock_guard lock(mutex);
    isStopped = true;
    changed.notify_one();
}

}  // namespace tessel
