#include "platform/concurrency/Threads.h"

#include <sys/resource.h>

#include <thread>
#include <utility>

namespace tessel {

void startThread(Priority priority, std::function<void()> work) {
    std::thread([priority, work = std::move(work)] {
        // On Linux the niceness belongs to the calling thread alone.
        constexpr int politeNiceness = 5;
        if (priority == Priority::utility) setpriority(PRIO_PROCESS, 0, politeNiceness);
        work();
    }).detach();
}

}  // namespace tessel
