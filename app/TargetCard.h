#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model/VisibleDisks.h"
#include "viewmodel/TesselViewModel.h"
#include "views/controls/Button.h"
#include "views/controls/Card.h"
#include "views/controls/Switch.h"
#include "views/controls/TextLabel.h"
#include "views/disks/CompactDiskTable.h"
#include "views/disks/DiskDetailsDisclosure.h"

namespace tessel {

/// Lists the disks among which the user chooses the target, and shows the details of the one that is
/// inspected. Which disks are listed, in what order, and which one is inspected is this card's own state; the
/// target is the view model's.
class TargetCard : public Card {
  public:
    explicit TargetCard(TesselViewModel& viewModel);

    /// Keeps inspecting the same disk while it is listed, else inspects the target if it is listed, else
    /// none. Call it before render(); it does nothing unless the disks have changed since the last call.
    void followDisks();

    void render() const;

  private:
    QLayout* makeControls();
    void buildContent(QLayout* controls);
    void sortBy(DiskSortField field);
    void listAll(bool showAll);
    void inspect(const SDWholeDisk& disk);
    void expandDetails(bool expand);
    void reconcileInspectedDisk();
    void setInspectedDisk(std::optional<std::string> diskID);
    [[nodiscard]] std::vector<SDWholeDisk> listedDisks() const;
    [[nodiscard]] const SDWholeDisk* inspectedDisk() const;
    void renderRefreshButton() const;
    void renderCounts(const std::vector<SDWholeDisk>& listed) const;
    void renderDetails() const;

    TesselViewModel& viewModel;
    bool showAllDisks = false;
    std::optional<std::string> inspectedDiskID;
    bool isDiskDetailsExpanded = false;
    DiskSortField diskSortField = DiskSortField::disk;
    bool diskSortAscending = true;
    std::vector<SDWholeDisk> followedDisks;  ///< the disks at the last call of followDisks()

    Button* refreshButton;
    Switch* showAllSwitch;
    TextLabel* shownCount;
    TextLabel* selectableCount;
    TextLabel* hiddenCount;
    CompactDiskTable* table;
    QWidget* emptyNote;  ///< the frame of the label
    SymbolLabel* emptyLabel;
    DiskDetailsDisclosure* details;
    SymbolLabel* noDetails;
};

}  // namespace tessel
