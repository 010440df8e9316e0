#pragma once

#include <QColor>
#include <QFont>

/// How everything in the window looks: one scale of distances, one set of fonts, one set of colours. All of
/// it follows the desktop's application font and palette. Main thread only.
namespace tessel {

/// Distances in device-independent pixels.
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

/// The font for a use, derived from the application's font and never smaller than 11 pixels.
[[nodiscard]] QFont styledFont(FontRole role, QFont::Weight weight = QFont::Normal);

/// A width designed for the default font, in pixels, for the application's font.
[[nodiscard]] int scaledWithFont(int width);

/// What a colour says. Each can be read as text on every background below.
enum class Tone { primary, secondary, green, blue, orange, red, accent };

/// The colours of one palette, light or dark.
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
    QColor windowBackground;     ///< header and cards
    QColor underPageBackground;  ///< behind the cards
    QColor controlBackground;    ///< the disk table
    QColor textBackground;       ///< the operation log

    [[nodiscard]] QColor of(Tone tone) const;
};

/// The colours of the application's palette as it is now. Ask again at each painting: the palette may change.
[[nodiscard]] Colors currentColors();

/// The same colour, opacity 0 to 1.
[[nodiscard]] QColor withOpacity(QColor color, double opacity);

/// The colour with a share (0 to 1) of another, opaque.
[[nodiscard]] QColor mixed(const QColor& color, const QColor& other, double share);

/// How well two opaque colours can be told apart, 1 to 21, as the WCAG define it. Text needs 4.5.
[[nodiscard]] double contrastRatio(const QColor& one, const QColor& other);

}  // namespace tessel
