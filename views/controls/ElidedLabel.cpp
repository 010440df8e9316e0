#include "views/controls/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>

namespace tessel {

ElidedLabel::ElidedLabel(const TextLook& look, Qt::TextElideMode mode) : TextLabel({}, look), mode(mode) {}

bool ElidedLabel::isElided() const {
    return fontMetrics().horizontalAdvance(text()) > width();
}

QSize ElidedLabel::minimumSizeHint() const {
    return {std::min(sizeHint().width(), fontMetrics().horizontalAdvance("mmm…")), sizeHint().height()};
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && isElided()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), plainToolTip(text()), this);
        return true;
    }
    return TextLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), mode, width()));
}

QString plainToolTip(const QString& text) {
    return Qt::convertFromPlainText(text);
}

}  // namespace tessel
