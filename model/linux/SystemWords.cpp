#include "model/SystemWords.h"

namespace tessel {

const SystemWords& systemWords() {
    static const SystemWords words{
        .scanStarted = "Scanning every whole disk visible to Linux.",
        .noWholeDisks =
            "Linux returned no whole-disk identifiers. Confirm that the disk service (UDisks2) is "
            "running and press Refresh Disks again.",
        .cardNotWritable = "Linux did not report the SD card as writable.",
        .authorizationUtilityUnavailable =
            "The utility that asks UDisks2 to open the SD card is unavailable. Install Velmora Tessel again.",
        .authorizationUtilityNotLaunched =
            "The utility that asks UDisks2 to open the SD card could not be launched: ",
        .rawAccessDenied =
            "Linux denied raw SD-card access. Start Velmora Tessel in a desktop session, outside any "
            "container or sandbox, then try again. If access is denied again, ask your administrator whether "
            "a security policy such as AppArmor or SELinux forbids it.",
        .cardEjected = "Linux ejected the SD card. It is now safe to physically remove it.",
        .cardEjectedAfterWrite = "Linux has ejected the SD card, so it is now safe to physically remove it.",
        .callsCard = "Linux calls it ",
    };
    return words;
}

}  // namespace tessel
