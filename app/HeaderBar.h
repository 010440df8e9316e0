#pragma once

#include <QWidget>

#include "viewmodel/TesselViewModel.h"
#include "views/controls/StatusBadge.h"

namespace tessel {

/// The top of the window: the product's name and the live status badge.
class HeaderBar : public QWidget {
  public:
    explicit HeaderBar(const TesselViewModel& viewModel);

    void render() const;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const TesselViewModel& viewModel;
    StatusBadge* badge;
};

}  // namespace tessel
