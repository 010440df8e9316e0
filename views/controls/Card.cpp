#include "views/controls/Card.h"

#include <QPainter>

#include "views/controls/Painting.h"
#include "views/controls/Style.h"

namespace tessel {

Card::Card() : column(new QVBoxLayout(this)) {
    column->setContentsMargins(spacing::card, spacing::card, spacing::card, spacing::card);
    column->setSpacing(spacing::medium);
}

void Card::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors colors = currentColors();
    paintBox(painter, {.bounds = rect(),
                       .radius = 16,
                       .fill = colors.windowBackground,
                       .stroke = withOpacity(colors.primary, 0.06)});
}

}  // namespace tessel
