#include "views/controls/Box.h"

#include <QPainter>

#include "views/controls/Painting.h"

namespace tessel {

Box::Box(const Look& look) : look(look), column(new QVBoxLayout(this)) {
    column->setContentsMargins(look.padding, look.padding, look.padding, look.padding);
}

void Box::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors colors = currentColors();
    paintBox(
        painter,
        {.bounds = rect(), .radius = look.radius, .fill = look.fill(colors), .stroke = look.stroke(colors)});
}

}  // namespace tessel
