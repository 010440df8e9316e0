#include "utilities/linux/Machine.h"

#include <algorithm>
#include <cerrno>

#include "foundation/Errors.h"

namespace tessel {

namespace {

bool isPartOf(const BlockDevice& part, const BlockDevice& whole) {
    return part.path.starts_with(whole.path + "/");
}

const BlockDevice* deviceNamed(const Machine& machine, std::string_view name) {
    const auto found = std::ranges::find(machine.devices, name, &BlockDevice::name);
    return found == machine.devices.end() ? nullptr : &*found;
}

const BlockDevice& wholeDiskOf(const Machine& machine, const BlockDevice& device) {
    const auto whole = std::ranges::find_if(
        machine.devices, [&](const BlockDevice& other) { return isPartOf(device, other); });
    return whole == machine.devices.end() ? device : *whole;
}

bool isAmong(const std::vector<const BlockDevice*>& disks, const BlockDevice& disk) {
    return std::ranges::find(disks, &disk) != disks.end();
}

/// Descends from a device to everything below it, the device included. Readings of several moments may
/// contradict each other, and even lead in a circle.
void collectDevicesBelow(const Machine& machine, std::string_view name,
                         std::vector<const BlockDevice*>& devices) {
    const BlockDevice* device = deviceNamed(machine, name);
    if (!device || isAmong(devices, *device)) return;
    devices.push_back(device);
    for (const std::string& slave : device->slaves)
        collectDevicesBelow(machine, slave, devices);
    collectDevicesBelow(machine, wholeDiskOf(machine, *device).name, devices);
}

uint64_t numberOf(const Machine& machine, const BlockDevice& disk) {
    const auto system = systemDisks(machine);
    return !system.empty() && system.front() == &disk ? 0 : disk.sequenceNumber;
}

bool isListed(const Machine& machine, const BlockDevice& device) {
    if (&wholeDiskOf(machine, device) != &device || device.sizeBytes == 0) return false;
    if (numberOf(machine, device) == 0) return isAmong(systemDisks(machine), device);
    return device.sequenceNumber == device.sequenceNumberAfterwards;
}

}  // namespace

bool isVirtual(const BlockDevice& device) {
    return device.path.starts_with("/sys/devices/virtual/block/");
}

bool isInCardSlot(const BlockDevice& device) {
    return device.path.find("/mmc_host/") != std::string::npos;
}

bool isSDCardInSlot(const BlockDevice& device) {
    return isInCardSlot(device) && device.cardType == "SD";
}

bool sharesDrive(const Machine& machine, const BlockDevice& disk) {
    const std::string& drive = disk.udisks.drive;
    return !drive.empty() && std::ranges::any_of(machine.devices, [&](const BlockDevice& other) {
        return other.udisks.drive == drive && &wholeDiskOf(machine, other) != &disk;
    });
}

std::vector<const BlockDevice*> partsOf(const Machine& machine, const BlockDevice& disk) {
    std::vector<const BlockDevice*> parts;
    for (const BlockDevice& device : machine.devices)
        if (&device == &disk || isPartOf(device, disk)) parts.push_back(&device);
    return parts;
}

std::vector<const BlockDevice*> mountedParts(const Machine& machine, const BlockDevice& disk) {
    auto parts = partsOf(machine, disk);
    std::erase_if(parts, [](const BlockDevice* part) { return part->mounts.empty(); });
    return parts;
}

std::vector<const BlockDevice*> systemDisks(const Machine& machine) {
    std::vector<const BlockDevice*> disks;
    collectDevicesBelow(machine, machine.rootDevice, disks);
    std::erase_if(disks, [&](const BlockDevice* device) {
        return isVirtual(*device) || &wholeDiskOf(machine, *device) != device;
    });
    std::ranges::sort(disks, {}, &BlockDevice::sequenceNumber);
    return disks;
}

std::vector<const BlockDevice*> listedDisks(const Machine& machine) {
    std::vector<const BlockDevice*> disks;
    for (const BlockDevice& device : machine.devices)
        if (isListed(machine, device)) disks.push_back(&device);
    return disks;
}

std::string identifierOf(const Machine& machine, const BlockDevice& disk) {
    return "disk" + std::to_string(numberOf(machine, disk));
}

const BlockDevice* findListedDisk(const Machine& machine, std::string_view identifier) {
    for (const BlockDevice* disk : listedDisks(machine))
        if (identifierOf(machine, *disk) == identifier) return disk;
    return nullptr;
}

const BlockDevice& listedDisk(const Machine& machine, std::string_view identifier) {
    if (const BlockDevice* disk = findListedDisk(machine, identifier)) return *disk;
    throw PlatformError("Disk", ENXIO, "Could not find disk: " + std::string(identifier) + ".");
}

}  // namespace tessel
