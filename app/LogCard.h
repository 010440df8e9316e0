#pragma once

#include "viewmodel/TesselViewModel.h"
#include "views/controls/Button.h"
#include "views/controls/Card.h"
#include "views/controls/TextLabel.h"
#include "views/log/OperationLogView.h"

namespace tessel {

/// Shows the operation log and the buttons that stop a write and clear the log.
class LogCard : public Card {
  public:
    explicit LogCard(TesselViewModel& viewModel);

    void render() const;

  private:
    void renderStopButton() const;

    TesselViewModel& viewModel;
    Button* stopButton;
    Button* clearButton;
    ElidedLabel* status;
    TextLabel* entryCount;
    OperationLogView* logView;
};

}  // namespace tessel
