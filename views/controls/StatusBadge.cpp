#include "views/controls/StatusBadge.h"

#include <QHBoxLayout>
#include <QPainter>

#include "views/accessibility/Accessibility.h"
#include "views/controls/ElidedLabel.h"
#include "views/controls/Painting.h"
#include "views/controls/StatusSign.h"

namespace tessel {

StatusBadge::StatusBadge() :
    sign(new StatusSign),
    label(new ElidedLabel({.font = FontRole::caption, .tone = Tone::secondary, .weight = QFont::DemiBold},
                          Qt::ElideRight)) {
    presentToScreenReadersAs<StatusBadge, QAccessible::Notification>();
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(11, 7, 11, 7);
    row->setSpacing(spacing::small);
    row->addWidget(sign);
    row->addWidget(label);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void StatusBadge::display(const Fields& fields) {
    if (fields == shown) return;
    if (fields.announcement != shown.announcement) {
        label->setAccessibleName(fields.announcement);
        announce(*this, fields.announcement);
    }
    shown = fields;
    sign->display(fields.tone, fields.isBusy);
    label->setText(fields.text);
    TextLook look = label->look();
    look.tone = fields.tone;
    label->setLook(look);
}

void StatusBadge::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors colors = currentColors();
    paintBox(painter, {.bounds = rect(),
                       .radius = height() / 2.0,
                       .fill = colors.windowBackground,
                       .stroke = withOpacity(colors.primary, 0.12)});
}

}  // namespace tessel
