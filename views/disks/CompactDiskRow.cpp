#include "views/disks/CompactDiskRow.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "model/DiskTexts.h"
#include "model/SDCardPolicy.h"
#include "model/SDWholeDisk.h"
#include "views/accessibility/Accessibility.h"
#include "views/controls/Painting.h"
#include "views/controls/TextLabel.h"
#include "views/disks/DiskCells.h"

namespace tessel {

namespace {

constexpr int cellSpacing = spacing::small;  // keeps a text away from the next column

/// A row is selected when its disk is the target. It can't be selected while its disk is protected.
class AccessibleDiskRow : public AccessibleControl {
  public:
    explicit AccessibleDiskRow(CompactDiskRow& row) :
        AccessibleControl(&row, QAccessible::ListItem),
        row(row) {}

    QAccessible::State state() const override {
        QAccessible::State state = AccessibleControl::state();
        state.selectable = !eligibilityFailureReason(row.fields().disk);
        state.selected = row.fields().isSelectedTarget;
        return state;
    }

  protected:
    void click() override { row.click(); }

  private:
    CompactDiskRow& row;
};

}  // namespace

CompactDiskRow::CompactDiskRow(const Actions& actions, QWidget* parent) :
    QWidget(parent),
    actions(actions),
    selector(new DiskTargetSelector(actions.selectAction)),
    name(new ElidedLabel({.font = FontRole::subheadline, .weight = QFont::DemiBold}, Qt::ElideRight)),
    device(new ElidedLabel({.font = FontRole::smallMonospaced, .tone = Tone::secondary}, Qt::ElideMiddle)),
    size(new ElidedLabel({.font = FontRole::monospaced, .weight = QFont::Medium}, Qt::ElideRight)),
    media(new DiskMediaCell) {
    presentToScreenReaders<CompactDiskRow, AccessibleDiskRow>();
    setAttribute(Qt::WA_Hover);
    auto* diskCell = new QWidget;
    diskCell->setLayout(stackedTexts(name, device));
    diskCell->layout()->setContentsMargins(0, 0, cellSpacing, 0);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(spacing::small, 0, spacing::small, 1);
    row->setSpacing(0);
    row->addWidget(selector);
    row->addWidget(diskCell);
    row->addWidget(size);
    row->addWidget(media, 1);
    followApplicationFont(*this, [=, this] {
        const DiskColumnWidths widths;
        setMinimumHeight(scaledWithFont(minimumRowHeight));
        selector->setFixedWidth(widths.targetColumnWidth);
        diskCell->setFixedWidth(widths.diskColumnWidth);
        size->setFixedWidth(widths.sizeColumnWidth);
    });
}

void CompactDiskRow::display(const Fields& fields) {
    if (fields == shown) return;
    const bool targetChanges = fields.isSelectedTarget != shown.isSelectedTarget;
    shown = fields;
    const SDWholeDisk& disk = shown.disk;
    selector->display({.disk = disk, .isSelectedTarget = shown.isSelectedTarget, .isBusy = shown.isBusy});
    name->setText(QString::fromStdString(disk.mediaName));
    device->setText(QString::fromStdString(devicePathAndName(disk)));
    size->setText(QString::fromStdString(sizeOrUnknown(disk.sizeBytes)));
    media->display(disk);
    setAccessibleName(selector->accessibilityLabel());
    setAccessibleDescription(selector->toolTip());
    update();
    if (targetChanges) {
        QAccessibleEvent event(
            this, shown.isSelectedTarget ? QAccessible::SelectionAdd : QAccessible::SelectionRemove);
        QAccessible::updateAccessibility(&event);
    }
}

void CompactDiskRow::click() {
    actions.inspectAction();
}

void CompactDiskRow::keyPressEvent(QKeyEvent* event) {
    if (isPressingKey(*event) && !event->isAutoRepeat())
        selector->press();
    else
        QWidget::keyPressEvent(event);
}

void CompactDiskRow::mousePressEvent(QMouseEvent* event) {
    event->setAccepted(event->button() == Qt::LeftButton);
}

void CompactDiskRow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->pos())) click();
}

void CompactDiskRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors colors = currentColors();
    if (shown.isSelectedTarget)
        painter.fillRect(rect(), withOpacity(colors.green, 0.1));
    else if (shown.isInspected)
        painter.fillRect(rect(), withOpacity(colors.accent, 0.1));
    else if (underMouse())
        painter.fillRect(rect(), withOpacity(colors.primary, 0.03));
    painter.fillRect(0, height() - 1, width(), 1, withOpacity(colors.primary, 0.08));
    if (showsKeyboardFocus(*this)) paintFocusRing(painter, QRectF(rect()).adjusted(2, 1, -2, -2), 7);
}

}  // namespace tessel
