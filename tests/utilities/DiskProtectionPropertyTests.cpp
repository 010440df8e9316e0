// The protection of disks, compared with a second statement of its rule on random computers.

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "foundation/Errors.h"
#include "services/DiskPropertyLists.h"
#include "tests/support/DescribedSystem.h"
#include "tests/support/PropertyRecords.h"
#include "utilities/linux/DiskDescriptions.h"
#include "utilities/linux/DiskProtection.h"
#include "utilities/linux/LinuxDiskUtility.h"
#include "utilities/linux/LinuxRawDiskOpener.h"

namespace tessel {

namespace {

/// Makes random computers: disks with partitions, what is stacked upon them, and what uses any of it.
class RandomMachines {
  public:
    explicit RandomMachines(uint64_t seed) : random(seed) {}

    DiskSnapshot next() {
        snapshot = {};
        for (const char* disk : {"sda", "sdb", "mmcblk0"})
            if (!rarely())
                addDisk(disk, std::string(disk) == "mmcblk0" ? "/sys/devices/mmc_host/block/"
                                                             : "/sys/devices/bus/block/");
        for (const char* stacked : {"dm-0", "md0", "dm-1"})
            if (random() % 3 == 0) stack(stacked);
        for (auto& device : snapshot.devices)
            use(device);
        if (!rarely() && !snapshot.devices.empty()) snapshot.rootDevice = any().name;
        snapshot.hasZFSPools = random() % 2 == 0;
        return snapshot;
    }

  private:
    bool rarely() { return random() % 12 == 0; }
    KernelDevice& any() { return snapshot.devices[random() % snapshot.devices.size()]; }

    void addDisk(const std::string& name, const std::string& folder) {
        const uint64_t number = snapshot.devices.size() + 1;
        snapshot.devices.push_back({.name = name,
                                    .path = folder + name,
                                    .sequenceNumber = rarely() ? 0 : number,
                                    .sequenceNumberAfterwards = rarely() ? 99 : number,
                                    .sizeBytes = rarely() ? uint64_t{0} : 1000,
                                    .isRemovable = !rarely(),
                                    .cardType = rarely() ? "SD" : "",
                                    .udisks = {.sequenceNumber = number}});
        auto& disk = snapshot.devices.back().udisks;
        if (rarely()) disk.model = "a\xff\x01]]></string>SD";
        if (rarely()) disk.sequenceNumber = rarely() ? std::optional<uint64_t>() : 98;
        for (unsigned part = 1; part <= random() % 3; ++part) {
            const auto partName = name + "p" + std::to_string(part);
            snapshot.devices.push_back(
                {.name = partName, .path = folder + name + "/" + partName, .partitionNumber = part});
        }
    }

    void stack(const std::string& name) {
        std::set<std::string> below;
        for (auto count = random() % 3; count > 0 && !snapshot.devices.empty(); --count)
            below.insert(any().name);
        addDisk(name, "/sys/devices/virtual/block/");
        if (rarely()) any().slaves.push_back(name);  // in a circle, perhaps
        for (auto& device : snapshot.devices) {
            if (device.name == name) device.slaves.assign(below.begin(), below.end());
            if (below.contains(device.name)) device.holders.push_back(name);
        }
    }

    void use(KernelDevice& device) {
        device.isSwap = rarely();
        device.spansDisks = rarely();
        device.isFileSystemActive = rarely();
        device.isReadOnly = rarely();
        device.isUseUnknown = rarely();
        device.isLocked = rarely();
        if (rarely()) device.users = {"loop3"};
        if (rarely()) device.udisks.fileSystem = "zfs_member";
        static constexpr const char* targets[] = {"/", "/media/ada/CARD", "/run/media/ada/CARD", "/media",
                                                  "/srv/media/x"};
        while (rarely())
            device.mounts.push_back({targets[random() % std::size(targets)], random() % 2 == 0});
    }

