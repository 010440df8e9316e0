#pragma once

#include <QLabel>

#include "views/controls/Style.h"

namespace tessel {

/// The font and colour of a text.
struct TextLook {
    FontRole font = FontRole::body;
    Tone tone = Tone::primary;
    QFont::Weight weight = QFont::Normal;

    bool operator==(const TextLook&) const = default;
};

/// A plain text in one of the window's looks; it follows the application's font and palette. Texts are never
/// read as markup.
class TextLabel : public QLabel {
  public:
    TextLabel(const QString& text, const TextLook& look);

    [[nodiscard]] const TextLook& look() const { return currentLook; }
    void setLook(const TextLook& look);

  protected:
    void changeEvent(QEvent* event) override;
    /// Called when the look, the application's font or its palette changed.
    virtual void applyLook();

  private:
    TextLook currentLook;
};

/// A text that wraps at the width it is given.
[[nodiscard]] TextLabel* wrappedLabel(const QString& text, const TextLook& look);

}  // namespace tessel
