#pragma once

#include <QWidget>
#include <functional>

#include "model/SDWholeDisk.h"
#include "views/controls/Style.h"

namespace tessel {

class DiskMediaCell;
class DiskTargetSelector;
class ElidedLabel;

/// The widths of the table's columns in pixels. Media gets what is left.
struct DiskColumnWidths {
    int target = scaledWithFont(44);
    int disk = scaledWithFont(138);
    int size = scaledWithFont(88);
};

/// One disk of the table. A click inspects the disk; only the radio control chooses it as the target. The
/// space bar presses the radio control of the row that has the focus.
class CompactDiskRow : public QWidget {
  public:
    struct Fields {
        SDWholeDisk disk;
        bool isSelectedTarget = false;
        bool isInspected = false;
        bool isBusy = false;

        bool operator==(const Fields&) const = default;
    };

    struct Actions {
        std::function<void()> inspect;
        std::function<void()> select;
    };

    static constexpr int minimumRowHeight = 50;

    CompactDiskRow(const DiskColumnWidths& widths, const Actions& actions, QWidget* parent);

    const Fields& fields() const { return shown; }
    void display(const Fields& fields);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    Actions actions;
    Fields shown;
    DiskTargetSelector* selector;
    ElidedLabel* name;
    ElidedLabel* device;
    ElidedLabel* size;
    DiskMediaCell* media;
};

}  // namespace tessel
