#pragma once

#include <optional>
#include <string>

#include "foundation/Errors.h"
#include "utilities/linux/DiskSnapshot.h"

namespace tessel {

/// The reason why a disk is never unmounted, opened or ejected, and is reported as not writable.
struct Protection {
    std::string reason;   ///< such as "it is used as swap space"
    std::string remedy;   ///< a sentence about how to end it; empty where the user should not
    bool mayEnd = false;  ///< whether the disk may yet become unused
};

/// Returns nothing only if there is no objection to using the disk; every doubt is one.
[[nodiscard]] std::optional<Protection> protectionOf(const DiskSnapshot& snapshot, const KernelDevice& disk);

/// Returns the error that reports the protection to the user.
[[nodiscard]] PlatformError protectedDisk(const DiskSnapshot& snapshot, const KernelDevice& disk,
                                          const Protection& protection);

/// Returns why nothing may be written to the disk, in sentences for the user: it is protected or read-only.
[[nodiscard]] std::optional<std::string> whyNotWritable(const DiskSnapshot& snapshot,
                                                        const KernelDevice& disk);

/// Returns whether nothing on the disk is mounted and there is no other objection to using it.
[[nodiscard]] bool isUnused(const DiskSnapshot& snapshot, const KernelDevice& disk);

/// Throws PlatformError if the disk is protected.
void requireUnprotected(const DiskSnapshot& snapshot, const KernelDevice& disk);

}  // namespace tessel
