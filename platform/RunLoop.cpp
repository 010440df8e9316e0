#include "platform/RunLoop.h"

#include <utility>

namespace tessel {

void RunLoop::post(std::function<void()> work) {
    const MutexLock lock(mutex);
    pending.push_back(std::move(work));
    changed.notify_one();
}

void RunLoop::run() {
    while (true) {
        std::function<void()> work;
        {
            MutexLock lock(mutex);
            while (!isStopped && pending.empty())
                lock.wait(changed);
            if (std::exchange(isStopped, false)) return;
            work = std::move(pending.front());
            pending.pop_front();
        }
        work();
    }
}

void RunLoop::stop() {
    const MutexLock lock(mutex);
    isStopped = true;
    changed.notify_one();
}

}  // namespace tessel
