#pragma once

#include <exception>
#include <string>

namespace tessel {

/// Is thrown for every failure that the program words itself.
class TesselError : public std::exception {
  public:
    enum class Case {
        commandFailed,
        unsafeDisk,
        confirmationRequired,
        invalidImage,
        imageUnavailable,
        imageChanged,
        imageTooLarge,
        noSelectedDisk,
        diskChanged,
        verificationFailed,
        operationCancelled,
    };

    /// Makes an error of a case without payload.
    explicit TesselError(Case kind);
    /// The message is a complete sentence and is shown unchanged.
    static TesselError commandFailed(const std::string& message);
    /// The reason is one of the policy's messages.
    static TesselError unsafeDisk(const std::string& reason);
    static TesselError confirmationRequired(const std::string& expectedText);

    Case kind() const { return errorCase; }
    /// Returns the sentence that is shown to the person.
    const std::string& errorDescription() const { return description; }
    const char* what() const noexcept override { return description.c_str(); }

  private:
    TesselError(Case kind, const std::string& payload);

    Case errorCase;
    std::string description;
};

/// Is thrown in place of diskChanged, and reads like it, where the system no longer lists the disk at all.
class DiskGoneError : public TesselError {
  public:
    DiskGoneError() : TesselError(Case::diskChanged) {}
};

/// Returns the sentence to show for an error of any kind. This is the only place that turns an exception into
/// text.
std::string localizedDescription(const std::exception_ptr& error);

}  // namespace tessel
