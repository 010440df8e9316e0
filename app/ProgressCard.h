#pragma once

#include "viewmodel/TesselViewModel.h"
#include "views/controls/Card.h"
#include "views/controls/ProgressBar.h"
#include "views/controls/TextLabel.h"

namespace tessel {

/// How far the workflow and the write have come.
class ProgressCard : public Card {
  public:
    explicit ProgressCard(const TesselViewModel& viewModel);

    void render() const;

  private:
    /// A title with a percentage at the other end of its line, and the bar that belongs to them.
    struct Gauge {
        TextLabel* percentage;
        ProgressBar* bar;

        void display(double fraction) const;
    };

    Gauge addGauge(const QString& title, TextLabel* subtitle);

    const TesselViewModel& viewModel;
    TextLabel* status;
    TextLabel* phase;
    Gauge overall{};
    Gauge writing{};
    TextLabel* detail;
};

}  // namespace tessel
