#include "views/disks/DiskTableHeader.h"

#include <QHBoxLayout>
#include <QPainter>

#include "views/controls/TextLabel.h"
#include "views/disks/SortableDiskHeader.h"

namespace tessel {

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
