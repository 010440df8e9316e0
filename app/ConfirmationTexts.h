#pragma once

#include <string>

#include "viewmodel/TesselViewModel.h"

namespace tessel {

/// What the confirmation alert says about the write that would be started now.
[[nodiscard]] std::string confirmationMessage(const TesselViewModel& viewModel);
[[nodiscard]] std::string confirmationButtonTitle(const TesselViewModel& viewModel);

}  // namespace tessel
