#include "utilities/linux/DiskSnapshot.h"

#include <algorithm>
#include <cerrno>

#include "foundation/Errors.h"

namespace tessel {

namespace {

bool isPartOf(const KernelDevice& part, const KernelDevice& whole) {
    return part.path.starts_with(whole.path + "/");
}

const KernelDevice* deviceNamed(const DiskSnapshot& snapshot, std::string_view name) {
    const auto found = std::ranges::find(snapshot.devices, name, &KernelDevice::name);
    return found == snapshot.devices.end() ? nullptr : &*found;
}

const KernelDevice& wholeDiskOf(const DiskSnapshot& snapshot, const KernelDevice& device) {
    const auto whole = std::ranges::find_if(
        snapshot.devices, [&](const KernelDevice& other) { return isPartOf(device, other); });
    return whole == snapshot.devices.end() ? device : *whole;
}

bool isAmong(const std::vector<const KernelDevice*>& disks, const KernelDevice& disk) {
    return std::ranges::find(disks, &disk) != disks.end();
}

/// Collects the device and everything below it. Readings at different moments may contradict each other, and
/// even lead in a circle.
void collectDevicesBelow(const DiskSnapshot& snapshot, std::string_view name,
                         std::vector<const KernelDevice*>& devices) {
    const KernelDevice* device = deviceNamed(snapshot, name);
    if (!device || isAmong(devices, *device)) return;
    devices.push_back(device);
    for (const std::string& slave : device->slaves)
        collectDevicesBelow(snapshot, slave, devices);
    collectDevicesBelow(snapshot, wholeDiskOf(snapshot, *device).name, devices);
}

uint64_t numberOf(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    const auto system = systemDisks(snapshot);
    return !system.empty() && system.front() == &disk ? 0 : disk.sequenceNumber;
}

bool isListed(const DiskSnapshot& snapshot, const KernelDevice& device) {
    if (&wholeDiskOf(snapshot, device) != &device || device.sizeBytes == 0) return false;
    if (numberOf(snapshot, device) == 0) return isAmong(systemDisks(snapshot), device);
    return device.sequenceNumber == device.sequenceNumberAfterwards;
}

}  // namespace

bool isVirtual(const KernelDevice& device) {
    return device.path.starts_with("/sys/devices/virtual/block/");
}

bool isInCardSlot(const KernelDevice& device) {
    return device.path.find("/mmc_host/") != std::string::npos;
}

bool isSDCardInSlot(const KernelDevice& device) {
    return isInCardSlot(device) && device.cardType == "SD";
}

bool sharesDrive(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    const std::string& drive = disk.udisks.drive;
    return !drive.empty() && std::ranges::any_of(snapshot.devices, [&](const KernelDevice& other) {
        return other.udisks.drive == drive && &wholeDiskOf(snapshot, other) != &disk;
    });
}

std::vector<const KernelDevice*> partsOf(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    std::vector<const KernelDevice*> parts;
    for (const KernelDevice& device : snapshot.devices)
        if (&device == &disk || isPartOf(device, disk)) parts.push_back(&device);
    return parts;
}

std::vector<const KernelDevice*> mountedParts(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    auto parts = partsOf(snapshot, disk);
    std::erase_if(parts, [](const KernelDevice* part) { return part->mounts.empty(); });
    return parts;
}

std::vector<const KernelDevice*> systemDisks(const DiskSnapshot& snapshot) {
    std::vector<const KernelDevice*> disks;
    collectDevicesBelow(snapshot, snapshot.rootDevice, disks);
    std::erase_if(disks, [&](const KernelDevice* device) {
        return isVirtual(*device) || &wholeDiskOf(snapshot, *device) != device;
    });
    std::ranges::sort(disks, {}, &KernelDevice::sequenceNumber);
    return disks;
}

std::vector<const KernelDevice*> listedDisks(const DiskSnapshot& snapshot) {
    std::vector<const KernelDevice*> disks;
    for (const KernelDevice& device : snapshot.devices)
        if (isListed(snapshot, device)) disks.push_back(&device);
    return disks;
}

std::string identifierOf(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    return "disk" + std::to_string(numberOf(snapshot, disk));
}

const KernelDevice* findListedDisk(const DiskSnapshot& snapshot, std::string_view identifier) {
    for (const KernelDevice* disk : listedDisks(snapshot))
        if (identifierOf(snapshot, *disk) == identifier) return disk;
    return nullptr;
}

const KernelDevice& listedDisk(const DiskSnapshot& snapshot, std::string_view identifier) {
    if (const KernelDevice* disk = findListedDisk(snapshot, identifier)) return *disk;
    throw PlatformError(ENXIO, "Could not find disk: " + std::string(identifier) + ".");
}

}  // namespace tessel
