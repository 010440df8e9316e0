#include "views/disks/DiskTableHeader.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>

#include "views/accessibility/Accessibility.h"
#include "views/controls/Painting.h"
#include "views/controls/Style.h"
#include "views/controls/Symbol.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

constexpr int chevronSize = 10;

}  // namespace

SortableDiskHeader::SortableDiskHeader(const QString& title, DiskSortField field,
                                       std::function<void(DiskSortField)> action) :
    field(field) {
    presentButtonToScreenReaders<SortableDiskHeader, QAccessible::Button>();
    setText(title);
    setFont(styledFont(FontRole::caption, QFont::DemiBold));
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    connect(this, &QPushButton::clicked, [field, action = std::move(action)] { action(field); });
    setAccessibleName(title);
}

void SortableDiskHeader::display(DiskSortField activeField, bool ascending) {
    const bool isActive = field == activeField;
    chevron = !isActive ? "" : ascending ? "chevron.up" : "chevron.down";
    const QString direction = !isActive ? "" : ascending ? ", sorted ascending" : ", sorted descending";
    setAccessibleName(text() + direction);
    update();
}

QSize SortableDiskHeader::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + spacing::tight + chevronSize, fontMetrics().height()};
}

void SortableDiskHeader::changeEvent(QEvent* event) {
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::ApplicationFontChange)
        setFont(styledFont(FontRole::caption, QFont::DemiBold));
}

void SortableDiskHeader::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors colors = currentColors();
    const QColor ink = underMouse() || !chevron.isEmpty() ? colors.primary : colors.secondary;
    painter.setPen(ink);
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, text());
    const int afterTitle = fontMetrics().horizontalAdvance(text()) + spacing::tight;
    paintSymbol(painter, chevron, QRect(afterTitle, 0, chevronSize, height()), chevronSize, ink);
    if (showsKeyboardFocus(*this)) paintFocusRing(painter, QRectF(rect()).adjusted(-1, 4, 0, -4), 5);
}

DiskTableHeader::DiskTableHeader(const DiskColumnWidths& widths,
                                 const std::function<void(DiskSortField)>& sortAction) {
    setFixedHeight(headerHeight);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(spacing::small, 0, spacing::small, 0);
    row->setSpacing(0);
    auto* target = new TextLabel(
        "Target", {.font = FontRole::caption, .tone = Tone::secondary, .weight = QFont::DemiBold});
    target->setFixedWidth(widths.targetColumnWidth);
    row->addWidget(target);
    const auto addHeading = [&](const QString& title, DiskSortField field) {
        auto* heading = new SortableDiskHeader(title, field, sortAction);
        heading->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        row->addWidget(heading);
        headings.push_back(heading);
        return heading;
    };
    addHeading("Disk", DiskSortField::disk)->setFixedWidth(widths.diskColumnWidth);
    addHeading("Size", DiskSortField::size)->setFixedWidth(widths.sizeColumnWidth);
    addHeading("Media", DiskSortField::media);
}

void DiskTableHeader::display(DiskSortField activeField, bool ascending) {
    for (SortableDiskHeader* heading : headings)
        heading->display(activeField, ascending);
}

void DiskTableHeader::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), withOpacity(currentColors().primary, 0.035));
}

}  // namespace tessel
