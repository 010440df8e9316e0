#include "utilities/linux/DiskProtection.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <string_view>

namespace tessel {

namespace {

/// Returns whether UDisks2 made the mount for a user, in one of the folders where it mounts removable media.
bool mayBeUnmounted(const Mount& mount) {
    return mount.isByUDisks &&
           (mount.target.starts_with("/media/") || mount.target.starts_with("/run/media/"));
}

struct DiskCheck {
    bool (*fails)(const DiskSnapshot& snapshot, const KernelDevice& disk);
    std::string_view reason;
};

constexpr auto diskChecks = std::to_array<DiskCheck>({
    {[](const DiskSnapshot& snapshot, const KernelDevice&) { return systemDisks(snapshot).empty(); },
     "it is not known which disk the system runs from, as in a container or sandbox"},

    {[](const DiskSnapshot& snapshot, const KernelDevice& disk) {
         const auto disks = systemDisks(snapshot);
         return std::ranges::find(disks, &disk) != disks.end();
     },
     "the system runs from it"},

    {[](const DiskSnapshot&, const KernelDevice& disk) {
         return disk.sequenceNumber == 0 || disk.sequenceNumber != disk.sequenceNumberAfterwards;
     },
     "its medium is being replaced"},

    {[](const DiskSnapshot&, const KernelDevice& disk) {
         return disk.udisks.sequenceNumber != disk.sequenceNumber;
     },
     "the disk service has not recognized its medium yet"},

    // Names are not enough: a disk that calls itself an SD card must also be removable.
    {[](const DiskSnapshot&, const KernelDevice& disk) { return !disk.isRemovable && !isSDCardInSlot(disk); },
     "it is not a removable medium"},
});

struct PartCheck {
    bool (*fails)(const DiskSnapshot& snapshot, const KernelDevice& part);
    std::string_view reason;
    std::string_view remedy;
};

/// A whole disk is protected when one of these is true of any of its parts.
constexpr auto partChecks = std::to_array<PartCheck>({
    {[](const DiskSnapshot&, const KernelDevice& part) { return part.isUseUnknown; },
     "it can't be told whether it is in use",
     "Start the program on the computer itself, outside any container or sandbox."},

    {[](const DiskSnapshot&, const KernelDevice& part) { return part.isSwap; }, "it is used as swap space",
     "Switch that swap space off."},

    {[](const DiskSnapshot&, const KernelDevice& part) { return !part.holders.empty(); },
     "it is part of a volume group, a RAID or an encrypted volume that is in use",
     "Deactivate the volume group, stop the RAID or lock the encrypted volume."},

    {[](const DiskSnapshot&, const KernelDevice& part) { return !part.users.empty(); },
     "it is used by a loop device, a storage server or the like",
     "Detach the loop device, or stop the program that uses it."},

    {[](const DiskSnapshot& snapshot, const KernelDevice& part) {
         // The kernel doesn't report which devices the pools of ZFS lie on.
         return part.spansDisks || (part.udisks.fileSystem == "zfs_member" && snapshot.hasZFSPools);
     },
     "it is part of a file system that may span several disks",
     "Unmount that file system, or export all ZFS pools."},

    {[](const DiskSnapshot&, const KernelDevice& part) {
         return !std::ranges::all_of(part.mounts, mayBeUnmounted);
     },
     "the system has mounted a volume on it", "Unmount that volume."},

    {[](const DiskSnapshot&, const KernelDevice& part) {
         return part.isFileSystemActive && part.mounts.empty();
     },
     "a volume on it is mounted elsewhere, such as in a container",
     "Stop the container or the program that uses that volume."},
});

std::string sentencesOf(const Protection& protection) {
    return protection.reason + "." + (protection.remedy.empty() ? "" : " " + protection.remedy);
}

std::string capitalized(std::string sentence) {
    sentence.front() = static_cast<char>(std::toupper(sentence.front()));
    return sentence;
}

}  // namespace

std::optional<Protection> protectionOf(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    for (const DiskCheck& check : diskChecks)
        if (check.fails(snapshot, disk)) return Protection{std::string(check.reason), {}};

    const auto parts = partsOf(snapshot, disk);
    for (const PartCheck& check : partChecks)
        if (std::ranges::any_of(parts,
                                [&](const KernelDevice* part) { return check.fails(snapshot, *part); }))
            return Protection{std::string(check.reason), std::string(check.remedy), true};
    return std::nullopt;
}

PlatformError protectedDisk(const DiskSnapshot& snapshot, const KernelDevice& disk,
                            const Protection& protection) {
    return {EPERM, identifierOf(snapshot, disk) + " (/dev/" + disk.name +
                       ") is protected: " + sentencesOf(protection)};
}

std::optional<std::string> whyNotWritable(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    if (const auto protection = protectionOf(snapshot, disk)) return capitalized(sentencesOf(*protection));
    if (disk.isReadOnly) return "Its write-protection switch is on, or the kernel treats it as read-only.";
    return std::nullopt;
}

bool isUnused(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    return mountedParts(snapshot, disk).empty() && !protectionOf(snapshot, disk);
}

void requireUnprotected(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    if (const auto protection = protectionOf(snapshot, disk))
        throw protectedDisk(snapshot, disk, *protection);
}

}  // namespace tessel
