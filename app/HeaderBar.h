#pragma once

#include <QWidget>

#include "viewmodel/TesselViewModel.h"
#include "views/controls/StatusBadge.h"

namespace tessel {

/// Shows the product's name and the live status badge at the top of the window.
class HeaderBar : public QWidget {
  public:
    explicit HeaderBar(const TesselViewModel& viewModel);

    /// Takes what screen readers say in addition; may be empty.
    void render(const QString& note) const;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const TesselViewModel& viewModel;
    StatusBadge* badge;
};

}  // namespace tessel
