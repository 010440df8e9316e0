#pragma once

#include <QVBoxLayout>
#include <QWidget>
#include <optional>

#include "model/SDDiskPartition.h"
#include "model/SDWholeDisk.h"

namespace tessel {

class DisclosureButton;
class InfoRow;
class SymbolLabel;
class TextLabel;

/// Shows one partition of the inspected disk.
class DiskPartitionRow : public QWidget {
  public:
    explicit DiskPartitionRow(const SDDiskPartition& partition);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

/// Shows everything that is known about one disk, and whether it may be the target.
class DiskInspectorContent : public QWidget {
  public:
    DiskInspectorContent();

    /// Does nothing if the disk is unchanged. The partitions are closed whenever another disk is shown.
    void display(const SDWholeDisk& disk);

  private:
    void showPartitions(const SDWholeDisk& disk);
    void showVerdict(const SDWholeDisk& disk);

    std::optional<SDWholeDisk> shown;
    InfoRow* device;
    InfoRow* media;
    InfoRow* location;
    InfoRow* capacity;
    InfoRow* connection;
    InfoRow* map;
    InfoRow* attributes;
    DisclosureButton* partitionsButton;
    TextLabel* partitionCount;
    QWidget* partitions;
    SymbolLabel* verdict;
};

}  // namespace tessel
