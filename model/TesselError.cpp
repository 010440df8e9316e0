#include "model/TesselError.h"

namespace tessel {

namespace {

std::string describe(TesselError::Case kind, const std::string& payload) {
    using enum TesselError::Case;
    switch (kind) {
        case commandFailed:
            return payload;
        case unsafeDisk:
            return "The selected disk is protected: " + payload;
        case confirmationRequired:
            return "Enter " + payload + " exactly before writing the image.";
        case invalidImage:
            return "Select an uncompressed raw image with an .img, .raw, or .bin extension.";
        case imageUnavailable:
            return "The selected image file is unavailable.";
        case imageChanged:
            return "The selected image changed after it was selected.";
        case imageTooLarge:
            return "The selected image is larger than the selected SD card.";
        case noSelectedDisk:
            return "Select a recognized and eligible SD card first.";
        case diskChanged:
            return "The selected disk changed after it was scanned. Refresh the disk list and select it "
                   "again.";
        case verificationFailed:
            return "The SHA-256 digest of the written media did not match the image.";
        case operationCancelled:
            return "The administrator-authorized operation was cancelled.";
    }
    return payload;
}

}  // namespace

TesselError::TesselError(Case kind) : TesselError(kind, {}) {}

TesselError::TesselError(Case kind, const std::string& payload) :
    Error(describe(kind, payload)),
    errorCase(kind) {}

TesselError TesselError::commandFailed(const std::string& message) {
    return {Case::commandFailed, message};
}

TesselError TesselError::unsafeDisk(const std::string& reason) {
    return {Case::unsafeDisk, reason};
}

TesselError TesselError::confirmationRequired(const std::string& expectedText) {
    return {Case::confirmationRequired, expectedText};
}

TesselError TesselError::diskGone() {
    TesselError error(Case::diskChanged);
    error.diskIsGone = true;
    return error;
}

}  // namespace tessel
