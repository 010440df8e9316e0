#include "viewmodel/TesselOperationState.h"

#include <utility>

namespace tessel {

TesselOperationState TesselOperationState::ofWrite(WriteOutcome outcome) {
    const auto ended = [outcome](Case kind, std::string text) {
        return TesselOperationState{.kind = kind, .text = std::move(text), .writeOutcome = outcome};
    };
    switch (outcome) {
        case WriteOutcome::written:
            return ended(Case::completed, "Image written");
        case WriteOutcome::writtenAndVerified:
            return ended(Case::completed, "Image written and verified");
        case WriteOutcome::cancelled:
            return ended(Case::warning, "Operation cancelled");
        case WriteOutcome::failed:
            break;
    }
    return ended(Case::failed, "Image write failed");
}

}  // namespace tessel
