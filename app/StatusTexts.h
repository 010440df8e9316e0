#pragma once

#include <QString>

#include "viewmodel/TesselViewModel.h"
#include "views/controls/Style.h"

namespace tessel {

/// What the window says from the request to stop until the operation has ended.
inline constexpr const char* stoppingTitle = "Stopping Operation";

/// What the window says about a state.
[[nodiscard]] QString statusTitle(const TesselOperationState& state);
[[nodiscard]] Tone statusTone(const TesselOperationState& state);

/// Returns the title of the present state, or of stopping if that has been requested.
[[nodiscard]] QString liveStatusTitle(const TesselViewModel& viewModel);

/// Returns what the person has to do before the operation can stop; empty unless a dialog keeps it from
/// stopping.
[[nodiscard]] QString stoppingHint(const TesselViewModel& viewModel);

/// Returns what screen readers say: each state, the reason of a failed write, and during a write each phase
/// and each quarter of the whole workflow that was passed.
[[nodiscard]] QString announcement(const TesselViewModel& viewModel);

/// Words a fraction as a percentage such as "42%", rounded half away from zero.
[[nodiscard]] QString percentText(double fraction);

/// Returns the title of the window, which carries the percentage of the whole workflow while a write runs.
[[nodiscard]] QString liveWindowTitle(const TesselViewModel& viewModel);

}  // namespace tessel
