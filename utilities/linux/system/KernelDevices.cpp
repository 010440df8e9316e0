#include "utilities/linux/system/KernelDevices.h"

#include <libudev.h>

#include <charconv>
#include <fstream>
#include <memory>

#include "foundation/Release.h"
#include "utilities/linux/system/DeviceLocks.h"
#include "utilities/linux/system/DeviceUses.h"

namespace tessel {

namespace {

/// The kernel counts in sectors of this size, whatever the device's own blocks are.
constexpr uint64_t bytesPerSector = 512;

/// Reads the first line of an attribute; empty when the device lacks it.
std::string readText(const std::filesystem::path& attribute) {
    std::string line;
    std::getline(std::ifstream(attribute), line);
    return line;
}

uint64_t readNumber(const std::filesystem::path& attribute) {
    const std::string text = readText(attribute);
    uint64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::vector<std::string> namesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    std::error_code isMissing;
    for (const auto& entry : std::filesystem::directory_iterator(folder, isMissing))
        names.push_back(entry.path().filename().string());
    return names;
}

using Database = std::unique_ptr<udev, Release<udev_unref>>;
using DatabaseEntry = std::unique_ptr<udev_device, Release<udev_device_unref>>;

/// Looks up the device database's name for the USB device that the block device belongs to.
std::string readDatabaseName(udev* database, const std::string& name) {
    const DatabaseEntry entry(udev_device_new_from_subsystem_sysname(database, "block", name.c_str()));
    udev_device* const reader =
        entry ? udev_device_get_parent_with_subsystem_devtype(entry.get(), "usb", "usb_device") : nullptr;
    const char* text = reader ? udev_device_get_property_value(reader, "ID_MODEL_FROM_DATABASE") : nullptr;
    return text ? text : "";
}

/// Counts the devices of the mounted file system that this one belongs to; 0 when there is none. A file
/// system on several devices is mounted from one of them, and the kernel tells only here which others belong
/// to it.
size_t countMembersOfFileSystem(const std::string& name) {
    for (const std::string& fileSystem : namesIn("/sys/fs/btrfs")) {
        const auto members = std::filesystem::path("/sys/fs/btrfs") / fileSystem / "devices";
        if (std::filesystem::exists(members / name)) return namesIn(members).size();
    }
    return 0;
}

/// What caches onto a device holds it, but is not listed among its holders.
std::vector<std::string> readCaches(const std::filesystem::path& device) {
    if (!std::filesystem::exists(device / "bcache")) return {};
    return {"bcache"};
}

BlockDevice readDevice(udev* database, const std::filesystem::path& path) {
    const std::string name = path.filename().string();
    const size_t members = countMembersOfFileSystem(name);
    return {
        .name = name,
        .path = path.string(),
        .sequenceNumber = readSequenceNumber(path),
        .sizeBytes = readNumber(path / "size") * bytesPerSector,
        .isReadOnly = readNumber(path / "ro") != 0,
        .partitionNumber = static_cast<unsigned>(readNumber(path / "partition")),
        .cardType = readText(path / "device/type"),
        .databaseName = readDatabaseName(database, name),
        .holders = namesIn(path / "holders"),
        .slaves = namesIn(path / "slaves"),
        .users = readCaches(path),
        .spansDisks = members > 1,
        .isFileSystemActive = members > 0,
    };
}

}  // namespace

Machine readKernelDevices() {
    const Database database(udev_new());
    Machine machine;
    for (const std::string& name : namesIn("/sys/class/block")) {
        std::error_code isGone;
        const auto path = std::filesystem::canonical("/sys/class/block/" + name, isGone);
        if (!isGone) machine.devices.push_back(readDevice(database.get(), path));
    }
    addUses(machine);
    addLocks(machine);
    machine.isSettling = std::filesystem::exists("/run/udev/queue");
    return machine;
}

uint64_t readSequenceNumber(const std::filesystem::path& device) {
    return readNumber(device / "diskseq");
}

}  // namespace tessel
