#include "utilities/linux/system/KernelDevices.h"

#include <libudev.h>

#include <charconv>
#include <fstream>
#include <memory>
#include <span>

#include "foundation/Errors.h"
#include "foundation/Release.h"
#include "platform/linux/DiskStatistics.h"
#include "utilities/linux/system/DeviceLocks.h"
#include "utilities/linux/system/DeviceUses.h"
#include "utilities/linux/system/KernelFiles.h"

namespace tessel {

namespace {

/// The kernel counts in sectors of this size, whatever the device's own blocks are.
constexpr uint64_t bytesPerSector = 512;

/// Returns the text of an attribute; empty when the device lacks it.
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

using Database = std::unique_ptr<udev, Release<udev_unref>>;
using DatabaseEntry = std::unique_ptr<udev_device, Release<udev_device_unref>>;

/// Returns the name that udev's hardware database has for the USB device that the block device belongs to.
std::string readDatabaseName(udev* database, const std::string& name) {
    const DatabaseEntry entry(udev_device_new_from_subsystem_sysname(database, "block", name.c_str()));
    udev_device* const reader =
        entry ? udev_device_get_parent_with_subsystem_devtype(entry.get(), "usb", "usb_device") : nullptr;
    const char* text = reader ? udev_device_get_property_value(reader, "ID_MODEL_FROM_DATABASE") : nullptr;
    return text ? text : "";
}

/// Notes the devices that lie upon this one and below it.
void addStack(KernelDevice& device) {
    const std::filesystem::path path = device.path;
    device.holders = namesIn(path / "holders");
    device.slaves = namesIn(path / "slaves");
    // A cache that uses a device is not listed among its holders.
    if (!namesIn(path / "bcache").empty()) device.users.emplace_back("bcache");
}

std::optional<uint64_t> readBytesWritten(const std::filesystem::path& path) {
    const auto bytes = DiskStatistics(path).bytesWritten();
    return bytes.isSuccess() ? std::optional(bytes.value) : std::nullopt;
}

KernelDevice readDevice(udev* database, const std::filesystem::path& path) {
    const std::string name = path.filename().string();
    return {
        .name = name,
        .path = path.string(),
        .sequenceNumber = readSequenceNumber(path),
        .sizeBytes = readNumber(path / "size") * bytesPerSector,
        .isReadOnly = readNumber(path / "ro") != 0,
        .isRemovable = readNumber(path / "removable") != 0,
        .partitionNumber = static_cast<unsigned>(readNumber(path / "partition")),
        .cardType = readText(path / "device/type"),
        .databaseName = readDatabaseName(database, name),
        .bytesWritten = readBytesWritten(path),
    };
}

/// Runs a function that reads signs of use. If it fails, the use of all these devices is unknown.
template <typename Reading>
void readOrDoubt(std::span<KernelDevice> devices, Reading reading) {
    try {
        reading();
    } catch (const PlatformError&) {
        for (KernelDevice& device : devices)
            device.isUseUnknown = true;
    }
}

}  // namespace

DiskSnapshot readKernelDevices() {
    const Database database(udev_new());
    DiskSnapshot snapshot;
    for (const std::string& name : namesIn("/sys/class/block")) {
        std::error_code isGone;
        const auto path = std::filesystem::canonical("/sys/class/block/" + name, isGone);
        if (!isGone) snapshot.devices.push_back(readDevice(database.get(), path));
    }
    for (KernelDevice& device : snapshot.devices)
        readOrDoubt({&device, 1}, [&] { addStack(device); });
    const MountTable mounts = readMounts();  // without this table, every device might be in use
    addUses(snapshot, mounts.get(), readSwaps().get());
    readOrDoubt(snapshot.devices, [&] { addUsers(snapshot, mounts.get()); });
    readOrDoubt(snapshot.devices, [&] { addSpanningFileSystems(snapshot); });
    readOrDoubt(snapshot.devices, [&] { addLocks(snapshot); });
    snapshot.isSettling = std::filesystem::exists("/run/udev/queue");
    return snapshot;
}

uint64_t readSequenceNumber(const std::filesystem::path& device) {
    return readNumber(device / "diskseq");
}

}  // namespace tessel
