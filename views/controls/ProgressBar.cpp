#include "views/controls/ProgressBar.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "views/controls/Painting.h"
#include "views/controls/Style.h"

namespace tessel {

namespace {

constexpr int designedThickness = 6;

int thickness() {
    return scaledWithFont(designedThickness);
}

}  // namespace

int percentage(double fraction) {
    return static_cast<int>(std::lround(fraction * 100));
}

ProgressBar::ProgressBar() {
    setRange(0, 100);
    setValue(0);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    followApplicationFont(*this, [this] { updateGeometry(); });
}

void ProgressBar::setFraction(double newFraction) {
    const double clamped = std::clamp(newFraction, 0.0, 1.0);
    if (clamped != fraction) {
        fraction = clamped;
        setValue(percentage(fraction));
        update();
    }
}

QSize ProgressBar::sizeHint() const {
    return {200, thickness()};
}

QSize ProgressBar::minimumSizeHint() const {
    return {60, thickness()};
}

void ProgressBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors colors = currentColors();
    const double radius = thickness() / 2.0;
    paintBox(painter, {.bounds = rect(), .radius = radius, .fill = withOpacity(colors.primary, 0.12)});
    if (fraction > 0) {
        // The bar is never shorter than a dot, so that the beginning can be seen.
        const double length = std::max<double>(fraction * width(), thickness());
        paintBox(painter,
                 {.bounds = QRectF(0, 0, length, height()), .radius = radius, .fill = colors.accent});
    }
}

}  // namespace tessel
