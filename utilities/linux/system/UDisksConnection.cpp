#include "utilities/linux/system/UDisksConnection.h"

#include <fcntl.h>
#include <gio/gunixfdlist.h>
#include <sys/sysmacros.h>
#include <udisks/udisks.h>

#include <cerrno>
#include <charconv>
#include <chrono>
#include <condition_variable>
#include <fstream>
#include <mutex>
#include <string_view>
#include <thread>

#include "foundation/Errors.h"
#include "foundation/Release.h"
#include "utilities/linux/system/UDisksErrors.h"

namespace tessel {

namespace {

template <typename Type>
using Object = std::unique_ptr<Type, Release<g_object_unref>>;
using Variant = std::unique_ptr<GVariant, Release<g_variant_unref>>;
using Text = std::unique_ptr<char, Release<g_free>>;

/// Cancels a pending call to the bus or UDisks2 once the limit has passed.
class TimeLimit {
  public:
    explicit TimeLimit(UDisksConnection::Duration limit) :
        canceller([this, limit](const std::stop_token& isDone) {
            std::mutex mutex;
            std::unique_lock lock(mutex);
            std::condition_variable_any().wait_for(lock, isDone, limit, [] { return false; });
            if (!isDone.stop_requested()) g_cancellable_cancel(cancellable.get());
        }) {}

    GCancellable* get() const { return cancellable.get(); }

  private:
    Object<GCancellable> cancellable{g_cancellable_new()};
    std::jthread canceller;  ///< the last member, so that it ends before what it cancels
};

/// Runs a call that reports its failure through a GError, and throws that as an exception.
template <typename Call>
auto checked(Call call) {
    GError* error = nullptr;
    const auto result = call(&error);
    if (!error) return result;
    throw refusal(*OwnedError(error));
}

std::string text(const char* words) {
    return words ? words : "";
}

GVariant* noOptions() {
    return g_variant_new("a{sv}", nullptr);
}

/// Returns the options of a call that takes a single one.
GVariant* onlyOption(const char* name, GVariant* value) {
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&options, "{sv}", name, value);
    return g_variant_builder_end(&options);
}

/// Returns the kernel's number for a block device, whatever /dev says, or 0 when the device is gone.
dev_t deviceNumber(const std::string& name) {
    std::ifstream attribute("/sys/class/block/" + name + "/dev");
    unsigned majorNumber = 0;
    unsigned minorNumber = 0;
    char colon = 0;
    if (!(attribute >> majorNumber >> colon >> minorNumber)) return 0;
    return makedev(majorNumber, minorNumber);
}

Object<UDisksBlock> findBlock(UDisksClient* client, dev_t number) {
    return Object<UDisksBlock>(number ? udisks_client_get_block_for_dev(client, number) : nullptr);
}

Object<UDisksBlock> requireBlock(UDisksClient* client, const std::string& device) {
    auto block = findBlock(client, deviceNumber(device));
    if (!block) throw PlatformError(ENXIO, "The disk service does not know /dev/" + device + ".");
    return block;
}

/// Returns the object that all interfaces of a block device belong to. It is valid for as long as the block
/// is.
UDisksObject* objectOf(UDisksBlock* block) {
    return UDISKS_OBJECT(g_dbus_interface_get_object(G_DBUS_INTERFACE(block)));
}

/// Returns the number in a link such as "/dev/disk/by-diskseq/12", which udev makes for a whole disk.
std::optional<uint64_t> sequenceNumberInLinks(const char* const* links) {
    constexpr std::string_view prefix = "/dev/disk/by-diskseq/";
    for (; links && *links; ++links) {
        const std::string_view link = *links;
        if (!link.starts_with(prefix)) continue;
        uint64_t number = 0;
        const auto [end, error] =
            std::from_chars(link.data() + prefix.size(), link.data() + link.size(), number);
        if (error == std::errc() && end == link.data() + link.size()) return number;
    }
    return std::nullopt;
}

void describeDrive(UDisksDrive* drive, UDisksRecord& record) {
    record.vendor = text(udisks_drive_get_vendor(drive));
    record.model = text(udisks_drive_get_model(drive));
    record.media = text(udisks_drive_get_media(drive));
    record.isMediaAvailable = udisks_drive_get_media_available(drive);
    record.isMediaRemovable = udisks_drive_get_media_removable(drive);
    record.isEjectable = udisks_drive_get_ejectable(drive);
}

/// Returns the number of whole disks that have this drive. Readers that UDisks2 can't tell apart share one.
size_t countDisksWith(UDisksClient* client, const std::string& drivePath) {
    GList* const objects = g_dbus_object_manager_get_objects(udisks_client_get_object_manager(client));
    size_t count = 0;
    for (const GList* item = objects; item; item = item->next) {
        UDisksObject* const object = UDISKS_OBJECT(item->data);
        UDisksBlock* const block = udisks_object_peek_block(object);
        const bool isWhole = block && !udisks_object_peek_partition(object);
        if (isWhole && drivePath == udisks_block_get_drive(block)) ++count;
    }
    g_list_free_full(objects, g_object_unref);
    return count;
}

UDisksRecord describeBlock(UDisksClient* client, UDisksBlock* block) {
    const std::string drivePath = text(udisks_block_get_drive(block));
    UDisksRecord record{
        .drive = drivePath == "/" ? "" : drivePath,  // "/" means none to UDisks2
        .sequenceNumber = sequenceNumberInLinks(udisks_block_get_symlinks(block)),
        .fileSystem = text(udisks_block_get_id_type(block)),
        .volumeName = text(udisks_block_get_id_label(block)),
    };
    if (const Object<UDisksDrive> drive(udisks_client_get_drive_for_block(client, block)); drive)
        describeDrive(drive.get(), record);
    if (UDisksPartitionTable* table = udisks_object_peek_partition_table(objectOf(block)))
        record.partitionTable = text(udisks_partition_table_get_type_(table));
    return record;
}

}  // namespace

