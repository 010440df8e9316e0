#pragma once

#include <QFontMetrics>
#include <QPushButton>
#include <QWidget>
#include <algorithm>
#include <functional>
#include <vector>

#include "model/VisibleDisks.h"
#include "views/controls/Style.h"

namespace tessel {

/// The widths of the disk table's columns at the present font, in pixels. The media column gets what is left.
struct DiskColumnWidths {
    /// Leaves room for the column's heading, which is wider than its controls in most fonts.
    int targetColumnWidth =
        std::max(scaledWithFont(44),
                 QFontMetrics(styledFont(FontRole::caption, QFont::DemiBold)).horizontalAdvance("Target") +
                     spacing::small);
    int diskColumnWidth = scaledWithFont(138);
    int sizeColumnWidth = scaledWithFont(88);
};

/// Heads a sortable column. The active heading shows the direction, and screen readers say it.
class SortableDiskHeader : public QPushButton {
  public:
    /// `action` is called with this heading's own field.
    SortableDiskHeader(const QString& title, DiskSortField field, std::function<void(DiskSortField)> action);

    void display(DiskSortField activeField, bool ascending);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    DiskSortField field;
    QString chevron;  ///< the symbol of the direction; empty when another column is active
};

/// Shows the headings above the rows of the disk table.
class DiskTableHeader : public QWidget {
  public:
    static constexpr int headerHeight = 34;  ///< at the usual font, in pixels

    /// `sortAction` is called with the field of the heading that is pressed.
    explicit DiskTableHeader(const std::function<void(DiskSortField)>& sortAction);

    void display(DiskSortField activeField, bool ascending);

    /// Returns the heading from which the Tab key goes on to the rows.
    [[nodiscard]] SortableDiskHeader& lastHeading() const { return *headings.back(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::vector<SortableDiskHeader*> headings;
};

}  // namespace tessel
