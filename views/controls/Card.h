#pragma once

#include "views/controls/Box.h"

namespace tessel {

/// Frames one group of the window's content.
class Card : public Box {
  public:
    Card();
};

}  // namespace tessel
