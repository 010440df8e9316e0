#include "views/disks/CompactDiskTable.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "views/accessibility/Accessibility.h"
#include "views/controls/Painting.h"
#include "views/controls/ScrollPane.h"
#include "views/controls/Style.h"
#include "views/disks/DiskTableHeader.h"

namespace tessel {

namespace {

constexpr int dividerHeight = 1;
constexpr int mostRowsAtOnce = 6;
constexpr double cornerRadius = 10;

class DiskRowList : public QWidget {};

/// Draws the rounded outline over the rows and hides their square corners.
class TableFrame : public QWidget {
  public:
    explicit TableFrame(QWidget* parent) : QWidget(parent) { setAttribute(Qt::WA_TransparentForMouseEvents); }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const Colors colors = currentColors();
        QPainterPath corners;
        corners.addRect(rect());
        corners.addRoundedRect(rect(), cornerRadius, cornerRadius);
        painter.fillPath(corners, colors.windowBackground);
        paintBox(painter,
                 {.bounds = rect(), .radius = cornerRadius, .stroke = withOpacity(colors.primary, 0.08)});
    }
};

}  // namespace

CompactDiskTable::CompactDiskTable(const Actions& actions) :
    actions(actions),
    header(new DiskTableHeader(actions.sortAction)),
    rowList(new DiskRowList),
    scrollPane(new ScrollPane(rowList)) {
    presentToScreenReadersAs<DiskRowList, QAccessible::List>();
    rowList->setAccessibleName("Disks");
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(dividerHeight);
    column->addWidget(header);
    column->addWidget(scrollPane, 1);
    scrollPane->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollPane->viewport()->installEventFilter(this);
    rowList->installEventFilter(this);
    frame = new TableFrame(this);
    showFields();
}

void CompactDiskTable::display(const Fields& fields) {
    if (fields == shown) return;
    shown = fields;
    showFields();
}

void CompactDiskTable::showFields() {
    header->display(shown.sortField, shown.sortAscending);
    showRows();
}

CompactDiskRow* CompactDiskTable::makeRow(const std::string& diskID) {
    const auto withDisk = [this, diskID](const std::function<void(const SDWholeDisk&)>& action) {
        // The action gets a copy, since it may change what the row shows.
        const SDWholeDisk disk = rowsByID.at(diskID)->fields().disk;
        action(disk);
    };
    const CompactDiskRow::Actions rowActions{.inspectAction = [=, this] { withDisk(actions.inspectAction); },
                                             .selectAction = [=, this] { withDisk(actions.selectAction); }};
    auto* row = new CompactDiskRow(rowActions, rowList);
    row->setFocusPolicy(Qt::ClickFocus);
    row->installEventFilter(this);
    row->show();
    return row;
}

void CompactDiskTable::showRows() {
    RowsByID previous = std::exchange(rowsByID, {});
    rows.clear();
    for (const SDWholeDisk& disk : shown.disks) {
        const auto kept = previous.extract(disk.id);
        CompactDiskRow* row = kept ? kept.mapped() : makeRow(disk.id);
        row->display({.disk = disk,
                      .isSelectedTarget = disk.id == shown.selectedTargetID,
                      .isInspected = disk.id == shown.inspectedDiskID,
                      .isBusy = shown.isBusy});
        rows.push_back(row);
        rowsByID.emplace(disk.id, row);
    }
    fitRows();
    chooseTabStop();
    retire(previous);
}

void CompactDiskTable::retire(const RowsByID& retired) {
    for (const auto& [id, row] : retired) {
        row->hide();
        // The row is not deleted at once, since its own click may have led here.
        row->deleteLater();
    }
}

/// Makes the table as high as its rows, and the rows as wide as the table.
void CompactDiskTable::fitRows() {
    const int rowsAtOnce = static_cast<int>(std::clamp<size_t>(rows.size(), 1, mostRowsAtOnce));
    setFixedHeight(header->minimumHeight() + dividerHeight + rowHeight() * rowsAtOnce);
    const int width = scrollPane->viewport()->width();
    rowList->resize(width, rowHeight() * static_cast<int>(rows.size()));
    int top = 0;
    for (CompactDiskRow* row : rows) {
        row->setGeometry(0, top, width, rowHeight());
        top += rowHeight();
    }
}

int CompactDiskTable::rowHeight() const {
    const int usual = scaledWithFont(CompactDiskRow::minimumRowHeight);
    return rows.empty() ? usual : std::max(usual, rows.front()->minimumSizeHint().height());
}

void CompactDiskTable::chooseTabStop() {
    CompactDiskRow* stop = rows.empty() ? nullptr : rows.front();
    for (CompactDiskRow* row : rows) {
        row->setFocusPolicy(Qt::ClickFocus);
        if (row->hasFocus() || (row->fields().isInspected && !focusedIndex())) stop = row;
    }
    if (stop) {
        stop->setFocusPolicy(Qt::StrongFocus);
        // Otherwise a new row would be the window's last stop.
        setTabOrder(&header->lastHeading(), stop);
    }
}

bool CompactDiskTable::eventFilter(QObject* object, QEvent* event) {
    if (object == scrollPane->viewport()) {
        if (event->type() == QEvent::Resize) fitRows();
        return false;
    }
    if (object == rowList) {
        if (event->type() == QEvent::LayoutRequest) fitRows();  // a row's font has changed
        return false;
    }
    if (event->type() == QEvent::FocusIn) chooseTabStop();
    return event->type() == QEvent::KeyPress && handleKey(static_cast<QKeyEvent*>(event)->key());
}

bool CompactDiskTable::handleKey(int key) {
    const std::optional<size_t> current = focusedIndex();
    if (!current) return false;
    const size_t last = rows.size() - 1;
    const size_t page =
        std::max<size_t>(1, static_cast<size_t>(scrollPane->viewport()->height() / rows[0]->height()));
    switch (key) {
        case Qt::Key_Up:
            moveTo(*current == 0 ? 0 : *current - 1);
            return true;
        case Qt::Key_Down:
            moveTo(std::min(*current + 1, last));
            return true;
        case Qt::Key_PageUp:
            moveTo(*current < page ? 0 : *current - page);
            return true;
        case Qt::Key_PageDown:
            moveTo(std::min(*current + page, last));
            return true;
        case Qt::Key_Home:
            moveTo(0);
            return true;
        case Qt::Key_End:
            moveTo(last);
            return true;
        default:
            return false;
    }
}

void CompactDiskTable::moveTo(size_t index) {
    CompactDiskRow* row = rows[index];
    window()->setAttribute(Qt::WA_KeyboardFocusChange);
    row->setFocus(Qt::OtherFocusReason);
    scrollPane->reveal(*row, 0);
    const SDWholeDisk disk = row->fields().disk;
    actions.inspectAction(disk);
}

std::optional<size_t> CompactDiskTable::focusedIndex() const {
    const auto focused =
        std::ranges::find_if(rows, [](const CompactDiskRow* row) { return row->hasFocus(); });
    if (focused == rows.end()) return std::nullopt;
    return static_cast<size_t>(focused - rows.begin());
}

void CompactDiskTable::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors colors = currentColors();
    paintBox(painter, {.bounds = rect(), .radius = cornerRadius, .fill = colors.controlBackground});
    painter.fillRect(0, header->height(), width(), dividerHeight, withOpacity(colors.primary, 0.1));
}

void CompactDiskTable::resizeEvent(QResizeEvent*) {
    frame->setGeometry(rect());
    frame->raise();
}

}  // namespace tessel
