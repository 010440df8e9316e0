#pragma once

#include <QLabel>
#include <QString>

#include "views/controls/Style.h"

class QEvent;
class QTextLayout;
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
/// is never read as markup. Where it wraps, it does so between words, and within a word that is too long.
class TextLabel : public QLabel {
  public:
    TextLabel(const QString& text, const TextLook& look);

    [[nodiscard]] const TextLook& look() const { return currentLook; }
    void setLook(const TextLook& look);

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    /// Applies the look after it, the application's font or its palette has changed.
    virtual void applyLook();

  private:
    /// Breaks the text into the lines that fit. Returns their height in pixels.
    int breakIntoLines(QTextLayout& lines, int width) const;

    TextLook currentLook;
};

/// Returns a label whose text wraps at the width that it is given.
[[nodiscard]] TextLabel* wrappedLabel(const QString& text, const TextLook& look);

/// Shows a symbol before the first line of a wrapped text, both in the same colour.
class SymbolLabel : public TextLabel {
  public:
    SymbolLabel(const QString& symbol, const QString& text, const TextLook& look);

    void setSymbol(const QString& name);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void applyLook() override;

  private:
    [[nodiscard]] int symbolSize() const;
    void makeRoomForSymbol();

    QString symbol;
};

/// Shows a text on one line and shortens it with an ellipsis when it does not fit. The tool tip then shows
/// the whole text, and screen readers always say all of it.
class ElidedLabel : public TextLabel {
  public:
    ElidedLabel(const TextLook& look, Qt::TextElideMode mode);

    [[nodiscard]] bool isElided() const;
    /// Returns what is painted. An isolate whose end was left out ends at the ellipsis, lest what follows
    /// takes the direction of a right-to-left name.
    [[nodiscard]] QString shownText() const;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    Qt::TextElideMode mode;
};

/// Shows the text above the widget if the event asks for a tool tip: as it is, wrapped and never read as
/// markup. Returns whether it did.
bool showPlainToolTip(QWidget& widget, const QEvent& event, const QString& text);

/// Puts one line of text close above another, both in the middle of the height that they are given.
[[nodiscard]] QVBoxLayout* stackedTexts(QWidget* above, QWidget* below);

}  // namespace tessel
