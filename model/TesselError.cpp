#include "model/TesselError.h"

#include <new>

#include "foundation/Errors.h"

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
    errorCase(kind),
    description(describe(kind, payload)) {}

TesselError TesselError::commandFailed(const std::string& message) {
    return {Case::commandFailed, message};
}

TesselError TesselError::unsafeDisk(const std::string& reason) {
    return {Case::unsafeDisk, reason};
}

TesselError TesselError::confirmationRequired(const std::string& expectedText) {
    return {Case::confirmationRequired, expectedText};
}

std::string localizedDescription(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const TesselError& own) {
        return own.errorDescription();
    } catch (const PlatformError& platform) {
        return platform.localizedDescription();
    } catch (const std::bad_alloc&) {
        return "There is not enough memory.";
    } catch (const std::exception& other) {
        return other.what();
    }
}

}  // namespace tessel
