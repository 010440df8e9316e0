#pragma once

#include <QLabel>

#include "views/controls/Style.h"

class QVBoxLayout;

namespace tessel {

/// Describes how a text looks.
struct TextLook {
    FontRole font = FontRole::body;
    Tone tone = Tone::primary;
    QFont::Weight weight = QFont::Normal;

    bool operator==(const TextLook&) const = default;
};

/// Shows a plain text in one of the window's looks, which follow the application's font and palette. A text
/// is never read as markup.
class TextLabel : public QLabel {
  public:
    TextLabel(const QString& text, const TextLook& look);

    [[nodiscard]] const TextLook& look() const { return currentLook; }
    void setLook(const TextLook& look);

  protected:
    void changeEvent(QEvent* event) override;
    /// Is called when the look, the application's font or its palette has changed.
    virtual void applyLook();

  private:
    TextLook currentLook;
};

/// Makes a label whose text wraps at the width that it is given.
[[nodiscard]] TextLabel* wrappedLabel(const QString& text, const TextLook& look);

/// Puts one line of text close above another, both in the middle of the height that they are given.
[[nodiscard]] QVBoxLayout* stackedTexts(QWidget* above, QWidget* below);

}  // namespace tessel