UDisksConnection::UDisksConnection() {
    // The user is not asked anything here, but a service that is only now being started needs a second or
    // two.
    const TimeLimit limit(std::chrono::seconds(15));
    GError* error = nullptr;
    client.reset(udisks_client_new_sync(limit.get(), &error));
    const OwnedError problem(error);
    if (problem && isWithoutAnswer(*problem)) throw refusal(*problem);
    GDBusObjectManager* const manager = client ? udisks_client_get_object_manager(client.get()) : nullptr;
    // Without the service the client is created all the same, and finds no disks.
    const Text owner(manager
                         ? g_dbus_object_manager_client_get_name_owner(G_DBUS_OBJECT_MANAGER_CLIENT(manager))
                         : nullptr);
    if (!owner)
        throw PlatformError(ENOENT,
                            "The disk service UDisks2 is not running. Install the package udisks2, or start "
                            "the service, and try again. In a container or sandbox it can't be reached.");
}

void UDisksConnection::describe(std::vector<KernelDevice>& devices) const {
    for (KernelDevice& device : devices)
        if (const auto record = recordOf(deviceNumber(device.name))) device.udisks = *record;
}

std::optional<UDisksRecord> UDisksConnection::recordOf(dev_t number) const {
    const auto block = findBlock(client.get(), number);
    return block ? std::optional(describeBlock(client.get(), block.get())) : std::nullopt;
}

void UDisksConnection::unmount(const std::string& device, Duration limit) const {
    const auto block = requireBlock(client.get(), device);
    UDisksFilesystem* const fileSystem = udisks_object_peek_filesystem(objectOf(block.get()));
    if (!fileSystem)
        throw PlatformError(EINVAL, "The disk service found no file system on /dev/" + device + ".");
    // With "force" UDisks2 would merely hide a mount that is still in use.
    const TimeLimit timeLimit(limit);
    checked([&](GError** error) {
        return udisks_filesystem_call_unmount_sync(fileSystem, noOptions(), timeLimit.get(), error);
    });
}

FileDescriptor UDisksConnection::open(const std::string& device) const {
    const auto block = requireBlock(client.get(), device);
    auto* const flags = g_variant_new_int32(O_EXCL | O_DIRECT | O_CLOEXEC);

    // The user may be asked for a password; the client library sets no time limit.
    GVariant* index = nullptr;
    GUnixFDList* descriptors = nullptr;
    checked([&](GError** error) {
        return udisks_block_call_open_device_sync(block.get(), "rw", onlyOption("flags", flags), nullptr,
                                                  &index, &descriptors, nullptr, error);
    });
    const Variant indexHolder(index);
    const Object<GUnixFDList> listHolder(descriptors);
    const int place = g_variant_get_handle(index);
    // The library itself would read outside the list.
    if (!descriptors || place < 0 || place >= g_unix_fd_list_get_length(descriptors))
        throw PlatformError(EBADMSG, "The disk service UDisks2 did not hand over what it opened.");
    return FileDescriptor(
        checked([&](GError** error) { return g_unix_fd_list_get(descriptors, place, error); }));
}

BlockSystem::EjectOutcome UDisksConnection::eject(const std::string& device, Duration limit) const {
    const auto block = requireBlock(client.get(), device);
    const Object<UDisksDrive> drive(udisks_client_get_drive_for_block(client.get(), block.get()));
    if (!drive || countDisksWith(client.get(), udisks_block_get_drive(block.get())) != 1)
        return BlockSystem::EjectOutcome::impossible;

    // While the screen is locked, a password prompt would go unanswered.
    auto* const options = onlyOption("auth.no_user_interaction", g_variant_new_boolean(TRUE));
    const TimeLimit timeLimit(limit);
    GError* error = nullptr;
    udisks_drive_call_eject_sync(drive.get(), options, timeLimit.get(), &error);
    const OwnedError problem(error);
    if (!problem) return BlockSystem::EjectOutcome::ejected;
    if (isBusy(*problem)) return BlockSystem::EjectOutcome::busy;
    if (isFailedAttempt(*problem) || isUnauthorized(*problem)) return BlockSystem::EjectOutcome::impossible;
    throw refusal(*problem);
}

void UDisksConnection::Disconnect::operator()(UDisksClient* object) const {
    g_object_unref(object);
}

}  // namespace tessel
