#pragma once

#include "tests/app/HeldCard.h"

namespace tessel {

/// Delays every inspection of a file named "slow.img", like a disk that no longer answers.
extern CardHold slowImage;

}  // namespace tessel
