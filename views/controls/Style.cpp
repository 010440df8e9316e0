#include "views/controls/Style.h"

#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QPalette>
#include <QWidget>
#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <utility>

namespace tessel {

namespace {

constexpr int designedBodySize = 13;  // every size below is relative to it

int designedSize(FontRole role) {
    switch (role) {
        case FontRole::title:
            return 26;
        case FontRole::headline:
            return 14;
        case FontRole::body:
        case FontRole::subheadline:
            return 13;
        case FontRole::caption:
            return 12;
        case FontRole::smallestCaption:
        case FontRole::monospaced:
            return 11;
        case FontRole::smallMonospaced:
            return 10;
    }
    return designedBodySize;
}

int bodySize() {
    return std::max(QFontInfo(QGuiApplication::font()).pixelSize(), designedBodySize);
}

constexpr double readableContrast = 4.8;  // is 4.5 and what a faint tint behind the text takes away

double relativeLuminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// Moves the colour towards `goal` until it can be read on all of the backgrounds.
QColor readable(QColor color, const QColor& goal, std::span<const QColor> backgrounds) {
    const auto canBeRead = [&](const QColor& background) {
        return contrastRatio(color, background) >= readableContrast;
    };
    for (int step = 0; step < 40 && !std::ranges::all_of(backgrounds, canBeRead); ++step)
        color = mixed(color, goal, 0.06);
    return color;
}

struct Hues {
    QColor green;
    QColor blue;
    QColor orange;
    QColor red;
};

Hues lightHues() {
    return {QColor(0x1a7f37), QColor(0x0a63c9), QColor(0xa85400), QColor(0xc62828)};
}

Hues darkHues() {
    return {QColor(0x57cc75), QColor(0x6fb3ff), QColor(0xf2a54e), QColor(0xff8178)};
}

/// Calls a function when a widget is told that the application's font has changed.
class FontFollower : public QObject {
  public:
    FontFollower(QWidget& widget, std::function<void()> apply) : QObject(&widget), apply(std::move(apply)) {}

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::ApplicationFontChange) apply();
        return false;
    }

  private:
    std::function<void()> apply;
};

}  // namespace

QFont styledFont(FontRole role, QFont::Weight weight) {
    const bool isMonospaced = role == FontRole::monospaced || role == FontRole::smallMonospaced;
    QFont font = isMonospaced ? QFontDatabase::systemFont(QFontDatabase::FixedFont) : QGuiApplication::font();
    font.setFamilies(font.families());  // otherwise a theme's font for labels takes its place
    font.setPixelSize(scaledWithFont(designedSize(role)));
    font.setWeight(weight);
    return font;
}

int scaledWithFont(int length) {
    return length * bodySize() / designedBodySize;
}

QSize scaledWithFont(const QSize& size) {
    return {scaledWithFont(size.width()), scaledWithFont(size.height())};
}

void followApplicationFont(QWidget& widget, std::function<void()> apply) {
    apply();
    widget.installEventFilter(new FontFollower(widget, std::move(apply)));
}

void passOnApplicationFont(QWidget& window) {
    window.installEventFilter(new FontFollower(window, [&window] {
        for (auto* widget : window.findChildren<QWidget*>()) {
            QEvent change(QEvent::ApplicationFontChange);
            QCoreApplication::sendEvent(widget, &change);
        }
    }));
}

QPalette darkPalette() {
    QPalette palette(QColor("#2b2d30"), QColor("#26282b"));
    palette.setColor(QPalette::Base, QColor("#1c1e20"));
    palette.setColor(QPalette::AlternateBase, QColor("#242629"));
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, QColor("#e6e7e9"));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor("#7d8084"));
    palette.setColor(QPalette::ToolTipBase, QColor("#3a3d41"));
    palette.setColor(QPalette::PlaceholderText, QColor("#9a9da1"));
    palette.setColor(QPalette::Highlight, QColor("#3574d6"));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

QColor Colors::of(Tone tone) const {
    switch (tone) {
        case Tone::primary:
            return primary;
        case Tone::secondary:
            return secondary;
        case Tone::green:
            return green;
        case Tone::blue:
            return blue;
        case Tone::orange:
            return orange;
        case Tone::red:
            return red;
        case Tone::accent:
            return accent;
    }
    return primary;
}

Colors currentColors() {
    const QPalette palette = QGuiApplication::palette();
    const QColor window = palette.color(QPalette::Active, QPalette::Window);
    const QColor base = palette.color(QPalette::Active, QPalette::Base);
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const bool isDark = relativeLuminance(text) > relativeLuminance(window);
    const bool isBaseLighter = relativeLuminance(base) > relativeLuminance(window);
    const QColor goal = isDark ? Qt::white : Qt::black;

    Colors colors;
    colors.windowBackground = isBaseLighter ? base : window;
    colors.underPageBackground = isBaseLighter ? window : base;
    if (contrastRatio(colors.windowBackground, colors.underPageBackground) < 1.05)
        colors.underPageBackground = mixed(colors.windowBackground, Qt::black, isDark ? 0.3 : 0.06);
    colors.controlBackground = mixed(colors.windowBackground, colors.underPageBackground, 0.4);
    colors.textBackground = colors.controlBackground;

    const std::array plain{colors.windowBackground, colors.underPageBackground, colors.controlBackground};
    colors.primary = readable(text, goal, plain);
    const auto toned = [&](const QColor& hue) {
        const QColor tinted = mixed(colors.windowBackground, hue, 0.12);
        const std::array backgrounds{plain[0], plain[1], plain[2], tinted,
                                     mixed(colors.controlBackground, hue, 0.12)};
        return readable(hue, goal, backgrounds);
    };
    const Hues hues = isDark ? darkHues() : lightHues();
    colors.green = toned(hues.green);
    colors.blue = toned(hues.blue);
    colors.orange = toned(hues.orange);
    colors.red = toned(hues.red);
    const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
    colors.accent = toned(highlight);
    const std::array white{QColor(Qt::white)};
    colors.accentFill = readable(highlight, Qt::black, white);
    colors.redFill = readable(lightHues().red, Qt::black, white);
    // Secondary text also lies on rows tinted green or with the accent.
    const std::array tinted{plain[0], plain[1], plain[2], mixed(colors.controlBackground, colors.green, 0.12),
                            mixed(colors.controlBackground, colors.accent, 0.12)};
    colors.secondary = readable(mixed(text, colors.windowBackground, 0.4), goal, tinted);
    return colors;
}

QColor withOpacity(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

QColor mixed(const QColor& color, const QColor& other, double share) {
    const auto channel = [share](float from, float to) {
        return static_cast<float>(from + (to - from) * share);
    };
    return QColor::fromRgbF(channel(color.redF(), other.redF()), channel(color.greenF(), other.greenF()),
                            channel(color.blueF(), other.blueF()));
}

double contrastRatio(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({relativeLuminance(one), relativeLuminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

}  // namespace tessel
