#pragma once

#include <optional>
#include <string>

namespace tessel {

/// Tells how a write ended.
enum class WriteOutcome { written, writtenAndVerified, failed, cancelled };

/// Tells what the program is doing, or how the last operation ended.
struct TesselOperationState {
    enum class Case { idle, selectingImage, scanningDisks, writingImage, completed, warning, failed };

    Case kind = Case::idle;
    std::string text = {};                                    ///< describes an operation that has ended
    std::optional<WriteOutcome> writeOutcome = std::nullopt;  ///< is set once a write has ended

    static TesselOperationState completed(std::string text) { return {Case::completed, std::move(text)}; }
    static TesselOperationState warning(std::string text) { return {Case::warning, std::move(text)}; }
    static TesselOperationState failed(std::string text) { return {Case::failed, std::move(text)}; }
    static TesselOperationState ofWrite(WriteOutcome outcome);

    bool operator==(const TesselOperationState&) const = default;

    /// Tells whether every other operation is refused for now.
    [[nodiscard]] bool isBusy() const {
        return kind == Case::selectingImage || kind == Case::scanningDisks || kind == Case::writingImage;
    }

    /// Tells whether a write has succeeded and nothing has happened since.
    [[nodiscard]] bool isSuccessfulCompletion() const {
        return writeOutcome == WriteOutcome::written || writeOutcome == WriteOutcome::writtenAndVerified;
    }
};

}  // namespace tessel
