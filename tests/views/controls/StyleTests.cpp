#include "views/controls/Style.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPalette>

#include "views/controls/Symbol.h"
#include "views/controls/SymbolLabel.h"

namespace tessel {

namespace {

struct Desktop {
    const char* name;
    QColor window;
    QColor base;
    QColor text;
    QColor highlight;
};

const Desktop desktops[]{
    {"light", "#efefef", "#ffffff", "#000000", "#308cc6"},
    {"dark", "#2b2b2e", "#1d1d1f", "#f0f0f0", "#3584e4"},
    {"one colour", "#f6f5f4", "#f6f5f4", "#2e3436", "#e0c000"},
    {"black", "#000000", "#000000", "#ffffff", "#202020"},
    {"low contrast", "#d0d0d0", "#d8d8d8", "#808080", "#ffd7b0"},
};

/// Gives the application a desktop's palette for as long as this object lives.
class DesktopPalette {
  public:
    explicit DesktopPalette(const Desktop& desktop) : previous(QGuiApplication::palette()) {
        QPalette palette = previous;
        palette.setColor(QPalette::Window, desktop.window);
        palette.setColor(QPalette::Base, desktop.base);
        palette.setColor(QPalette::WindowText, desktop.text);
        palette.setColor(QPalette::Highlight, desktop.highlight);
        QGuiApplication::setPalette(palette);
    }
    ~DesktopPalette() { QGuiApplication::setPalette(previous); }
    DesktopPalette(const DesktopPalette&) = delete;
    DesktopPalette& operator=(const DesktopPalette&) = delete;

  private:
    QPalette previous;
};

constexpr Tone tones[]{Tone::primary, Tone::secondary, Tone::green, Tone::blue,
                       Tone::orange,  Tone::red,       Tone::accent};

}  // namespace

TEST(StyleTests, everyToneCanBeReadOnEveryBackgroundOfEveryDesktop) {
    for (const Desktop& desktop : desktops) {
        const DesktopPalette palette(desktop);
        const Colors colors = currentColors();
        for (const Tone tone : tones) {
            const QColor text = colors.of(tone);
            for (const QColor& background :
                 {colors.windowBackground, colors.underPageBackground, colors.controlBackground,
                  colors.textBackground, mixed(colors.windowBackground, text, 0.08)}) {
                EXPECT_GE(contrastRatio(text, background), 4.5)
                    << desktop.name << ", tone " << static_cast<int>(tone) << " on "
                    << background.name().toStdString();
            }
        }
        for (const QColor& row : {colors.green, colors.accent}) {
            const QColor background = mixed(colors.controlBackground, row, 0.1);
            EXPECT_GE(contrastRatio(colors.secondary, background), 4.5) << desktop.name;
        }
        for (const QColor& fill : {colors.accentFill, colors.redFill})
            EXPECT_GE(contrastRatio(Qt::white, fill), 4.5) << desktop.name;
    }
}

}  // namespace tessel
