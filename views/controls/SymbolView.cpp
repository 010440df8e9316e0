#include "views/controls/SymbolView.h"

#include <QPainter>

#include "views/accessibility/Accessibility.h"
#include "views/controls/Symbol.h"

namespace tessel {

namespace {

class AccessibleSymbol : public QAccessibleWidget {
  public:
    explicit AccessibleSymbol(SymbolView& symbol) : QAccessibleWidget(&symbol, QAccessible::Graphic) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        if (widget()->accessibleName().isEmpty()) state.invisible = true;
        return state;
    }
};

}  // namespace

SymbolView::SymbolView(const Fields& fields) : shown(fields) {
    presentToScreenReaders<SymbolView, AccessibleSymbol>();
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
