#pragma once

#include "viewmodel/TesselViewModel.h"
#include "views/controls/Card.h"
#include "views/controls/ProgressBar.h"
#include "views/controls/TextLabel.h"

namespace tessel {

/// Shows how far the workflow and the write have come.
class ProgressCard : public Card {
  public:
    explicit ProgressCard(const TesselViewModel& viewModel);

    /// Takes what is said below the hint of the view model; may be empty.
    void render(const QString& note) const;

  private:
    /// Shows a fraction as a percentage, at the end of the line of its title, and as a bar below.
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
    TextLabel* transferRate;
    TextLabel* hint;
};

}  // namespace tessel
