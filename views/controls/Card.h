#pragma once

#include <QString>

#include "views/controls/Box.h"

class QVBoxLayout;

namespace tessel {

/// Frames one group of the window's content, which screen readers announce by its name.
class Card : public Box {
  public:
    explicit Card(const QString& name);
};

/// Lays out a card's symbol and title above its explanation.
[[nodiscard]] QVBoxLayout* cardHeading(const QString& symbol, const QString& title,
                                       const QString& explanation);

}  // namespace tessel
