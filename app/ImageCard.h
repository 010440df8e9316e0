#pragma once

#include "viewmodel/TesselViewModel.h"
#include "views/controls/Button.h"
#include "views/controls/Card.h"
#include "views/controls/InfoRow.h"
#include "views/controls/TextLabel.h"

namespace tessel {

/// Shows which image is to be written, and the button that chooses it.
class ImageCard : public Card {
  public:
    explicit ImageCard(TesselViewModel& viewModel);

    void render() const;

  private:
    TesselViewModel& viewModel;
    Button* selectButton;
    InfoRow* fileRow;
    InfoRow* pathRow;
    InfoRow* sizeRow;
    SymbolLabel* hint;
    TextLabel* dropHint;
};

}  // namespace tessel
