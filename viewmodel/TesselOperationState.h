#pragma once

#include <string>

namespace tessel {

/// What the program is doing, or how the last operation ended.
struct TesselOperationState {
    enum class Case { idle, selectingImage, scanningDisks, writingImage, completed, warning, failed };

    Case kind = Case::idle;
    std::string text;  ///< of an operation that ended

    static TesselOperationState completed(std::string text) { return {Case::completed, std::move(text)}; }
    static TesselOperationState warning(std::string text) { return {Case::warning, std::move(text)}; }
    static TesselOperationState failed(std::string text) { return {Case::failed, std::move(text)}; }

    bool operator==(const TesselOperationState&) const = default;

    /// Whether every other operation is refused.
    bool isBusy() const {
        return kind == Case::selectingImage || kind == Case::scanningDisks || kind == Case::writingImage;
    }
};

}  // namespace tessel
