#include "services/AuthorizedRawDisk.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/blkpg.h>
#include <linux/loop.h>
#include <sys/ioctl.h>
#include <sys/resource.h>

#include <chrono>
#include <functional>

#include "foundation/Errors.h"
#include "foundation/SystemWords.h"
#include "platform/BlockDevice.h"
#include "platform/linux/LoopDevice.h"
#include "tests/support/OpenResources.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel {

namespace {

constexpr const char* nothingSent =
    "The authorization utility closed its descriptor channel before returning the raw device.";
constexpr const char* endedWithout =
    "The authorization utility ended without returning a raw-device descriptor.";
const std::string denied = systemWords().rawAccessDenied;
constexpr const char* busy =
    "The SD card is still in use by another process. Close applications using the card, refresh the disk "
    "list, and try again.";
constexpr const char* cancelled = "a cancellation";

struct Geometry {
    SystemResult blockSize{.value = 512};
    SystemResult blockCount{.value = 1000};
    SystemResult caching{};
};

/// Whatever the descriptor leads to, it answers with this geometry.
class PretendedDevice : public RawDevice {
  public:
    PretendedDevice(FileDescriptor descriptor, Geometry geometry) :
        descriptor(std::move(descriptor)),
        geometry(geometry) {}

    SystemResult blockSize() override { return geometry.blockSize; }
    SystemResult blockCount() override { return geometry.blockCount; }
    SystemResult disableCaching() override { return geometry.caching; }
    SystemResult write(std::span<const std::byte>, uint64_t) override { return {.error = ENOSYS}; }
    SystemResult read(std::span<std::byte>, uint64_t) override { return {.error = ENOSYS}; }
    SystemResult synchronize() override { return {.error = ENOSYS}; }
    SystemResult confirmSameMedium() override { return {.error = ENOSYS}; }

  private:
    FileDescriptor descriptor;
    Geometry geometry;
};

RawDeviceFactory pretend(Geometry geometry = {}) {
    return [geometry](FileDescriptor descriptor) {
        return std::make_unique<PretendedDevice>(std::move(descriptor), geometry);
    };
}

/// What the action throws: a sentence, `cancelled`, or nothing when it succeeds.
std::string failureOf(const std::function<void()>& action) {
    try {
        action();
        return "";
    } catch (const CancellationError&) {
        return cancelled;
    } catch (const TesselError& error) {
        EXPECT_EQ(error.kind(), TesselError::Case::commandFailed);
        return error.errorDescription();
    }
}

std::string openFailure(const RawDiskOpener& opener, const std::string& devicePath) {
    return failureOf([&] { opener.openAuthorizedRawDisk(devicePath); });
}

std::string openFailure(const RawDeviceFactory& makeDevice, const std::string& steps) {
    return openFailure(RawDiskOpener(TESSEL_ROGUE_AUTHOPEN, makeDevice), steps);
}

/// Adds a partition to the device; its path is that of the device and "p1".
bool addPartition(const LoopDevice& loop) {
    const FileDescriptor device(open(loop.path().c_str(), O_RDWR | O_CLOEXEC));
    loop_info64 information{};
    if (ioctl(device.get(), LOOP_GET_STATUS64, &information) != 0) return false;
    information.lo_flags |= LO_FLAGS_PARTSCAN;
    blkpg_partition partition{.start = 4096, .length = 65536, .pno = 1};
    blkpg_ioctl_arg request{.op = BLKPG_ADD_PARTITION, .datalen = sizeof partition, .data = &partition};
    return ioctl(device.get(), LOOP_SET_STATUS64, &information) == 0 &&
           ioctl(device.get(), BLKPG, &request) == 0;
}

class AuthorizedRawDiskTests : public LeavesNothingOpen {};

}  // namespace

TEST_F(AuthorizedRawDiskTests, onlyACompleteAnswerOpensTheDevice) {
    const struct {
        const char* steps;
        std::string failure;
    } cases[] = {
        {"send", ""},
        {"wait;send;wait", ""},
        {"send;send", ""},
        {"say-megabyte;send", ""},
        {"send;say Permission denied", ""},
        {"leave-descendant;send", ""},
        {"send;leave-descendant", ""},

        {"close-output;wait", nothingSent},
        {"send;say-undecodable;exit 1", endedWithout},
        {"leave-descendant", endedWithout},
        {"leave-descendant;send;exit 1", endedWithout},

        {"say User canceled.;exit 1", cancelled},
        {"close-output;say Resource busy;exit 1", busy},
        {"send;say open: Operation not permitted;be-killed", denied},
        {"send-two;say Authorization Denied", cancelled},
        {"leave-descendant;say Device busy;exit 1", busy},
        {"say  No such file. ;exit 1", "The authorized raw-device open failed: No such file."},
    };
    for (const auto& [steps, failure] : cases) {
        SCOPED_TRACE(steps);
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(openFailure(pretend(), steps), failure);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(15));
    }
}

