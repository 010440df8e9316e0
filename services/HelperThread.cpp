#include "services/HelperThread.h"

#include <exception>
#include <utility>

#include "foundation/Mutex.h"
#include "platform/concurrency/Background.h"

namespace tessel {

struct HelperThread::Shared {
    enum class State { idle, working, ended };

    std::function<void()> work;  ///< used by the thread alone
    Mutex mutex;
    std::condition_variable_any changed;
    State state __attribute__((guarded_by(mutex))) = State::idle;
    std::exception_ptr error __attribute__((guarded_by(mutex)));

    explicit Shared(std::function<void()> work) : work(std::move(work)) {}

    /// Does the work each time it is told to, until the owner is gone. Then destroys what the work owns,
    /// since that may take as long as the work itself.
    void run() {
        while (isToldToWork())
            finishWork(Outcome<void>::of(work));
        work = nullptr;
    }

    void finishWork(Outcome<void> outcome) {
        const MutexLock lock(mutex);
        if (state == State::ended) return;
        error = std::exchange(outcome, {}).error();
        state = State::idle;
        changed.notify_all();
    }

    bool isToldToWork() {
        MutexLock lock(mutex);
        while (state == State::idle)
            lock.wait(changed);
        return state == State::working;
    }

    void begin() {
        const MutexLock lock(mutex);
        state = State::working;
        changed.notify_all();
    }

    /// Waits for the work or the stop, whichever comes first.
    void wait(const std::stop_token& stop) {
        const std::stop_callback wakeUp(stop, [this] {
            const MutexLock callbackLock(mutex);
            changed.notify_all();
        });
        MutexLock lock(mutex);
        while (state == State::working && !stop.stop_requested())
            lock.wait(changed);
    }

    std::exception_ptr takeError() {
        const MutexLock lock(mutex);
        return std::exchange(error, nullptr);
    }

    /// Waits until `end` at the latest. Returns whether the work is done.
    bool isDoneBy(std::chrono::steady_clock::time_point end) {
        MutexLock lock(mutex);
        while (state == State::working && lock.waitUntil(changed, end)) {
        }
        return state != State::working;
    }

    void end() {
        const MutexLock lock(mutex);
        state = State::ended;
        changed.notify_all();
    }
};

HelperThread::HelperThread(std::function<void()> work) :
    shared(std::make_shared<Shared>(std::move(work))),
    thread(startThread([shared = shared] { shared->run(); })) {}

HelperThread::~HelperThread() {
    shared->end();
    thread.detach();
}

void HelperThread::begin() {
    shared->begin();
}

void HelperThread::wait(const std::stop_token& stop) {
    shared->wait(stop);
    checkCancellation(stop);
}

bool HelperThread::isDoneWithin(std::chrono::milliseconds duration) {
    return shared->isDoneBy(std::chrono::steady_clock::now() + duration);
}

void HelperThread::finish(const std::stop_token& stop) {
    wait(stop);
    if (const auto error = shared->takeError()) std::rethrow_exception(error);
}

}  // namespace tessel
