#include "views/controls/ElidedLabel.h"

#include <QPainter>

#include "views/controls/ToolTip.h"

namespace tessel {

ElidedLabel::ElidedLabel(const TextLook& look, Qt::TextElideMode mode) : TextLabel({}, look), mode(mode) {}

bool ElidedLabel::isElided() const {
    return fontMetrics().horizontalAdvance(text()) > width();
}

QSize ElidedLabel::minimumSizeHint() const {
    return {std::min(sizeHint().width(), fontMetrics().horizontalAdvance("mmm…")), sizeHint().height()};
}

bool ElidedLabel::event(QEvent* event) {
    return (isElided() && showPlainToolTip(*this, *event, text())) || TextLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), mode, width()));
}

}  // namespace tessel
