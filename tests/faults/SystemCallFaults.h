#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace tessel {

/// What goes wrong with a system call of this program.
struct SystemCallFault {
    /// The call and what it is about: "pwrite card", "pread image", "pipe2".
    std::string call;
    /// The number of the call since the fault was planted; the first is 1.
    int occurrence = 1;
    /// Whether every later call goes wrong, too.
    bool persists = false;
    /// A number from <cerrno>, or 0 for a call that does not report a failure.
    int error = 0;
    /// What a call without an error does instead: "zero" moves nothing, "short" moves half, "lie" moves
    /// nothing and claims to have moved everything, or answers with a false number; "is 7" answers with that
    /// number; "never answers" waits until the fault is removed.
    std::string effect;
};

/// Makes calls of this program fail as planted. Descriptors and paths count as the card's or the image's by
/// the file that they lead to. There can be only one at a time.
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

    /// Makes waits for a child with a time limit find it elapsed after a moment.
    void setHurried(bool isHurried);
};

}  // namespace tessel
