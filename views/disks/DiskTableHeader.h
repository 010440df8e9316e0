#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "model/VisibleDisks.h"
#include "views/disks/DiskColumnWidths.h"

namespace tessel {

class SortableDiskHeader;

/// Shows the headings above the rows of the disk table.
class DiskTableHeader : public QWidget {
  public:
    static constexpr int headerHeight = 34;  ///< is in pixels

    /// `sortAction` is called with the field of the heading that is pressed.
    DiskTableHeader(const DiskColumnWidths& widths, const std::function<void(DiskSortField)>& sortAction);

    void display(DiskSortField activeField, bool ascending);

    /// Returns the heading from which the Tab key goes on to the rows.
    [[nodiscard]] SortableDiskHeader& lastHeading() const { return *headings.back(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::vector<SortableDiskHeader*> headings;
};

}  // namespace tessel
