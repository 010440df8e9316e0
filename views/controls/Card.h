#pragma once

#include "views/controls/Box.h"

namespace tessel {

/// Frames one group of the window's content, which screen readers announce by its name.
class Card : public Box {
  public:
    explicit Card(const QString& name);
};

}  // namespace tessel
