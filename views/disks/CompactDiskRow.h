#pragma once

#include <QWidget>
#include <functional>

#include "model/SDWholeDisk.h"
#include "views/disks/DiskTableHeader.h"

namespace tessel {

class DiskMediaCell;
class DiskTargetSelector;
class ElidedLabel;

/// Shows one disk of the table. A click inspects the disk; only the radio control chooses it as the target.
/// Space and Return press the radio control of the row that has the focus.
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
        std::function<void()> inspectAction;
        std::function<void()> selectAction;
    };

    static constexpr int minimumRowHeight = 50;  ///< at the usual font, in pixels

    CompactDiskRow(const Actions& actions, QWidget* parent);

    [[nodiscard]] const Fields& fields() const { return shown; }
    void display(const Fields& fields);
    void click();

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
