#pragma once

#include <map>
#include <string>

#include "foundation/PropertyList.h"

namespace tessel {

/// How a simulated disk misbehaves; by default it doesn't.
struct DiskBehaviour {
    std::string refusesUnmount = {};  ///< unless empty, said instead of unmounting
    std::string ejectFails = {};      ///< unless empty, said instead of ejecting
    /// Unless empty, "dismissed", "denied", "busy", or else what is said instead of opening.
    std::string authorization = {};
    /// The details that change while the user is being asked.
    PropertyList::Dictionary exchangedDuringPrompt = {};
    /// How many seconds "list", "info", "unmountDisk", "eject" or "authopen" waits before it does anything.
    std::map<std::string, double> delays = {};

    [[nodiscard]] static DiskBehaviour from(const PropertyList::Dictionary& dictionary);
    [[nodiscard]] PropertyList::Dictionary dictionary() const;

    /// Sleeps for as long as this command is to wait.
    void waitBefore(const std::string& command) const;
};

/// Adds the entries of `changes`, which replace those with the same keys.
void merge(PropertyList::Dictionary& dictionary, const PropertyList::Dictionary& changes);

}  // namespace tessel
