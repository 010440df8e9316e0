#pragma once

#include <functional>

#include "viewmodel/TesselViewModel.h"
#include "views/controls/Button.h"
#include "views/controls/Card.h"
#include "views/controls/InfoRow.h"
#include "views/controls/Switch.h"
#include "views/controls/TextLabel.h"

namespace tessel {

/// Shows what would be written where, and the button that asks for it.
class WriteCard : public Card {
  public:
    /// `showWriteConfirmation` presents the confirmation; nothing else here leads to a write.
    WriteCard(TesselViewModel& viewModel, std::function<void()> showWriteConfirmation);

    void render() const;

  private:
    void buildContent();
    void renderHint() const;

    TesselViewModel& viewModel;
    SymbolLabel* targetHint;
    InfoRow* targetRow;
    InfoRow* imageRow;
    Switch* verifySwitch;
    Button* writeButton;
    SymbolLabel* hint;  ///< why no write can start, or why one would fail
};

}  // namespace tessel
