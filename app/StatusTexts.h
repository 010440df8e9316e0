#pragma once

#include <QString>

#include "viewmodel/TesselOperationState.h"
#include "views/controls/Style.h"

namespace tessel {

/// What the window says about the state of the program.
QString statusTitle(const TesselOperationState& state);
Tone statusTone(const TesselOperationState& state);

/// "42%", rounded half away from zero.
QString percentText(double fraction);

}  // namespace tessel
