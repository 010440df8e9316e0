#include "views/disks/DiskTableHeader.h"

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
    setAutoDefault(true);  // so that Return presses it too
    followApplicationFont(*this, [this] { setFont(styledFont(FontRole::caption, QFont::DemiBold)); });
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
    return {fontMetrics().horizontalAdvance(text()) + spacing::tight + scaledWithFont(chevronSize),
            fontMetrics().height()};
}

void SortableDiskHeader::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors colors = currentColors();
    const QColor ink = underMouse() || !chevron.isEmpty() ? colors.primary : colors.secondary;
    painter.setPen(ink);
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, text());
    const int afterTitle = fontMetrics().horizontalAdvance(text()) + spacing::tight;
    const int edge = scaledWithFont(chevronSize);
    paintSymbol(painter, chevron, QRect(afterTitle, 0, edge, height()), edge, ink);
    if (showsKeyboardFocus(*this)) paintFocusRing(painter, QRectF(rect()).adjusted(-1, 4, 0, -4), 5);
}

DiskTableHeader::DiskTableHeader(const std::function<void(DiskSortField)>& sortAction) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(spacing::small, 0, spacing::small, 0);
    row->setSpacing(0);
    auto* target = new TextLabel(
        "Target", {.font = FontRole::caption, .tone = Tone::secondary, .weight = QFont::DemiBold});
    row->addWidget(target);
    const auto addHeading = [&](const QString& title, DiskSortField field) {
        auto* heading = new SortableDiskHeader(title, field, sortAction);
        heading->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        row->addWidget(heading);
        headings.push_back(heading);
        return heading;
    };
    auto* disk = addHeading("Disk", DiskSortField::disk);
    auto* size = addHeading("Size", DiskSortField::size);
    addHeading("Media", DiskSortField::media);
    followApplicationFont(*this, [=, this] {
        const DiskColumnWidths widths;
        setFixedHeight(scaledWithFont(headerHeight));
        target->setFixedWidth(widths.targetColumnWidth);
        disk->setFixedWidth(widths.diskColumnWidth);
        size->setFixedWidth(widths.sizeColumnWidth);
    });
}

void DiskTableHeader::display(DiskSortField activeField, bool ascending) {
    for (SortableDiskHeader* heading : headings)
        heading->display(activeField, ascending);
}

void DiskTableHeader::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), withOpacity(currentColors().primary, 0.035));
}

}  // namespace tessel
