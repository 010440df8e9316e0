#include "views/controls/Button.h"

#include <QPainter>
#include <algorithm>

#include "views/accessibility/Accessibility.h"
#include "views/controls/Painting.h"
#include "views/controls/Style.h"
#include "views/controls/Symbol.h"

namespace tessel {

namespace {

struct Measures {
    FontRole font;
    QSize padding;
    int radius;
};

Measures measuresOf(Button::Size size) {
    switch (size) {
        case Button::Size::small:
            return {FontRole::caption, scaledWithFont(QSize(10, 5)), 7};
        case Button::Size::regular:
            return {FontRole::body, scaledWithFont(QSize(14, 7)), 8};
        case Button::Size::large:
            return {FontRole::headline, scaledWithFont(QSize(18, 11)), 10};
    }
    return {FontRole::body, scaledWithFont(QSize(14, 7)), 8};
}

constexpr double ringGap = 3;  // holds the focus ring and the gap between it and the fill

}  // namespace

Button::Button(const Fields& fields) : symbol(fields.symbol), look(fields.look), size(fields.size) {
    presentButtonToScreenReaders<Button, QAccessible::Button>();
    setText(fields.text);
    setAttribute(Qt::WA_Hover);
    setAutoDefault(true);  // so that Return presses it too
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    followApplicationFont(*this, [this] {
        setFont(styledFont(measuresOf(size).font, isProminent() ? QFont::DemiBold : QFont::Medium));
        updateGeometry();
    });
    if (fields.key.isEmpty()) return;
    setShortcut(fields.key);
    setToolTip(withKey(fields.text));
}

QString Button::withKey(const QString& words) const {
    return words + " (" + shortcut().toString(QKeySequence::NativeText) + ")";
}

void Button::setDot(bool dot) {
    if (dot == hasDot) return;
    hasDot = dot;
    update();
}

QSize Button::sizeHint() const {
    const QSize padding = measuresOf(size).padding;
    return {contentWidth() + 2 * padding.width(), fontMetrics().height() + 2 * padding.height()};
}

QSize Button::minimumSizeHint() const {
    const int textWidth = fontMetrics().horizontalAdvance(text());
    const int fewLetters = fontMetrics().horizontalAdvance("mm…");
    return sizeHint() - QSize(std::max(textWidth - fewLetters, 0), 0);
}

void Button::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintBackground(painter);
    paintContent(painter);
    if (hasDot) paintDot(painter);
}

bool Button::isProminent() const {
    return look == Look::prominent || look == Look::destructiveProminent;
}

int Button::symbolSize() const {
    return symbol.isEmpty() ? 0 : fontMetrics().ascent() + spacing::hair;
}

int Button::contentWidth() const {
    const int gap = symbol.isEmpty() ? 0 : spacing::small - spacing::hair;
    return symbolSize() + gap + fontMetrics().horizontalAdvance(text());
}

QColor Button::ink() const {
    const Colors colors = currentColors();
    if (!isEnabled()) return withOpacity(colors.primary, 0.5);
    if (isProminent()) return Qt::white;
    return look == Look::destructive ? colors.red : colors.primary;
}

void Button::paintBackground(QPainter& painter) const {
    const Colors colors = currentColors();
    RoundedBox box{.bounds = rect(), .radius = static_cast<double>(measuresOf(size).radius)};
    if (showsKeyboardFocus(*this)) {
        paintFocusRing(painter, box.bounds, box.radius);
        box.bounds.adjust(ringGap, ringGap, -ringGap, -ringGap);
        box.radius -= ringGap;
    }
    const bool isHovered = isEnabled() && underMouse();
    if (isProminent() && isEnabled()) {
        const QColor fill = look == Look::prominent ? colors.accentFill : colors.redFill;
        box.fill = mixed(fill, Qt::black, isDown() ? 0.24 : isHovered ? 0.12 : 0);
    } else {
        box.fill = withOpacity(colors.primary, isDown() ? 0.16 : isHovered ? 0.1 : 0.05);
        box.stroke = withOpacity(colors.primary, isEnabled() ? 0.16 : 0.12);
    }
    paintBox(painter, box);
}

void Button::paintContent(QPainter& painter) const {
    const int shownWidth = std::min(contentWidth(), width() - 2 * measuresOf(size).padding.width());
    const int left = (width() - shownWidth) / 2;
    const int beforeText = contentWidth() - fontMetrics().horizontalAdvance(text());
    const QRect textBounds(left + beforeText, 0, shownWidth - beforeText + 1, height());
    paintSymbol(painter, symbol, QRect(left, 0, symbolSize(), height()), symbolSize(), ink());
    painter.setPen(ink());
    painter.drawText(textBounds, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, textBounds.width()));
}

void Button::paintDot(QPainter& painter) const {
    const QPointF center =
        QPoint((width() - contentWidth()) / 2 + symbolSize(), (height() - symbolSize()) / 2 + 1);
    const Colors colors = currentColors();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colors.windowBackground, 1.5));
    painter.setBrush(colors.accent);
    const double radius = scaledWithFont(4);
    painter.drawEllipse(center, radius, radius);
}

}  // namespace tessel
