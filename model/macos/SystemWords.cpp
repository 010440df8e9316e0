#include "model/SystemWords.h"

namespace tessel {

const SystemWords& systemWords() {
    static const SystemWords words{
        .scanStarted = "Scanning every whole disk visible to macOS.",
        .noWholeDisks =
            "macOS returned no whole-disk identifiers. Confirm that App Sandbox is disabled and "
            "press Refresh Disks again.",
        .cardNotWritable = "macOS did not report the SD card as writable.",
        .authorizationUtilityUnavailable = "The macOS authopen utility is unavailable.",
        .authorizationUtilityNotLaunched = "The macOS authorization utility could not be launched: ",
        .rawAccessDenied =
            "macOS denied raw SD-card access. Allow removable-volume access for VelmoraTessel "
            "in System Settings, then try again.",
        .cardEjected = "macOS ejected the SD card. It is now safe to physically remove it.",
        .cardEjectedAfterWrite = "macOS has ejected the SD card, so it is now safe to physically remove it.",
        .callsCard = "macOS calls it ",
    };
    return words;
}

}  // namespace tessel
