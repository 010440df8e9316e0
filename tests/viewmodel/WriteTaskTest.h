#pragma once

#include "tests/viewmodel/ViewModelTest.h"

namespace tessel {

inline constexpr auto activityBegun = "begin: Writing and verifying an SD-card image";

inline constexpr auto revalidating = "Revalidating /dev/disk4 immediately before the destructive operation.";
inline constexpr auto writing =
    "Writing os.img to /dev/rdisk4. All existing data on the SD card will be destroyed.";
inline constexpr auto verificationEnabled =
    "SHA-256 verification is enabled. Verification reads the written image length back through the same "
    "authorized raw-device descriptor.";

inline constexpr auto interrupted =
    "Writing was interrupted. The SD card may contain incomplete or invalid data and was ejected when "
    "possible.";
inline constexpr auto finalizing =
    "The write had already reached its finalization stage. The SD card was ejected when possible.";
inline constexpr auto unverified =
    "Writing completed, but verification was interrupted. Treat the SD card as unverified before using it.";

inline constexpr auto nothingWritten = "Nothing was written to the SD card.";

inline constexpr auto cardEjected =
    "The SD card is now ejected. To try again, pull it out, insert it again, and refresh the disk list.";
inline constexpr auto diskChanged =
    "The selected disk changed after it was scanned. Refresh the disk list and select it again.";
inline constexpr auto diskGone =
    "/dev/disk4 is gone: the SD card was removed, or its reader was disconnected.";

/// The commands that a whole write gives to the utilities.
inline constexpr auto allCommands = "list info list info unmount authorize list info eject";

inline Messages operator+(Messages messages, const Messages& more) {
    messages.insert(messages.end(), more.begin(), more.end());
    return messages;
}

/// Tests the messages of a write, and its end.
class WriteTaskTest : public ViewModelTest {
  protected:
    using enum ImageWritePhase;

    /// Returns the log of a verified write that got as far as this phase.
    static Messages logUpTo(ImageWritePhase phase) {
        Messages messages{revalidating, writing, verificationEnabled};
        for (size_t i = 0; i <= static_cast<size_t>(phase); ++i)
            messages.emplace_back(phaseMessages[i]);
        return messages;
    }

    static Messages unverifiedLogUpTo(ImageWritePhase phase) {
        auto messages = logUpTo(phase);
        std::erase(messages, verificationEnabled);
        return messages;
    }

    void expectCancellation(const std::string& message) {
        EXPECT_EQ(stateText(), "warning: Operation cancelled");
        EXPECT_EQ(viewModel->progress().writePhaseTitle, "Operation Cancelled");
        EXPECT_EQ(viewModel->progress().writeProgressDetail, message);
        EXPECT_EQ(viewModel->targets().selectedDiskID(), "");
        EXPECT_EQ(listedDisks(), Messages{"disk0"});
        EXPECT_FALSE(viewModel->write().isCancellationRequested());
    }

    static Messages cancellationLog(const std::string& message) {
        return {"Operation cancelled. " + message, "Refresh the disk list before attempting another write."};
    }

    static Messages stopLog(const std::string& message) {
        return Messages{
                   "Stop requested. The operation will stop at the next safe checkpoint, and the SD card "
                   "will be ejected when possible."} +
               cancellationLog(message);
    }

    static Messages stopLogBeforeWriting() { return stopLog(interrupted) + Messages{nothingWritten}; }
};

}  // namespace tessel
