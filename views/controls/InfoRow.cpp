#include "views/controls/InfoRow.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

#include "views/accessibility/Accessibility.h"
#include "views/controls/Style.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

constexpr int titleWidth = 72;

}  // namespace

SelectableValue::SelectableValue() {
    presentToScreenReaders<SelectableValue, AccessibleValue>();
    setReadOnly(true);
    setFrame(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    followApplicationFont(*this, [this] { applyLook(); });
}

void SelectableValue::setValue(const QString& value) {
    if (value != text()) {
        setText(value);
        setCursorPosition(0);
        updateGeometry();
        updateFocusPolicy();
    }
}

bool SelectableValue::isElided() const {
    return fontMetrics().horizontalAdvance(text()) > width() - 2 * textMargin;
}

QSize SelectableValue::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + 2 * textMargin + 1, fontMetrics().height()};
}

QSize SelectableValue::minimumSizeHint() const {
    return {fontMetrics().horizontalAdvance("mmmm…mmmm"), fontMetrics().height()};
}

bool SelectableValue::event(QEvent* event) {
    return (isElided() && showPlainToolTip(*this, *event, text())) || QLineEdit::event(event);
}

void SelectableValue::changeEvent(QEvent* event) {
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) applyLook();
}

void SelectableValue::contextMenuEvent(QContextMenuEvent* event) {
    if (!hasSelectedText()) selectAll();
    QLineEdit::contextMenuEvent(event);
}

void SelectableValue::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason) deselect();
}

void SelectableValue::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy) && !hasSelectedText()) {
        QApplication::clipboard()->setText(text());
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void SelectableValue::paintEvent(QPaintEvent* event) {
    if (hasFocus() || hasSelectedText() || !isElided()) {
        QLineEdit::paintEvent(event);
        return;
    }
    QPainter painter(this);
    const QRect line = rect().adjusted(textMargin, 0, -textMargin, 0);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(line, Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideMiddle, line.width()));
}

void SelectableValue::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    updateFocusPolicy();
}

void SelectableValue::applyLook() {
    setFont(styledFont(FontRole::caption, QFont::Medium));
    const QColor color = currentColors().primary;
    if (palette().color(QPalette::Text) != color || palette().color(QPalette::Base).alpha() != 0) {
        QPalette clear = palette();
        clear.setColor(QPalette::Text, color);
        clear.setColor(QPalette::Base, Qt::transparent);
        setPalette(clear);
    }
}

void SelectableValue::updateFocusPolicy() {
    // The Tab key skips a value that can be read in full.
    setFocusPolicy(isElided() ? Qt::StrongFocus : Qt::ClickFocus);
}

InfoRow::InfoRow(const QString& title) :
    titleLabel(new TextLabel(title, {.font = FontRole::caption, .tone = Tone::secondary})),
    valueField(new SelectableValue) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing::small - SelectableValue::textMargin);
    row->addWidget(titleLabel);
    row->addWidget(valueField, 1);
    valueField->setAccessibleName(title);
    followApplicationFont(*this, [this] { titleLabel->setFixedWidth(scaledWithFont(titleWidth)); });
}

void InfoRow::setValue(const QString& value) {
    valueField->setValue(value);
}

QString InfoRow::value() const {
    return valueField->text();
}

}  // namespace tessel
