#pragma once

#include <functional>
#include <string>
#include <vector>

#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// A described machine that can be operated on and changes as a real one would. A hook that is set takes part
/// in the call that it is named for.
class DescribedSystem : public BlockSystem {
  public:
    explicit DescribedSystem(DiskSnapshot snapshot) : snapshot(std::move(snapshot)) {}

    DiskSnapshot read(const std::string&) override {
        time += readingTime;
        return snapshot;
    }
    void unmount(const std::string& device, Time) override {
        calls.push_back("unmount " + device);
        time += unmountingTime;
        onUnmount(named(device));
    }
    FileDescriptor open(const std::string& device) override {
        calls.push_back("open " + device);
        return onOpen ? onOpen() : FileDescriptor();
    }
    void flush(Time) override {
        calls.emplace_back("flush");
        if (onFlush) onFlush();
    }
    EjectOutcome eject(const std::string& device, Time) override {
        calls.push_back("eject " + device);
        return onEject ? onEject() : EjectOutcome::ejected;
    }
    Time now() override { return time; }
    void wait(std::chrono::milliseconds duration) override {
        calls.emplace_back("wait");
        time += duration;
        if (onWait) onWait();
    }

    KernelDevice& named(const std::string& name) {
        for (KernelDevice& device : snapshot.devices)
            if (device.name == name) return device;
        throw std::out_of_range(name);
    }

    DiskSnapshot snapshot;
    std::chrono::milliseconds readingTime{10};
    std::chrono::seconds unmountingTime{0};
    Time time;
    std::vector<std::string> calls;
    std::function<void(KernelDevice&)> onUnmount = [](KernelDevice& device) { device.mounts.pop_back(); };
    std::function<FileDescriptor()> onOpen;
    std::function<EjectOutcome()> onEject;
    std::function<void()> onFlush;
    std::function<void()> onWait;
};

}  // namespace tessel
