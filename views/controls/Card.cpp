#include "views/controls/Card.h"

#include <QPainter>
#include <QVBoxLayout>

#include "views/accessibility/Accessibility.h"
#include "views/controls/Painting.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

constexpr double cardRadius = 16;

}  // namespace

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

Card::Card(const QString& name) :
    Box({.radius = cardRadius,
         .padding = spacing::card,
         .fill = [](const Colors& colors) { return colors.windowBackground; },
         .stroke = [](const Colors& colors) { return withOpacity(colors.primary, 0.06); }}) {
    presentToScreenReadersAs<Card, QAccessible::Grouping>();
    setAccessibleName(name);
    content().setSpacing(spacing::medium);
}

void Card::setHighlighted(bool highlight) {
    isHighlighted = highlight;
    update();
}

void Card::paintEvent(QPaintEvent* event) {
    Box::paintEvent(event);
    if (!isHighlighted) return;
    QPainter painter(this);
    paintBox(painter,
             {.bounds = rect(), .radius = cardRadius, .fill = withOpacity(currentColors().accent, 0.08)});
    paintFocusRing(painter, rect(), cardRadius);
}

QVBoxLayout* cardHeading(const QString& symbol, const QString& title, const QString& explanation) {
    auto* heading = new QVBoxLayout;
    heading->setSpacing(spacing::tight);
    heading->addWidget(new SymbolLabel(symbol, title, {.font = FontRole::headline, .weight = QFont::Bold}));
    heading->addWidget(wrappedLabel(explanation, {.font = FontRole::caption, .tone = Tone::secondary}));
    heading->addStretch();
    return heading;
}

}  // namespace tessel
