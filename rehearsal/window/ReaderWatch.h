#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "platform/Desktop.h"

namespace tessel {

/// Calls the handler from the event loop each time a disk has come into or gone from a simulated reader,
/// until the result is destroyed.
[[nodiscard]] std::unique_ptr<TemporaryActivity> watchReader(const std::filesystem::path& readerFolder,
                                                             std::function<void(const DiskChange&)> onChange);

}  // namespace tessel
