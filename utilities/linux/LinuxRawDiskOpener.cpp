#include "utilities/linux/LinuxRawDiskOpener.h"

#include <cerrno>

#include "foundation/Errors.h"
#include "platform/SleepWatch.h"
#include "platform/linux/BlockDescriptor.h"
#include "utilities/linux/DiskLocks.h"
#include "utilities/linux/DiskProtection.h"

namespace tessel {

namespace {

PlatformError busy(const std::string& identifier) {
    return {EBUSY, "Resource busy: " + identifier + " is in use."};
}

void requireSameDisk(const FileDescriptor& descriptor, const KernelDevice& disk) {
    const auto isAnswer = [](const SystemResult& result, uint64_t expected) {
        return result.isSuccess() && result.value == expected;
    };
    const bool isSame = isWholeBlockDevice(descriptor.get()) &&
                        isAnswer(diskSequenceNumber(descriptor.get()), disk.sequenceNumber) &&
                        isAnswer(mediumSize(descriptor.get()), disk.sizeBytes);
    if (!isSame) throw PlatformError(ESTALE, "The disk was replaced while it was being opened.");
}

/// Throws when the disk was written to between two readings of it.
void requireUnwritten(const KernelDevice& before, const KernelDevice& now) {
    if (before.bytesWritten != now.bytesWritten)
        throw PlatformError(EBUSY, "Another program is writing to this card.");
}

}  // namespace

FileDescriptor LinuxRawDiskOpener::open(const std::string& identifier) {
    const SleepWatch sleepWatch;
    const KernelDevice disk = readUnusedDisk(identifier);
    FileDescriptor descriptor = system.open(disk.name);
    requireSameDisk(descriptor, disk);
    if (!lockExclusively(descriptor.get()).isSuccess()) throw busy(identifier);
    // The user may have taken hours to answer.
    requireUnwritten(disk, readUnusedDisk(identifier));
    if (sleepWatch.hasSlept())
        throw PlatformError(
            ESTALE, "The computer was asleep in the meantime, so that the card may have been exchanged.");
    return descriptor;
}

KernelDevice LinuxRawDiskOpener::readUnusedDisk(const std::string& identifier) {
    const DiskSnapshot snapshot = readUnlocked(system, identifier);
    const KernelDevice& disk = listedDisk(snapshot, identifier);
    requireUnprotected(snapshot, disk);
    if (const auto reason = whyNotWritable(snapshot, disk))
        throw PlatformError(EROFS, identifier + " can't be written. " + *reason);
    if (!mountedParts(snapshot, disk).empty()) throw busy(identifier);
    return disk;
}

}  // namespace tessel
