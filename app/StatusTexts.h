#pragma once

#include <QString>

#include "viewmodel/TesselViewModel.h"
#include "views/controls/Style.h"

namespace tessel {

/// What the window says while a stop has been requested, until the operation has ended.
inline constexpr const char* stoppingTitle = "Stopping Operation";

/// What the window says about a state.
[[nodiscard]] QString statusTitle(const TesselOperationState& state);
[[nodiscard]] Tone statusTone(const TesselOperationState& state);

/// The title of the present state, or that the operation is stopping.
[[nodiscard]] QString liveStatusTitle(const TesselViewModel& viewModel);

/// "42%", rounded half away from zero.
[[nodiscard]] QString percentText(double fraction);

}  // namespace tessel
