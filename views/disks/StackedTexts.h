#pragma once

class QVBoxLayout;
class QWidget;

namespace tessel {

/// Puts one line of text close above another, both in the middle of the height that they are given.
[[nodiscard]] QVBoxLayout* stackedTexts(QWidget* above, QWidget* below);

}  // namespace tessel
