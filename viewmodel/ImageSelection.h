#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "foundation/Published.h"
#include "model/SDImageFile.h"
#include "platform/Desktop.h"
#include "platform/concurrency/Task.h"

namespace tessel {

/// The image that is to be written. It may be used on the main thread only.
class ImageSelection {
  public:
    explicit ImageSelection(const std::function<void()>& onChange) : selectedImage(onChange, std::nullopt) {}

    Published<std::optional<SDImageFile>> selectedImage;

    /// Returns the image at that path if it can be written. Throws TesselError or PlatformError otherwise,
    /// and CancellationError as soon as a stop is requested, since the disk of the image may never answer.
    static Task<SDImageFile> inspectImage(std::filesystem::path url);
    /// Inspects likewise the file that the path leads to once its links are resolved.
    static Task<SDImageFile> inspectLinkedImage(std::filesystem::path url);

    /// Returns the panel that asks the user for an image.
    static Desktop::OpenPanel openPanel();
};

}  // namespace tessel
