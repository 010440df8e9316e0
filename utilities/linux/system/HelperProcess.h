#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace tessel {

/// Runs the work in a process of its own, which has no other descriptor open than the one for its answers.
/// Returns the answers once the process has ended, or at the deadline. A process that is still waiting for
/// the kernel then is left behind, because it can't be killed. Throws PlatformError when there are no
/// resources for it.
std::string answersOf(const std::function<void(int answers)>& work,
                      std::chrono::steady_clock::time_point deadline);

}  // namespace tessel
