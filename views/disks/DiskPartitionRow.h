#pragma once

#include <QWidget>

#include "model/SDDiskPartition.h"

namespace tessel {

/// Shows one partition of the inspected disk.
class DiskPartitionRow : public QWidget {
  public:
    explicit DiskPartitionRow(const SDDiskPartition& partition);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tessel
