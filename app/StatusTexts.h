#pragma once

#include <QString>

#include "viewmodel/TesselViewModel.h"
#include "views/controls/Style.h"

namespace tessel {

/// What the window says from the request to stop until the operation has ended.
inline constexpr const char* stoppingTitle = "Stopping Operation";

/// What the window says about a state.
[[nodiscard]] QString statusTitle(const TesselOperationState& state);
[[nodiscard]] Tone statusColor(const TesselOperationState& state);

/// Returns the title of the present state, or of stopping if that has been requested.
[[nodiscard]] QString liveStatusTitle(const TesselViewModel& viewModel);

/// Returns what else the user should know or do, or an empty text: while a dialog keeps the operation from
/// stopping, and after a write.
[[nodiscard]] QString progressHint(const TesselViewModel& viewModel);

/// Returns what screen readers say: each state, what became of a failed or stopped write, what else there is
/// to know after a write, and during a write each phase and each quarter of the write that was passed.
[[nodiscard]] QString announcement(const TesselViewModel& viewModel);

/// Returns a fraction as a percentage such as "42%", rounded half away from zero.
[[nodiscard]] QString percentText(double fraction);

/// Returns the title of the window, which carries the percentage of the write while one runs.
[[nodiscard]] QString liveWindowTitle(const TesselViewModel& viewModel);

}  // namespace tessel
