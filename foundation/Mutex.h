#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tessel {

/// A mutex known to the compiler's thread-safety analysis, which rejects code that uses data marked
/// `guarded_by` without holding the mutex.
class __attribute__((capability("mutex"))) Mutex {
  public:
    void lock() __attribute__((acquire_capability())) { mutex.lock(); }
    void unlock() __attribute__((release_capability())) { mutex.unlock(); }

  private:
    std::mutex mutex;
};

/// Holds a mutex for as long as this object exists.
class __attribute__((scoped_lockable)) MutexLock {
  public:
    explicit MutexLock(Mutex& mutex) __attribute__((acquire_capability(mutex))) : mutex(mutex) {
        mutex.lock();
    }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;
    ~MutexLock() __attribute__((release_capability())) { mutex.unlock(); }

    /// Waits until the condition may have changed. Releases the mutex meanwhile and holds it again
    /// afterwards.
    void wait(std::condition_variable_any& condition) { condition.wait(mutex); }

    /// Waits likewise, but at most until `end`. Returns whether there is still time left.
    bool waitUntil(std::condition_variable_any& condition, std::chrono::steady_clock::time_point end) {
        return condition.wait_until(mutex, end) == std::cv_status::no_timeout;
    }

  private:
    Mutex& mutex;
};

}  // namespace tessel
