#include "views/controls/ElidedLabel.h"

#include <QPainter>
#include <algorithm>

#include "views/controls/ToolTip.h"

namespace tessel {

ElidedLabel::ElidedLabel(const TextLook& look, Qt::TextElideMode mode) : TextLabel({}, look), mode(mode) {}

bool ElidedLabel::isElided() const {
    return fontMetrics().horizontalAdvance(text()) > width();
}

QString ElidedLabel::shownText() const {
    constexpr QChar isolateBegin(u'\u2068');
    constexpr QChar isolateEnd(u'\u2069');
    const QString whole = text();
    const QString shown = fontMetrics().elidedText(whole, mode, width());
    const auto ellipsis = std::ranges::mismatch(shown, whole).in1 - shown.begin();
    const auto unended = shown.count(isolateBegin) - shown.count(isolateEnd);
    return unended > 0 ? QString(shown).insert(ellipsis, QString(unended, isolateEnd)) : shown;
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
    painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextSingleLine, shownText());
}

}  // namespace tessel