TEST_F(AuthorizedRawDiskTests, aUtilityThatCannotBeStarted) {
    const TemporaryFolder folder;
    const auto unknownFormat = folder.writeScript("unknown-format", "");
    folder.write("unknown-format", "no program");
    const std::string unavailable = systemWords().authorizationUtilityUnavailable;
    const std::pair<std::filesystem::path, std::string> cases[] = {
        {folder.path() / "missing", unavailable},
        {folder.write("not-executable", "#!/bin/sh\n"), unavailable},
        {folder.path(), unavailable},
        {unknownFormat, systemWords().authorizationUtilityNotLaunched + "“" + unknownFormat.string() +
                            "” could not be started: Exec format error."},
    };
    for (const auto& [utility, message] : cases) {
        EXPECT_EQ(openFailure(RawDiskOpener(utility, pretend()), "/dev/rdisk4"), message);
    }

    // Last: the sanitizer that checks objects needs descriptors when it meets a new kind of error.
    const RawDiskOpener opener(TESSEL_ROGUE_AUTHOPEN, pretend());
    rlimit usual{};
    getrlimit(RLIMIT_NOFILE, &usual);
    const rlimit none{.rlim_cur = 0, .rlim_max = usual.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    const auto failure = openFailure(opener, "send");
    setrlimit(RLIMIT_NOFILE, &usual);
    EXPECT_EQ(failure, "The descriptor-transfer socket could not be created: Too many open files.");
}

TEST_F(AuthorizedRawDiskTests, onlyASoundGeometryIsAccepted) {
    const std::string noSize = "The logical block size of the authorized SD card could not be determined: ";
    const std::string noCount = "The block count of the authorized SD card could not be determined: ";
    const auto unsupported = [](const std::string& size) {
        return "The authorized SD card reported an unsupported logical block size of " + size + " bytes.";
    };
    const struct {
        Geometry geometry;
        std::string failure;
    } cases[] = {
        {{}, ""},
        {{.blockSize = {.value = 4096}}, ""},
        {{.blockSize = {.value = 1'048'576}, .blockCount = {.value = 1}}, ""},
        {{.blockSize = {.value = 0}}, noSize + "Success."},
        {{.blockSize = {.error = EIO}, .blockCount = {.error = ENXIO}}, noSize + "Input/output error."},
        {{.blockCount = {.value = 0}}, noCount + "Success."},
        {{.blockSize = {.value = 256}, .blockCount = {.error = ENXIO}},
         noCount + "No such device or address."},
        {{.blockSize = {.value = 1}}, unsupported("1")},
        {{.blockSize = {.value = 256}}, unsupported("256")},
        {{.blockSize = {.value = 3000}, .caching = {.error = EINVAL}}, unsupported("3000")},
        {{.blockSize = {.value = 2'097'152}}, unsupported("2097152")},
        {{.caching = {.error = EINVAL}},
         "The authorized SD card could not be opened for uncached access: Invalid argument."},
    };
    for (const auto& [geometry, failure] : cases)
        EXPECT_EQ(openFailure(pretend(geometry), "send"), failure);
}

TEST_F(AuthorizedRawDiskTests, onlyAWholeBlockDeviceIsADevice) {
    const TemporaryFolder folder;
    const auto file = folder.write("card.img", std::string(1 << 20, '\0')).string();
    const auto expectRefusal = [](const std::string& target) {
        EXPECT_EQ(openFailure(makeBlockDevice, "send " + target),
                  "The logical block size of the authorized SD card could not be determined: Block device "
                  "required.")
            << target;
    };
    for (const auto& target : {std::string("/dev/null"), std::string("pipe"), std::string("socket"), file})
        expectRefusal(target);
    if (!LoopDevice::isAvailable()) GTEST_SKIP() << "needs loop devices for a partition";
    const LoopDevice loop({.file = file});
    ASSERT_TRUE(addPartition(loop));
    expectRefusal(loop.path().string() + "p1");
}

TEST_F(AuthorizedRawDiskTests, aHandleComparesBytesWithItsBlocks) {
    const AuthorizedRawDiskHandle handle{.device = nullptr, .blockSize = 4096, .blockCount = 1000};
    const struct {
        uint64_t bytes;
        bool isCapacity;
        bool isHeld;
    } cases[] = {
        {0, false, true},          {1, false, true},           {4'096'000, true, true},
        {4'095'999, false, true},  {4'095'488, false, true},   {4'096'001, false, false},
        {4'100'096, false, false}, {UINT64_MAX, false, false},
    };
    for (const auto& [bytes, isCapacity, isHeld] : cases) {
        EXPECT_EQ(handle.hasCapacity(bytes), isCapacity) << bytes;
        EXPECT_EQ(handle.holds(bytes), isHeld) << bytes;
    }
}

}  // namespace tessel
