#pragma once

#include "viewmodel/TesselViewModel.h"
#include "views/Button.h"
#include "views/Card.h"
#include "views/OperationLogView.h"
#include "views/TextLabel.h"

namespace tessel {

/// The operation log, with the buttons that stop a write and clear the log.
class LogCard : public Card {
  public:
    explicit LogCard(TesselViewModel& viewModel, QWidget* parent = nullptr);

    void render();

  private:
    void renderStopButton();

    TesselViewModel& viewModel;
    Button* stopButton;
    Button* clearButton;
    TextLabel* status;
    TextLabel* entries;
    OperationLogView* logView;
};

}  // namespace tessel
