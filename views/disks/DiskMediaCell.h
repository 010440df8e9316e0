#pragma once

#include <QWidget>

#include "model/SDWholeDisk.h"

namespace tessel {

class ElidedLabel;
class SymbolView;

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
