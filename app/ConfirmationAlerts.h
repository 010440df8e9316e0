#pragma once

#include <functional>
#include <string>

#include "viewmodel/TesselViewModel.h"
#include "views/alerts/AlertDialog.h"

namespace tessel {

/// What the confirmation alert says about the write that would be started now.
[[nodiscard]] std::string confirmationMessage(const TesselViewModel& viewModel);
[[nodiscard]] std::string confirmationButtonTitle(const TesselViewModel& viewModel);

/// Returns the alert that says this, and calls `write` if the user confirms.
[[nodiscard]] AlertDialog::Fields confirmationAlert(const TesselViewModel& viewModel,
                                                    std::function<void()> write);

/// What the window says from the wish to close it during a write until the write has ended.
inline constexpr const char* closingNote = "Velmora Tessel quits once the card is closed and ejected.";

/// The question to a user who closes the window during a write.
struct StopQuestion {
    std::string message;  ///< what becomes of the card if the write is stopped now
    std::string continueButtonTitle;

    bool operator==(const StopQuestion&) const = default;
};
[[nodiscard]] StopQuestion stopQuestion(const TesselViewModel& viewModel);

/// Returns the alert that asks this, and calls `stopAndQuit` if the user wants that.
[[nodiscard]] AlertDialog::Fields stopAlert(const StopQuestion& question, std::function<void()> stopAndQuit);

}  // namespace tessel
