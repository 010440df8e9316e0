#pragma once

#include <QWidget>
#include <functional>

#include "model/SDWholeDisk.h"

class QRadioButton;

namespace tessel {

class SymbolView;

/// The cell that chooses the write target: a radio control for an eligible disk, a lock for every other.
class DiskTargetSelector : public QWidget {
  public:
    struct Fields {
        SDWholeDisk disk;
        bool isSelectedTarget = false;
        bool isBusy = false;
    };

    explicit DiskTargetSelector(std::function<void()> selectAction);

    void display(const Fields& fields);

    /// Presses the radio control. Does nothing on a lock or while busy.
    void press();

    /// What screen readers say for this cell.
    [[nodiscard]] QString accessibilityLabel() const;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QRadioButton* radio;
    SymbolView* lock;
};

}  // namespace tessel
