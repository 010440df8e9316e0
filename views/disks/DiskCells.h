#pragma once

#include <QWidget>
#include <functional>

#include "model/SDWholeDisk.h"

class QRadioButton;

namespace tessel {

class ElidedLabel;
class SymbolView;

/// Chooses the write target. It shows a radio control for an eligible disk and a lock for
/// every other.
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

    /// Returns what screen readers say about this cell.
    [[nodiscard]] QString accessibilityLabel() const;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QRadioButton* radio;
    SymbolView* lock;
};

/// Shows what kind of medium a disk is and how it is connected.
class DiskMediaCell : public QWidget {
  public:
    DiskMediaCell();

    void display(const SDWholeDisk& disk);

  private:
    SymbolView* symbol;
    ElidedLabel* kind;
    ElidedLabel* connection;
};

}  // namespace tessel
