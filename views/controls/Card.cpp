#include "views/controls/Card.h"

namespace tessel {

Card::Card() :
    Box({.radius = 16,
         .padding = spacing::card,
         .fill = [](const Colors& colors) { return colors.windowBackground; },
         .stroke = [](const Colors& colors) { return withOpacity(colors.primary, 0.06); }}) {
    content().setSpacing(spacing::medium);
}

}  // namespace tessel
