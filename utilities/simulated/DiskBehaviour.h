#pragma once

#include <map>
#include <string>

#include "foundation/PropertyList.h"

namespace tessel {

/// How a simulated disk misbehaves; by default it doesn't.
struct DiskBehaviour {
    std::string refusesUnmount = {};  ///< the message that replaces unmounting, unless empty
    std::string ejectFails = {};      ///< the message that replaces ejecting, unless empty
    /// The result that replaces opening, unless empty: "dismissed", "denied", "busy" or any other message.
    std::string authorization = {};
    /// The details that change while the user is being asked.
    PropertyList::Dictionary exchangedDuringPrompt = {};
    /// The seconds that "list", "info", "unmountDisk", "eject" or "authopen" waits before it does anything.
    std::map<std::string, double> delays = {};

    [[nodiscard]] static DiskBehaviour from(const PropertyList::Dictionary& dictionary);
    [[nodiscard]] PropertyList::Dictionary dictionary() const;

    /// Sleeps for the delay of this command.
    void waitBefore(const std::string& command) const;
};

/// Adds the entries of `changes`, which replace those with the same keys.
void merge(PropertyList::Dictionary& dictionary, const PropertyList::Dictionary& changes);

}  // namespace tessel
