#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "model/DiskSorting.h"
#include "viewmodel/TesselViewModel.h"
#include "views/controls/Button.h"
#include "views/controls/Card.h"
#include "views/controls/Switch.h"
#include "views/controls/SymbolLabel.h"
#include "views/disks/CompactDiskTable.h"
#include "views/disks/DiskDetailsDisclosure.h"

namespace tessel {

/// Which card is to be written: the disks, and the details of the one that is looked at. What is sorted,
/// shown and looked at is this card's own; the target is the view model's.
class TargetCard : public Card {
  public:
    /// `refresh` starts a scan.
    TargetCard(TesselViewModel& viewModel, std::function<void()> refresh);

    void render();

  private:
    QWidget* makeControls(std::function<void()> refresh);
    void buildContent(QWidget* controls);
    void sortBy(DiskSortField field);
    void inspect(std::optional<std::string> diskID);
    void reconcileInspectedDisk();
    const SDWholeDisk* inspectedDisk() const;
    void renderCounts(const std::vector<SDWholeDisk>& visible);
    void renderDetails();

    TesselViewModel& viewModel;
    bool showAllDisks = false;
    std::optional<std::string> inspectedDiskID;
    bool isDiskDetailsExpanded = false;
    DiskSortField diskSortField = DiskSortField::disk;
    bool diskSortAscending = true;
    std::vector<SDWholeDisk> reconciledDisks;  ///< the list for which `inspectedDiskID` was last reconciled

    Button* refreshButton;
    Switch* showAllSwitch;
    TextLabel* shownCount;
    TextLabel* selectableCount;
    TextLabel* hiddenCount;
    CompactDiskTable* table;
    SymbolLabel* emptyLabel;
    DiskDetailsDisclosure* details;
    SymbolLabel* noDetails;
};

}  // namespace tessel
