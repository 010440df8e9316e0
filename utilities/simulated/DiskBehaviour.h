#pragma once

#include <map>
#include <string>

#include "foundation/PropertyList.h"

namespace tessel {

/// How a simulated disk misbehaves. By default it doesn't.
struct DiskBehaviour {
    std::string refusesUnmount = {};  ///< what is said instead of unmounting, unless empty
    std::string ejectFails = {};      ///< what is said instead of ejecting, unless empty
    /// "dismissed", "denied", "busy", or else what is said instead of opening, unless empty.
    std::string authorization = {};
    /// Details that change while the user is asked.
    PropertyList::Dictionary exchangedDuringPrompt = {};
    /// Seconds before "list", "info", "unmountDisk", "eject" or "authopen" does anything.
    std::map<std::string, double> delays = {};

    [[nodiscard]] static DiskBehaviour from(const PropertyList::Dictionary& dictionary);
    [[nodiscard]] PropertyList::Dictionary dictionary() const;

    /// Sleeps as long as this command is told to wait.
    void waitBefore(const std::string& command) const;
};

/// Replaces and adds the entries of `changes`.
void merge(PropertyList::Dictionary& dictionary, const PropertyList::Dictionary& changes);

}  // namespace tessel
