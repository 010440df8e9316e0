#include "views/controls/Switch.h"

#include <QKeyEvent>
#include <QPainter>

#include "views/accessibility/Accessibility.h"
#include "views/controls/Painting.h"
#include "views/controls/Style.h"

namespace tessel {

namespace {

constexpr int ringWidth = 3;  // leaves room for the focus ring around the track
constexpr double disabledOpacity = 0.6;

}  // namespace

Switch::Switch(const QString& text, Size size) : size(size) {
    presentButtonToScreenReaders<Switch, QAccessible::CheckBox>();
    setText(text);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    followApplicationFont(*this, [this] {
        setFont(styledFont(this->size == Size::small ? FontRole::caption : FontRole::body));
        updateGeometry();
    });
}

QSize Switch::sizeHint() const {
    const int textWidth = fontMetrics().horizontalAdvance(text());
    return {trackBounds().right() + 1 + ringWidth + spacing::small + textWidth,
            std::max(fontMetrics().height() + spacing::tight, trackBounds().height() + 2 * ringWidth)};
}

void Switch::keyPressEvent(QKeyEvent* event) {
    if (isReturn(*event)) return click();
    QCheckBox::keyPressEvent(event);
}

void Switch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(isEnabled() ? 1 : disabledOpacity);
    paintTrack(painter);
    painter.setPen(currentColors().primary);
    const QRect textBounds = rect().adjusted(trackBounds().right() + 1 + ringWidth + spacing::small, 0, 0, 0);
    painter.drawText(textBounds, Qt::AlignLeft | Qt::AlignVCenter, text());
}

QRect Switch::trackBounds() const {
    const int trackHeight = scaledWithFont(size == Size::small ? 16 : 20);
    return {ringWidth, (height() - trackHeight) / 2, trackHeight * 7 / 4, trackHeight};
}

void Switch::paintTrack(QPainter& painter) const {
    const Colors colors = currentColors();
    const QRectF track = trackBounds();
    const double radius = track.height() / 2;
    const QColor off = withOpacity(colors.primary, underMouse() ? 0.14 : 0.08);
    paintBox(painter, {.bounds = track,
                       .radius = radius,
                       .fill = isChecked() ? colors.accentFill : off,
                       .stroke = isChecked() ? colors.accentFill : colors.secondary});
    const double inset = isChecked() ? 2.5 : 4;
    const double diameter = track.height() - 2 * inset;
    const double left = isChecked() ? track.right() - inset - diameter : track.left() + inset;
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? QColor(Qt::white) : colors.secondary);
    painter.drawEllipse(QRectF(left, track.top() + inset, diameter, diameter));
    if (showsKeyboardFocus(*this)) {
        paintFocusRing(painter, track.adjusted(-ringWidth, -ringWidth, ringWidth, ringWidth),
                       radius + ringWidth);
    }
}

}  // namespace tessel
