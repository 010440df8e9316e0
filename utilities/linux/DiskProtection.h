#pragma once

#include <optional>
#include <string>

#include "foundation/Errors.h"
#include "utilities/linux/DiskSnapshot.h"

namespace tessel {

/// Says why a disk is never unmounted, opened or ejected, and is reported as not writable.
struct Protection {
    std::string reason;   ///< such as "it is used as swap space"
    std::string remedy;   ///< a sentence that says how to end it; empty where the user should not
    bool mayEnd = false;  ///< the disk may yet become unused
};

/// Absent only when nothing speaks against using the disk; every doubt does.
[[nodiscard]] std::optional<Protection> protectionOf(const DiskSnapshot& snapshot, const KernelDevice& disk);

/// Returns the error that tells the user about it.
[[nodiscard]] PlatformError protectedDisk(const DiskSnapshot& snapshot, const KernelDevice& disk,
                                          const Protection& protection);

/// Returns why nothing may be written to the disk, in sentences for the user: it is protected or read-only.
[[nodiscard]] std::optional<std::string> whyNotWritable(const DiskSnapshot& snapshot,
                                                        const KernelDevice& disk);

/// Returns whether nothing on the disk is mounted and nothing else speaks against using it.
[[nodiscard]] bool isUnused(const DiskSnapshot& snapshot, const KernelDevice& disk);

/// Throws the error when the disk is protected.
void requireUnprotected(const DiskSnapshot& snapshot, const KernelDevice& disk);

}  // namespace tessel
