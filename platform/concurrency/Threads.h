#pragma once

#include <functional>

namespace tessel {

/// How urgent the work on a background thread is: somebody waits for it, or nobody does.
enum class Priority { userInitiated, utility };

/// Runs the work on a new thread that belongs to nobody and ends with the work. The work must not throw.
/// Throws std::system_error when the system allows no more threads.
void startThread(Priority priority, std::function<void()> work);

}  // namespace tessel
