#pragma once

#include <string>

#include "foundation/Errors.h"

namespace tessel {

/// A failure that the program describes itself, in the sentence that is shown to the user.
class TesselError : public Error {
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
    /// Makes a commandFailed. The message is a complete sentence and is shown unchanged.
    static TesselError commandFailed(const std::string& message);
    /// Makes an unsafeDisk. The reason is one of the policy's messages.
    static TesselError unsafeDisk(const std::string& reason);
    static TesselError confirmationRequired(const std::string& expectedText);
    /// Makes a diskChanged for a disk that the system no longer lists at all.
    static TesselError diskGone();

    [[nodiscard]] Case kind() const { return errorCase; }
    [[nodiscard]] bool isDiskGone() const { return diskIsGone; }

  private:
    TesselError(Case kind, const std::string& payload);

    Case errorCase;
    bool diskIsGone = false;
};

}  // namespace tessel
