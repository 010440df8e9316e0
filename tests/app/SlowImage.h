#pragma once

#include "tests/app/HeldCard.h"

namespace tessel {

/// Holds up every look at a file that is called "slow.img", as a disk does that no longer answers.
extern CardHold slowImage;

}  // namespace tessel
