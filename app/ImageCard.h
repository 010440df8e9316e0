#pragma once

#include "viewmodel/TesselViewModel.h"
#include "views/Button.h"
#include "views/Card.h"
#include "views/InfoRow.h"
#include "views/SymbolLabel.h"

namespace tessel {

/// Which image is to be written.
class ImageCard : public Card {
  public:
    explicit ImageCard(TesselViewModel& viewModel, QWidget* parent = nullptr);

    void render();

  private:
    TesselViewModel& viewModel;
    Button* selectButton;
    InfoRow* fileRow;
    InfoRow* pathRow;
    InfoRow* sizeRow;
    SymbolLabel* hint;
};

}  // namespace tessel
