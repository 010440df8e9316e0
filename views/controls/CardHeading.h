#pragma once

#include <QString>

class QVBoxLayout;

namespace tessel {

/// Lays out a card's symbol and title above its explanation.
[[nodiscard]] QVBoxLayout* cardHeading(const QString& symbol, const QString& title,
                                       const QString& explanation);

}  // namespace tessel
