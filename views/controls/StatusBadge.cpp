#include "views/controls/StatusBadge.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QWindow>

#include "views/accessibility/Accessibility.h"
#include "views/controls/Painting.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

constexpr int signSize = 14;
constexpr int dotSize = 8;
constexpr int turnMilliseconds = 50;
constexpr int turnDegrees = 18;

}  // namespace

StatusSign::StatusSign() {
    followApplicationFont(*this, [this] { fitSize(); });
}

void StatusSign::display(Tone newTone, bool busy) {
    tone = newTone;
    isBusy = busy;
    fitSize();
    turnWhileSeen();
    update();
}

void StatusSign::fitSize() {
    setFixedSize(scaledWithFont(QSize(isBusy ? signSize : dotSize, signSize)));
}

void StatusSign::hideEvent(QHideEvent*) {
    turnWhileSeen();
}

void StatusSign::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor color = currentColors().of(tone);
    turnWhileSeen();  // a window that could not be seen is painted when it can be seen again
    if (!isBusy) {
        const QRectF dot(0, (height() - width()) / 2.0, width(), width());
        paintBox(painter, {.bounds = dot, .radius = width() / 2.0, .fill = color});
        return;
    }
    const QRectF circle = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    painter.setPen(QPen(withOpacity(color, 0.22), 2));
    painter.drawEllipse(circle);
    painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(circle, angle * 16, -100 * 16);
}

void StatusSign::showEvent(QShowEvent*) {
    turnWhileSeen();
}

void StatusSign::timerEvent(QTimerEvent*) {
    turnWhileSeen();
    angle = (angle + 360 - turnDegrees) % 360;
    update();
}

void StatusSign::turnWhileSeen() {
    const auto* handle = window()->windowHandle();
    if (!isBusy || !isVisible() || window()->isMinimized() || !handle || !handle->isExposed())
        turn.stop();
    else if (!turn.isActive())
        turn.start(turnMilliseconds, this);
}

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
