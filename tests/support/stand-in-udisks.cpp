#include <fcntl.h>
#include <gio/gunixfdlist.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <udisks/udisks.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <string>

/// Plays UDisks2 on a bus, from a key file with one group for each block device:
///
///     stand-in-udisks KEY-FILE CALLS-FILE
///
/// The keys "open", "unmount" and "eject" name the errors to answer these calls with, and "message" their
/// text; "Silence" means no answer at all. Without such a key the device is opened as asked, "mounted at" is
/// unmounted, or ejecting succeeds. Each call adds a line to CALLS-FILE, whose first line is "ready".
namespace {

struct StandIn {
    GKeyFile* description = g_key_file_new();
    std::string callsFile;

    std::string text(const std::string& device, const char* key) const {
        char* const value = g_key_file_get_string(description, device.c_str(), key, nullptr);
        const std::string copy = value ? value : "";
        g_free(value);
        return copy;
    }
    void log(const std::string& line) const { std::ofstream(callsFile, std::ios::app) << line << std::endl; }

    /// Answers with the error that is wanted for the call, if there is one.
    bool refuses(GDBusMethodInvocation* call, const std::string& device, const char* key) const {
        const std::string name = text(device, key);
        if (!name.empty() && name != "Silence")
            g_dbus_method_invocation_return_dbus_error(
                call, ("org.freedesktop.UDisks2.Error." + name).c_str(), text(device, "message").c_str());
        return !name.empty();
    }
};

std::string deviceOf(gpointer interface) {
    return g_object_get_data(G_OBJECT(interface), "device")
               ? static_cast<const char*>(g_object_get_data(G_OBJECT(interface), "device"))
               : "";
}

void fail(GDBusMethodInvocation* call, const std::string& message) {
    g_dbus_method_invocation_return_dbus_error(call, "org.freedesktop.UDisks2.Error.Failed", message.c_str());
}

gboolean openDevice(UDisksBlock* block, GDBusMethodInvocation* call, GUnixFDList*, const char* mode,
                    GVariant* options, StandIn* standIn) {
    const std::string device = deviceOf(block);
    int flags = 0;
    g_variant_lookup(options, "flags", "i", &flags);
    standIn->log("open " + device + " " + mode);
    if (standIn->refuses(call, device, "open")) return TRUE;

    const int descriptor = open(("/dev/" + device).c_str(), O_RDWR | flags);
    if (descriptor < 0) {
        fail(call, "Error opening device /dev/" + device + ": " + std::strerror(errno));
        return TRUE;
    }
    GUnixFDList* const list = g_unix_fd_list_new_from_array(&descriptor, 1);
    udisks_block_complete_open_device(block, call, list, g_variant_new_handle(0));
    g_object_unref(list);
    return TRUE;
}

gboolean unmount(UDisksFilesystem* fileSystem, GDBusMethodInvocation* call, GVariant* options,
                 StandIn* standIn) {
    const std::string device = deviceOf(fileSystem);
    gboolean isForced = FALSE;
    g_variant_lookup(options, "force", "b", &isForced);
    standIn->log("unmount " + device + (isForced ? " by force" : ""));
    if (standIn->refuses(call, device, "unmount")) return TRUE;
    if (umount2(standIn->text(device, "mounted at").c_str(), isForced ? MNT_DETACH : 0) == 0) {
        udisks_filesystem_complete_unmount(fileSystem, call);
    } else if (errno == EBUSY) {
        g_dbus_method_invocation_return_dbus_error(
            call, "org.freedesktop.UDisks2.Error.DeviceBusy",
            ("Error unmounting /dev/" + device + ": target is busy").c_str());
    } else {
        fail(call, std::strerror(errno));
    }
    return TRUE;
}

gboolean eject(UDisksDrive* drive, GDBusMethodInvocation* call, GVariant*, StandIn* standIn) {
    standIn->log("eject " + deviceOf(drive));
    if (!standIn->refuses(call, deviceOf(drive), "eject")) udisks_drive_complete_eject(drive, call);
    return TRUE;
}

template <typename Interface>
Interface* answering(Interface* interface, const std::string& device) {
    g_object_set_data_full(G_OBJECT(interface), "device", g_strdup(device.c_str()), g_free);
    return interface;
}

void exportDrive(GDBusObjectManagerServer* manager, const std::string& device, StandIn* standIn) {
    UDisksDrive* const drive = answering(udisks_drive_skeleton_new(), device);
    const std::string media = standIn->text(device, "media");
    g_object_set(drive, "vendor", standIn->text(device, "vendor").c_str(), "model",
                 standIn->text(device, "model").c_str(), "media", media.c_str(), "media-available", TRUE,
                 "media-removable", TRUE, "ejectable", TRUE, "serial", "", "id", device.c_str(), nullptr);
    g_signal_connect(drive, "handle-eject", G_CALLBACK(eject), standIn);
    UDisksObjectSkeleton* const object =
        udisks_object_skeleton_new(("/org/freedesktop/UDisks2/drives/" + device).c_str());
    udisks_object_skeleton_set_drive(object, drive);
    g_dbus_object_manager_server_export(manager, G_DBUS_OBJECT_SKELETON(object));
}

void exportBlock(GDBusObjectManagerServer* manager, const std::string& device, StandIn* standIn) {
    struct stat status{};
    stat(("/dev/" + device).c_str(), &status);
    const std::string link = "/dev/disk/by-diskseq/" + standIn->text(device, "sequence number");
    const char* const links[] = {"/dev/disk/by-id/any", link.c_str(), nullptr};

    UDisksBlock* const block = answering(udisks_block_skeleton_new(), device);
    g_object_set(block, "device", ("/dev/" + device).c_str(), "preferred-device", ("/dev/" + device).c_str(),
                 "symlinks", links, "device-number", guint64{status.st_rdev}, "drive",
                 ("/org/freedesktop/UDisks2/drives/" + device).c_str(), "crypto-backing-device", "/",
                 "mdraid", "/", "mdraid-member", "/", "id-type", standIn->text(device, "file system").c_str(),
                 "id-label", "", "id-usage", "", "id-uuid", "", "id-version", "", "id", device.c_str(),
                 nullptr);
    g_signal_connect(block, "handle-open-device", G_CALLBACK(openDevice), standIn);
    UDisksObjectSkeleton* const object =
        udisks_object_skeleton_new(("/org/freedesktop/UDisks2/block_devices/" + device).c_str());
    udisks_object_skeleton_set_block(object, block);
    if (!standIn->text(device, "file system").empty()) {
        UDisksFilesystem* const fileSystem = answering(udisks_filesystem_skeleton_new(), device);
        g_signal_connect(fileSystem, "handle-unmount", G_CALLBACK(unmount), standIn);
        udisks_object_skeleton_set_filesystem(object, fileSystem);
    }
    g_dbus_object_manager_server_export(manager, G_DBUS_OBJECT_SKELETON(object));
}

void logReady(GDBusConnection*, const char*, gpointer standIn) {
    static_cast<StandIn*>(standIn)->log("ready");
}

}  // namespace

int main(int, char* arguments[]) {
    StandIn standIn;
    standIn.callsFile = arguments[2];
    g_key_file_load_from_file(standIn.description, arguments[1], G_KEY_FILE_NONE, nullptr);
    GDBusConnection* const bus = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    GDBusObjectManagerServer* const manager = g_dbus_object_manager_server_new("/org/freedesktop/UDisks2");
    char** const devices = g_key_file_get_groups(standIn.description, nullptr);
    for (char** device = devices; *device; ++device) {
        exportDrive(manager, *device, &standIn);
        exportBlock(manager, *device, &standIn);
    }
    g_dbus_object_manager_server_set_connection(manager, bus);
    g_bus_own_name_on_connection(bus, "org.freedesktop.UDisks2", G_BUS_NAME_OWNER_FLAGS_NONE, logReady,
                                 nullptr, &standIn, nullptr);
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
