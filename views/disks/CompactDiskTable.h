#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/VisibleDisks.h"
#include "views/disks/CompactDiskRow.h"

namespace tessel {

class DiskTableHeader;
class ScrollPane;

/// Lists disks below sortable headings, one in each row. It decides nothing: it shows the disks in the order
/// given and reports what the user does. It is as high as its rows, up to six of them.
///
/// All rows together are a single stop of the Tab key. The arrow keys, Home, End, Page Up and Page Down move
/// to another row and inspect it; Space and Return choose the disk of the row.
class CompactDiskTable : public QWidget {
  public:
    struct Fields {
        std::vector<SDWholeDisk> disks;  ///< already filtered and sorted
        std::string selectedTargetID;    ///< empty when there is no target
        std::optional<std::string> inspectedDiskID;
        bool isBusy = false;
        DiskSortField sortField = DiskSortField::disk;
        bool sortAscending = true;

        bool operator==(const Fields&) const = default;
    };

    struct Actions {
        std::function<void(DiskSortField)> sortAction;
        std::function<void(const SDWholeDisk&)> inspectAction;
        std::function<void(const SDWholeDisk&)> selectAction;
    };

    explicit CompactDiskTable(const Actions& actions);

    /// Does nothing if the fields are unchanged. A row is kept for as long as a disk of its identifier is
    /// listed.
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
    void fitRows();
    [[nodiscard]] int rowHeight() const;
    void chooseTabStop();
    bool handleKey(int key);
    void moveTo(size_t index);
    [[nodiscard]] std::optional<size_t> focusedIndex() const;

    Actions actions;
    Fields shown;
    DiskTableHeader* header;
    QWidget* rowList;
    ScrollPane* scrollPane;
    QWidget* frame;
    std::vector<CompactDiskRow*> rows;  ///< in the order of the disks
    RowsByID rowsByID;
};

}  // namespace tessel
