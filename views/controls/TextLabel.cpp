#include "views/controls/TextLabel.h"

#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QTextDocument>
#include <QTextLayout>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "views/accessibility/Accessibility.h"
#include "views/controls/Symbol.h"

namespace tessel {

namespace {

/// Large texts are headings, between which a screen reader can jump.
class AccessibleLabel : public QAccessibleWidget {
  public:
    explicit AccessibleLabel(TextLabel& label) : QAccessibleWidget(&label), label(label) {}

    QAccessible::Role role() const override {
        const FontRole font = label.look().font;
        const bool isLarge = font == FontRole::title || font == FontRole::headline;
        return isLarge ? QAccessible::Heading : QAccessible::StaticText;
    }

    QString text(QAccessible::Text which) const override {
        const QString given = QAccessibleWidget::text(which);
        return which == QAccessible::Name && given.isEmpty() ? label.text() : given;
    }

  private:
    TextLabel& label;
};

}  // namespace

TextLabel::TextLabel(const QString& text, const TextLook& look) : currentLook(look) {
    presentToScreenReaders<TextLabel, AccessibleLabel>();
    setText(text);
    setTextFormat(Qt::PlainText);
    // Otherwise a label in a button would take the button's colour.
    setForegroundRole(QPalette::WindowText);
    followApplicationFont(*this, [this] { applyLook(); });
}

void TextLabel::setLook(const TextLook& look) {
    if (look != currentLook) {
        currentLook = look;
        applyLook();
    }
}

int TextLabel::heightForWidth(int width) const {
    if (!wordWrap()) return QLabel::heightForWidth(width);
    const QMargins margins = contentsMargins();
    QTextLayout lines;
    return breakIntoLines(lines, width - margins.left() - margins.right()) + margins.top() + margins.bottom();
}

QSize TextLabel::minimumSizeHint() const {
    if (!wordWrap()) return QLabel::minimumSizeHint();
    const QMargins margins = contentsMargins();
    const int fewLetters = fontMetrics().horizontalAdvance("mmmmmmmm");
    return {margins.left() + std::min(fewLetters, fontMetrics().horizontalAdvance(text())) + margins.right(),
            fontMetrics().height()};
}

int TextLabel::breakIntoLines(QTextLayout& lines, int width) const {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(layoutDirection());
    lines.setTextOption(option);
    lines.setFont(font());
    lines.setText(text().replace('\n', QChar::LineSeparator));
    lines.beginLayout();
    double height = 0;
    for (QTextLine line = lines.createLine(); line.isValid(); line = lines.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += line.height();
    }
    lines.endLayout();
    return static_cast<int>(std::ceil(height));
}

void TextLabel::paintEvent(QPaintEvent* event) {
    if (!wordWrap()) return QLabel::paintEvent(event);
    const QRect bounds = contentsRect();
    QTextLayout lines;
    const int spareHeight = bounds.height() - breakIntoLines(lines, bounds.width());
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    lines.draw(&painter, bounds.topLeft() + QPoint(0, std::max(spareHeight / 2, 0)));
}

void TextLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) applyLook();
}

void TextLabel::applyLook() {
    setFont(styledFont(currentLook.font, currentLook.weight));
    const QColor color = currentColors().of(currentLook.tone);
    // Setting a palette is itself a change of palette, which would lead here again.
    if (palette().color(QPalette::WindowText) != color) {
        QPalette tinted = palette();
        tinted.setColor(QPalette::WindowText, color);
        setPalette(tinted);
    }
}

TextLabel* wrappedLabel(const QString& text, const TextLook& look) {
    auto* label = new TextLabel(text, look);
    label->setWordWrap(true);
    return label;
}

SymbolLabel::SymbolLabel(const QString& symbol, const QString& text, const TextLook& look) :
    TextLabel(text, look),
    symbol(symbol) {
    setWordWrap(true);
    makeRoomForSymbol();
}

void SymbolLabel::setSymbol(const QString& name) {
    symbol = name;
    update();
}

void SymbolLabel::paintEvent(QPaintEvent* event) {
    TextLabel::paintEvent(event);
    QPainter painter(this);
    const int top = (height() - heightForWidth(width())) / 2;
    const QRect beforeFirstLine(0, std::max(top, 0), symbolSize(), fontMetrics().height());
    paintSymbol(painter, symbol, beforeFirstLine, symbolSize(), palette().color(QPalette::WindowText));
}

void SymbolLabel::applyLook() {
    TextLabel::applyLook();
    makeRoomForSymbol();
}

int SymbolLabel::symbolSize() const {
    return fontMetrics().ascent() + spacing::tight;
}

void SymbolLabel::makeRoomForSymbol() {
    setContentsMargins(symbolSize() + fontMetrics().height() / 2, 0, 0, 0);
}

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

bool showPlainToolTip(QWidget& widget, const QEvent& event, const QString& text) {
    if (event.type() != QEvent::ToolTip) return false;
    QToolTip::showText(static_cast<const QHelpEvent&>(event).globalPos(), Qt::convertFromPlainText(text),
                       &widget);
    return true;
}

QVBoxLayout* stackedTexts(QWidget* above, QWidget* below) {
    auto* column = new QVBoxLayout;
    column->setSpacing(1);
    column->addStretch();
    column->addWidget(above);
    column->addWidget(below);
    column->addStretch();
    return column;
}

}  // namespace tessel
