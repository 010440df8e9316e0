#include "views/controls/Card.h"

#include "views/accessibility/Accessibility.h"

namespace tessel {

Card::Card(const QString& name) :
    Box({.radius = 16,
         .padding = spacing::card,
         .fill = [](const Colors& colors) { return colors.windowBackground; },
         .stroke = [](const Colors& colors) { return withOpacity(colors.primary, 0.06); }}) {
    presentToScreenReadersAs<Card, QAccessible::Grouping>();
    setAccessibleName(name);
    content().setSpacing(spacing::medium);
}

}  // namespace tessel