    std::mt19937_64 random;
    DiskSnapshot snapshot;
};

bool isHardware(const KernelDevice& device) {
    return device.path.find("virtual") == std::string::npos;
}

/// Returns the names of a device and of everything that lies upon it, however deep.
std::set<std::string> everythingUpon(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    std::set<std::string> names{disk.name};
    for (size_t known = 0; known != names.size();) {
        known = names.size();
        for (const auto& device : snapshot.devices) {
            const auto folder = device.path.substr(0, device.path.rfind('/'));
            bool isUpon = names.contains(folder.substr(folder.rfind('/') + 1));
            for (const auto& below : device.slaves)
                isUpon = isUpon || names.contains(below);
            if (isUpon) names.insert(device.name);
        }
    }
    return names;
}

/// Returns whether a disk may be unmounted, opened and ejected, by a second statement of the rule that starts
/// from the disk.
bool mayBeTouched(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    bool isRootKnown = false;
    for (const auto& other : snapshot.devices) {
        isRootKnown |= isHardware(other) && everythingUpon(snapshot, other).contains(snapshot.rootDevice);
    }
    if (!isRootKnown || everythingUpon(snapshot, disk).contains(snapshot.rootDevice)) return false;
    const auto number = disk.sequenceNumber;
    if (number == 0 || disk.sequenceNumberAfterwards != number || disk.udisks.sequenceNumber != number)
        return false;
    const bool isCardInSlot = disk.cardType == "SD" && disk.path.find("mmc_host") != disk.path.npos;
    if (!disk.isRemovable && !isCardInSlot) return false;
    for (const auto& part : snapshot.devices) {
        if (&part != &disk && part.path.find(disk.path + "/") != 0) continue;
        if (part.isSwap || part.spansDisks || !part.holders.empty() || !part.users.empty()) return false;
        if (part.isUseUnknown || (part.udisks.fileSystem == "zfs_member" && snapshot.hasZFSPools))
            return false;
        if ((part.isFileSystemActive && part.mounts.empty())) return false;
        for (const auto& mount : part.mounts)
            if (!mount.isByUDisks || (mount.target.find("/media/") != 0 && mount.target.find("/run/") != 0))
                return false;
    }
    return true;
}

/// Attempts an operation and ignores its failure; only its effects on the system matter.
void attempt(auto operation) {
    try {
        operation();
    } catch (const PlatformError&) {
    }
}

}  // namespace

TEST(DiskProtectionPropertyTests, nothingProtectedIsEverReachable) {
    const auto machines = recordsToTry(20'000);
    RandomMachines random(20'261'124);
    uint64_t touchable = 0;
    for (uint64_t number = 0; number < machines; ++number) {
        const DiskSnapshot snapshot = random.next();
        for (const auto& disk : snapshot.devices) {
            // Devices that exist only in the kernel are refused as virtual.
            if (disk.partitionNumber != 0 || !isHardware(disk)) continue;
            SCOPED_TRACE("machine " + std::to_string(number) + ", " + disk.name);
            const bool isTouchable = mayBeTouched(snapshot, disk);
            touchable += isTouchable ? 1 : 0;
            ASSERT_EQ(!protectionOf(snapshot, disk), isTouchable);
            const auto identifier = identifierOf(snapshot, disk);
            const auto record =
                parseDiskInfo(propertyListXML(diskDetailsOf(snapshot, disk)), identifier, nullptr).value();
            ASSERT_EQ(record.id, identifier);
            ASSERT_EQ(record.isWritable, isTouchable && !disk.isReadOnly);
            if (isTouchable) continue;
            DescribedSystem system(snapshot);
            system.readingTime = std::chrono::seconds(30);  // so long that nothing is waited for
            attempt([&] { LinuxDiskUtility(system).unmount(identifier); });
            attempt([&] { LinuxDiskUtility(system).eject(identifier); });
            attempt([&] { LinuxRawDiskOpener(system).open(identifier); });
            for (const auto& call : system.calls)
                ASSERT_FALSE(call.ends_with(" " + disk.name) || call.find(" " + disk.name + "p") != call.npos)
                    << call;
        }
    }
    EXPECT_GT(touchable, machines / 20) << "too few to tell";
}

}  // namespace tessel
