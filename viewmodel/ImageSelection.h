#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "foundation/Published.h"
#include "model/SDImageFile.h"
#include "platform/Desktop.h"

namespace tessel {

/// The image that is to be written. Main thread only.
class ImageSelection {
  public:
    explicit ImageSelection(const std::function<void()>& onChange) : chosen(onChange, std::nullopt) {}

    [[nodiscard]] const std::optional<SDImageFile>& selectedImage() const { return chosen(); }

    /// Takes the file when it is one that can be written, and throws what `inspectImage` throws otherwise.
    void select(const std::filesystem::path& file) { chosen = inspectImage(file); }

    /// The image at that place, when it is one that can be written. Throws TesselError or PlatformError.
    static SDImageFile inspectImage(const std::filesystem::path& url);

    /// What the person is asked for.
    static Desktop::OpenPanel openPanel();

  private:
    Published<std::optional<SDImageFile>> chosen;
};

}  // namespace tessel
