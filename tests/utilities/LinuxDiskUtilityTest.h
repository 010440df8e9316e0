#pragma once

#include <gmock/gmock.h>

#include <chrono>
#include <string>

#include "foundation/Errors.h"
#include "tests/support/DescribedMachine.h"
#include "tests/support/DescribedSystem.h"
#include "utilities/linux/LinuxDiskUtility.h"

namespace tessel {

inline const std::string notEjected = "The image was written, but the SD card could not be ejected. ";

/// A computer with a card in the laptop's own slot as disk7, with one volume that the desktop mounted.
class LinuxDiskUtilityTest : public testing::Test {
  protected:
    std::string failureOf(void (LinuxDiskUtility::*action)(const std::string&)) {
        try {
            (disks.*action)("disk7");
            return "";
        } catch (const PlatformError& error) {
            return error.localizedDescription();
        }
    }
    std::string unmount() { return failureOf(&LinuxDiskUtility::unmount); }
    std::string eject() { return failureOf(&LinuxDiskUtility::eject); }
    /// Moves the card into a reader that can eject.
    void useReaderWithMechanism() {
        for (const char* name : {"mmcblk0", "mmcblk0p1"}) {
            std::string& path = system.named(name).path;
            path.replace(path.find("/mmc_host/"), 1, "/usb1/");
            path.erase(path.find("mmc_host/"), 9);
        }
    }
    std::chrono::seconds elapsed() const {
        return std::chrono::duration_cast<std::chrono::seconds>(system.time.time_since_epoch());
    }
    void mountWhileWaiting() {
        system.onWait = [this] {
            mountByDesktop();
            system.onWait = nullptr;
        };
    }
    void mountByDesktop() { volume.mounts.push_back({.target = "/media/ada/NEW", .isByUDisks = true}); }

    DescribedSystem system{
        DescribedMachine::read(TESSEL_DESCRIBED_MACHINES "/laptop-sd-card.machine").snapshot};
    KernelDevice& volume = system.named("mmcblk0p1");
    LinuxDiskUtility disks{system};
};

}  // namespace tessel
