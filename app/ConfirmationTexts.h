#pragma once

#include <string>

#include "viewmodel/TesselViewModel.h"

namespace tessel {

/// What the confirmation alert says about the write that would be started now.
[[nodiscard]] std::string confirmationMessage(const TesselViewModel& viewModel);
[[nodiscard]] std::string confirmationButtonTitle(const TesselViewModel& viewModel);

/// What is asked of a person who closes the window during a write.
struct StopQuestion {
    std::string message;  ///< says what becomes of the card if the write is stopped now
    std::string continueButtonTitle;

    bool operator==(const StopQuestion&) const = default;
};
[[nodiscard]] StopQuestion stopQuestion(const TesselViewModel& viewModel);

}  // namespace tessel
