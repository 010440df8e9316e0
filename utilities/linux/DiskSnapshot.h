#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A computer's disks as the kernel, udev's database and the desktop's disk service (UDisks2) described them
/// at one moment. These are plain values and pure functions of them. All decisions about a disk are based on
/// these alone.
namespace tessel {

struct Mount {
    std::string target;       ///< the folder
    bool isByUDisks = false;  ///< whether UDisks2 made it at the request of a user
};

/// The record of UDisks2 about a block device and its drive.
struct UDisksRecord {
    /// The identity of the drive. To UDisks2, readers of one make that have the same serial number, or none,
    /// are one drive.
    std::string drive;
    /// The disk sequence number in the links that udev made; absent if there are none.
    std::optional<uint64_t> sequenceNumber;
    std::string vendor;
    std::string model;
    std::string media;              ///< the kind of the present medium, such as "flash_sd"; mostly empty
    bool isMediaAvailable = false;  ///< whether a medium is in the drive
    bool isMediaRemovable = false;
    bool isEjectable = false;
    std::string fileSystem;      ///< such as "vfat"
    std::string volumeName;      ///< of the file system
    std::string partitionTable;  ///< such as "dos" or "gpt"
};

/// A disk, one of its partitions, or another part of it such as an eMMC's boot area.
struct KernelDevice {
    std::string name;  ///< the kernel's name, such as "sdb1"
    std::string path;  ///< in the kernel's device tree: "/sys/devices/…/block/sdb/sdb1"
    /// The number that the kernel gives to each new medium, and never gives twice; 0 for a part of a disk.
    uint64_t sequenceNumber = 0;
    uint64_t sequenceNumberAfterwards = 0;  ///< the same, read again after everything else
    uint64_t sizeBytes = 0;
    bool isReadOnly = false;
    bool isRemovable = false;      ///< whether its medium can be taken out, according to the kernel
    unsigned partitionNumber = 0;  ///< 0 if it isn't a partition
    std::string cardType;          ///< the type in a native slot: "SD", or "MMC" for soldered flash
    std::string databaseName;      ///< the name of the reader in udev's hardware database
    std::vector<std::string> holders;
    std::vector<std::string> slaves;  ///< the devices below a device-mapper or RAID device
    /// The users in the kernel that are no holders, such as "loop3", of the device or of a file that lies on
    /// it.
    std::vector<std::string> users;
    bool isSwap = false;      ///< whether it, or a file on it, is swap space
    bool spansDisks = false;  ///< whether a mounted file system lies on this device and on others
    std::vector<Mount> mounts;
    /// Whether a file system on it is in use, even where this program can't look: in a container, or hidden
    /// by a lazy unmount.
    bool isFileSystemActive = false;
    bool isLocked = false;      ///< whether a program has locked it for itself alone
    bool isUseUnknown = false;  ///< whether some sign of its use could not be read
    /// The bytes that all programs have written to it since the kernel found it; absent where the kernel does
    /// not count.
    std::optional<uint64_t> bytesWritten;
    UDisksRecord udisks = {};
};

struct DiskSnapshot {
    std::vector<KernelDevice> devices;
    std::string rootDevice;    ///< the name of the device that is mounted at "/"; empty when there is none
    bool isSettling = false;   ///< whether udev has yet to process devices that have changed
    bool hasZFSPools = false;  ///< whether ZFS has imported pools; the devices that they lie on are not known
    /// Whether a program that has a /dev of its own, such as a virtual machine, has locked a disk in it; the
    /// disk is not known.
    bool isDiskLockedElsewhere = false;
};

/// Returns whether the device exists only in the kernel: loop devices, device mapper, RAID, RAM, compressed
/// memory.
[[nodiscard]] bool isVirtual(const KernelDevice& device);

/// Returns whether the device sits in a slot of the computer itself that uses the cards' protocol, as
/// soldered flash does, too.
bool isInCardSlot(const KernelDevice& device);

/// Returns whether the device is an SD card in such a slot.
[[nodiscard]] bool isSDCardInSlot(const KernelDevice& device);

/// Returns whether another disk has the same drive. What UDisks2 then says about the drive's medium may be
/// about either of them, and ejecting the drive may eject either of them.
[[nodiscard]] bool sharesDrive(const DiskSnapshot& snapshot, const KernelDevice& disk);

/// Returns the disk and every part of it.
[[nodiscard]] std::vector<const KernelDevice*> partsOf(const DiskSnapshot& snapshot,
                                                       const KernelDevice& disk);

/// Returns the parts of the disk that are mounted.
[[nodiscard]] std::vector<const KernelDevice*> mountedParts(const DiskSnapshot& snapshot,
                                                            const KernelDevice& disk);

/// Returns the physical disks that hold "/", ordered by their numbers. Returns none if "/" lies on no disk.
[[nodiscard]] std::vector<const KernelDevice*> systemDisks(const DiskSnapshot& snapshot);

/// Returns the disks that have a medium and whose records are consistent.
[[nodiscard]] std::vector<const KernelDevice*> listedDisks(const DiskSnapshot& snapshot);

/// Returns "disk0" for the disk that holds "/", otherwise "disk" and the sequence number.
[[nodiscard]] std::string identifierOf(const DiskSnapshot& snapshot, const KernelDevice& disk);

/// Returns the listed disk with this identifier, or null.
[[nodiscard]] const KernelDevice* findListedDisk(const DiskSnapshot& snapshot, std::string_view identifier);

/// Returns the listed disk with this identifier. Throws PlatformError when there is none.
[[nodiscard]] const KernelDevice& listedDisk(const DiskSnapshot& snapshot, std::string_view identifier);

}  // namespace tessel
