#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace tessel {

/// Describes what goes wrong with a system call of this program.
struct SystemCallFault {
    /// Names the call and what it is about: "pwrite card", "pread image", "pipe2".
    std::string call;
    /// Counts the calls from when the fault was planted; the first is 1.
    int occurrence = 1;
    /// Has every later call go wrong, too.
    bool persists = false;
    /// Is a number from <cerrno>, or 0 for a call that does not tell that it failed.
    int error = 0;
    /// Says what a call without an error does instead: "zero" moves nothing, "short" moves half, "lie" moves
    /// nothing and claims to have moved everything, or answers with another number than is true; "is 7"
    /// answers with that number; "never answers" waits until the fault is removed.
    std::string effect;
};

/// Has the calls of this program fail as they are told to. Descriptors and paths count as the card's or the
/// image's by the file that they lead to. There can be only one at a time.
class SystemCallFaults {
  public:
    SystemCallFaults(const std::filesystem::path& card, const std::filesystem::path& image);
    SystemCallFaults(const SystemCallFaults&) = delete;
    SystemCallFaults& operator=(const SystemCallFaults&) = delete;
    ~SystemCallFaults();

    /// Plants the fault in place of any earlier one, and begins to count.
    void plant(const SystemCallFault& fault);
    /// Waits until the fault has shown.
    void awaitShowing();
    /// Lets every call succeed again. Returns whether the fault ever showed.
    bool remove();

    /// Has threads that wait for a child with a time limit find it elapsed after a moment.
    void setHurried(bool isHurried);
};

}  // namespace tessel
