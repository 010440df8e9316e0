#include "platform/qt/DiskChanges.h"

#include <libudev.h>

#include <QSocketNotifier>
#include <string_view>
#include <utility>

namespace tessel {

namespace {

struct Unreference {
    void operator()(udev* context) const { udev_unref(context); }
    void operator()(udev_monitor* monitor) const { udev_monitor_unref(monitor); }
    void operator()(udev_device* device) const { udev_device_unref(device); }
};
template <typename T>
using Referenced = std::unique_ptr<T, Unreference>;

/// Returns whether the event means that a disk or a medium has come or gone. The kernel reports almost
/// everything that happens to a disk as a change, even the end of a write to it.
bool reportsComingOrGoing(udev_device* disk) {
    const std::string_view path = udev_device_get_syspath(disk);
    const bool isVirtual = path.find("/devices/virtual/") != path.npos;  // a mounted disk image, for example
    const std::string_view action = udev_device_get_action(disk);
    return !isVirtual && (action == "add" || action == "remove" ||
                          udev_device_get_property_value(disk, "DISK_MEDIA_CHANGE"));
}

/// Returns whether the event means that the disk, or the medium in it, is there no longer.
bool hasGone(udev_device* disk) {
    const std::string_view action = udev_device_get_action(disk);
    const char* const size = udev_device_get_sysattr_value(disk, "size");
    return action == "remove" || (size && std::string_view(size) == "0");
}

/// Listens to udev's reports, which follow its own handling of the kernel's events.
class UdevMonitor : public TemporaryActivity {
  public:
    explicit UdevMonitor(std::function<void(const DiskChange&)> onChange) : onChange(std::move(onChange)) {
        if (!monitor || udev_monitor_filter_add_match_subsystem_devtype(monitor.get(), "block", "disk") < 0 ||
            udev_monitor_enable_receiving(monitor.get()) < 0)
            return;
        events = std::make_unique<QSocketNotifier>(udev_monitor_get_fd(monitor.get()), QSocketNotifier::Read);
        QObject::connect(events.get(), &QSocketNotifier::activated, events.get(), [this] { receive(); });
    }

  private:
    void receive() {
        while (const Referenced<udev_device> disk{udev_monitor_receive_device(monitor.get())})
            if (reportsComingOrGoing(disk.get()))
                onChange({.systemName = udev_device_get_sysname(disk.get()), .hasGone = hasGone(disk.get())});
    }

    std::function<void(const DiskChange&)> onChange;
    Referenced<udev> context{udev_new()};
    Referenced<udev_monitor> monitor{context ? udev_monitor_new_from_netlink(context.get(), "udev")
                                             : nullptr};
    std::unique_ptr<QSocketNotifier> events;
};

}  // namespace

std::unique_ptr<TemporaryActivity> watchDisks(std::function<void(const DiskChange&)> onChange) {
    return std::make_unique<UdevMonitor>(std::move(onChange));
}

}  // namespace tessel
