#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QSize>
#include <functional>

class QWidget;

/// Everything in the window takes its looks from here: from one scale of distances, one set of fonts and one
/// set of colours. Fonts and colours follow the desktop's application font and palette. Use it on the main
/// thread only.
namespace tessel {

/// Distances are in device-independent pixels.
namespace spacing {
inline constexpr int hair = 2;
inline constexpr int tight = 4;
inline constexpr int small = 8;
inline constexpr int medium = 12;
inline constexpr int card = 14;
inline constexpr int page = 16;
}  // namespace spacing

/// What a font is used for.
enum class FontRole {
    title,
    headline,
    body,
    subheadline,
    caption,
    smallestCaption,
    monospaced,
    smallMonospaced,
};

/// Derives the font for a use from the application's font. It is never smaller than 10 pixels.
[[nodiscard]] QFont styledFont(FontRole role, QFont::Weight weight = QFont::Normal);

/// Scales a length that was designed for the default font to the application's font. Both are in pixels.
[[nodiscard]] int scaledWithFont(int length);
[[nodiscard]] QSize scaledWithFont(const QSize& size);

/// Calls the function now, and again each time the application's font has changed, while the widget exists.
/// Requires: the widget is a window, or in one to which passOnApplicationFont() was applied.
void followApplicationFont(QWidget& widget, std::function<void()> apply);

/// Passes each change of the application's font on to the widgets in the window, since Qt notifies only
/// windows.
void passOnApplicationFont(QWidget& window);

/// Returns the colours of a dark window, for where a dark one is wanted and the toolkit has only light
/// colours.
[[nodiscard]] QPalette darkPalette();

/// What a colour says. Each can be read as text on every background below.
enum class Tone { primary, secondary, green, blue, orange, red, accent };

/// Holds the colours of one palette, which may be light or dark.
struct Colors {
    QColor primary;
    QColor secondary;
    QColor green;
    QColor blue;
    QColor orange;
    QColor red;
    QColor accent;
    QColor accentFill;           ///< behind white text
    QColor redFill;              ///< behind white text
    QColor windowBackground;     ///< fills the header and the cards
    QColor underPageBackground;  ///< behind the cards
    QColor controlBackground;    ///< fills the disk table
    QColor textBackground;       ///< fills the frame of the operation log

    [[nodiscard]] QColor of(Tone tone) const;
};

/// Derives the colours from the application's palette. Ask again at each painting, since the palette may
/// change.
[[nodiscard]] Colors currentColors();

/// Gives the colour another opacity, from 0 to 1.
[[nodiscard]] QColor withOpacity(QColor color, double opacity);

/// Mixes a share of another colour, from 0 to 1, into the colour. The result is opaque.
[[nodiscard]] QColor mixed(const QColor& color, const QColor& other, double share);

/// Returns the contrast of two opaque colours, from 1 to 21, as the WCAG define it. Text needs 4.5.
[[nodiscard]] double contrastRatio(const QColor& one, const QColor& other);

}  // namespace tessel
