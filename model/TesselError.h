#pragma once

#include <exception>
#include <string>

namespace tessel {

/// Every failure that the system words itself.
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

    /// A case without payload.
    explicit TesselError(Case kind);
    /// The message is a complete sentence and is shown unchanged.
    static TesselError commandFailed(std::string message);
    /// The reason is one of the policy's messages.
    static TesselError unsafeDisk(std::string reason);
    static TesselError confirmationRequired(std::string expectedText);

    Case kind() const { return errorCase; }
    /// The user-facing sentence.
    const std::string& errorDescription() const { return description; }
    const char* what() const noexcept override { return description.c_str(); }

  private:
    TesselError(Case kind, std::string payload);

    Case errorCase;
    std::string description;
};

/// The sentence to show for an error of any kind. The only place that turns an exception into text.
std::string localizedDescription(const std::exception_ptr& error);

}  // namespace tessel
