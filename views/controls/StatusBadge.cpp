#include "views/controls/StatusBadge.h"

#include <QHBoxLayout>
#include <QPainter>

#include "views/accessibility/Accessibility.h"
#include "views/controls/ElidedLabel.h"
#include "views/controls/Painting.h"
#include "views/controls/StatusSign.h"

namespace tessel {

namespace {

/// Screen readers say the new name of a status bar, and of no other thing without the focus.
class AccessibleBadge : public QAccessibleWidget {
  public:
    explicit AccessibleBadge(StatusBadge& badge) : QAccessibleWidget(&badge, QAccessible::StatusBar) {}

    int childCount() const override { return 0; }
};

}  // namespace

StatusBadge::StatusBadge() :
    sign(new StatusSign),
    label(new ElidedLabel({.font = FontRole::caption, .tone = Tone::secondary, .weight = QFont::DemiBold},
                          Qt::ElideRight)) {
    presentToScreenReaders<StatusBadge, AccessibleBadge>();
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(11, 7, 11, 7);
    row->setSpacing(spacing::small);
    row->addWidget(sign);
    row->addWidget(label);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void StatusBadge::display(const Fields& fields) {
    if (fields == shown) return;
    if (fields.announcement != shown.announcement) setAccessibleName(fields.announcement);
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
