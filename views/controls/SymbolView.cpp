#include "views/controls/SymbolView.h"

#include <QPainter>

#include "views/controls/Symbol.h"

namespace tessel {

SymbolView::SymbolView(const Fields& fields) : shown(fields) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolView::display(const Fields& fields) {
    if (fields == shown) return;
    shown = fields;
    updateGeometry();
    update();
}

QSize SymbolView::sizeHint() const {
    return {shown.size, shown.size};
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintSymbol(painter, shown.symbol, rect(), shown.size, currentColors().of(shown.tone));
}

}  // namespace tessel
