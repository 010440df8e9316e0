#pragma once

#include <cstdint>
#include <cstdlib>

namespace tessel {

/// Returns how many random records a property is tried on: as many as TESSEL_POLICY_RECORDS says, where the
/// usual number does not suffice.
inline uint64_t recordsToTry(uint64_t usualNumber) {
    const char* wanted = std::getenv("TESSEL_POLICY_RECORDS");
    return wanted ? std::strtoull(wanted, nullptr, 10) : usualNumber;
}

}  // namespace tessel
