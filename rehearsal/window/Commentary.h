#pragma once

#include <chrono>
#include <cstddef>

#include "viewmodel/TesselViewModel.h"

namespace tessel {

/// Prints what happens while it happens: each line that the operation log gains, and now and then how far the
/// write has come.
class Commentary {
  public:
    explicit Commentary(const TesselViewModel& viewModel) : viewModel(viewModel) {}

    /// Prints what is new since the last call. Call it often.
    void tell();

  private:
    const TesselViewModel& viewModel;
    size_t toldLines = 0;
    std::chrono::steady_clock::time_point lastTold = std::chrono::steady_clock::now();
};

}  // namespace tessel
