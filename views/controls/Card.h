#pragma once

#include "views/controls/Box.h"

namespace tessel {

/// The box around one group of the window's content.
class Card : public Box {
  public:
    Card();
};

}  // namespace tessel
