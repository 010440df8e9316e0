#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "foundation/Published.h"
#include "model/SDImageFile.h"
#include "platform/Desktop.h"

namespace tessel {

/// Holds the image that is to be written. Use it on the main thread only.
class ImageSelection {
  public:
    explicit ImageSelection(const std::function<void()>& onChange) : chosen(onChange, std::nullopt) {}

    [[nodiscard]] const std::optional<SDImageFile>& selectedImage() const { return chosen(); }

    /// Takes the file if it can be written, and returns its record; otherwise throws what inspectImage()
    /// throws.
    SDImageFile select(const std::filesystem::path& file) {
        auto image = inspectImage(file);
        chosen = image;
        return image;
    }

    /// Returns the image at that path if it can be written. Throws TesselError or PlatformError otherwise.
    static SDImageFile inspectImage(const std::filesystem::path& url);

    /// Describes the panel that asks the person for an image.
    static Desktop::OpenPanel openPanel();

  private:
    Published<std::optional<SDImageFile>> chosen;
};

}  // namespace tessel
