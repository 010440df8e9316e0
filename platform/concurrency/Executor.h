#pragma once

#include <functional>
#include <memory>

namespace tessel {

/// A thread that runs what is posted to it, one piece after another in the order of posting.
class Executor {
  public:
    virtual ~Executor() = default;

    /// May be called on any thread; never runs the work before it returns.
    virtual void post(std::function<void()> work) = 0;
};

/// The thread that owns the program's state: the window's event loop, or a RunLoop where there is no window.
using MainThread = std::shared_ptr<Executor>;

}  // namespace tessel
