#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/DiskSorting.h"
#include "views/disks/CompactDiskRow.h"

class QScrollArea;

namespace tessel {

class DiskTableHeader;

/// The disks as a table of one row each, below sortable headings. It decides nothing: it shows the disks in
/// the order given and reports what the person does. It is as high as its rows, up to six of them.
///
/// All rows together are one stop of the Tab key. The arrow keys, Home, End, Page Up and Page Down move to
/// another row and inspect it; the space bar chooses the disk of the row.
class CompactDiskTable : public QWidget {
  public:
    struct Fields {
        std::vector<SDWholeDisk> disks;  ///< filtered and sorted
        std::string selectedTargetID;    ///< empty when there is no target
        std::optional<std::string> inspectedDiskID;
        bool isBusy = false;
        DiskSortField sortField = DiskSortField::disk;
        bool sortAscending = true;

        bool operator==(const Fields&) const = default;
    };

    struct Actions {
        std::function<void(DiskSortField)> sort;
        std::function<void(const SDWholeDisk&)> inspect;
        std::function<void(const SDWholeDisk&)> select;
    };

    explicit CompactDiskTable(const Actions& actions);

    /// Cheap when nothing changed; otherwise rows are kept by their disk's identifier.
    void display(const Fields& fields);

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    using RowsByID = std::unordered_map<std::string, CompactDiskRow*>;

    void showFields();
    CompactDiskRow* makeRow(const std::string& diskID);
    void showRows();
    void retire(const RowsByID& retired);
    void placeRows();
    void chooseTabStop();
    bool handleKey(int key);
    void moveTo(size_t index);
    [[nodiscard]] std::optional<size_t> focusedIndex() const;

    DiskColumnWidths widths;
    Actions actions;
    Fields shown;
    DiskTableHeader* header;
    QScrollArea* scrollArea;
    QWidget* rowList;
    QWidget* frame;
    std::vector<CompactDiskRow*> rows;  ///< in the order of the disks
    RowsByID rowsByID;
};

}  // namespace tessel
