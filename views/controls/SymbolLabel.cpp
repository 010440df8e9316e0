#include "views/controls/SymbolLabel.h"

#include <QPainter>

#include "views/controls/Symbol.h"

namespace tessel {

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

}  // namespace tessel
