#pragma once

#include <optional>
#include <string>

namespace tessel {

/// The outcome of a write.
enum class WriteOutcome { written, writtenAndVerified, failed, cancelled };

/// What the program is doing, or how the last operation ended.
struct TesselOperationState {
    enum class Case { idle, selectingImage, scanningDisks, writingImage, completed, warning, failed };

    Case kind = Case::idle;
    std::string text = {};                                    ///< the description of an ended operation
    std::optional<WriteOutcome> writeOutcome = std::nullopt;  ///< the outcome, once a write has ended

    static TesselOperationState completed(std::string text) { return {Case::completed, std::move(text)}; }
    static TesselOperationState warning(std::string text) { return {Case::warning, std::move(text)}; }
    static TesselOperationState failed(std::string text) { return {Case::failed, std::move(text)}; }
    static TesselOperationState ofWrite(WriteOutcome outcome);

    bool operator==(const TesselOperationState&) const = default;

    /// Returns whether every other operation is refused for now.
    [[nodiscard]] bool isBusy() const {
        return kind == Case::selectingImage || kind == Case::scanningDisks || kind == Case::writingImage;
    }

    /// Returns whether a write has succeeded and nothing has happened since.
    [[nodiscard]] bool isSuccessfulCompletion() const {
        return writeOutcome == WriteOutcome::written || writeOutcome == WriteOutcome::writtenAndVerified;
    }
};

}  // namespace tessel
