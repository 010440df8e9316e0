#pragma once

#include <cstdint>
#include <cstdlib>

namespace tessel {

/// Returns the number of random records that a property is tried on: TESSEL_POLICY_RECORDS if that is set,
/// otherwise the usual number.
inline uint64_t recordsToTry(uint64_t usualNumber) {
    const char* wanted = std::getenv("TESSEL_POLICY_RECORDS");
    return wanted ? std::strtoull(wanted, nullptr, 10) : usualNumber;
}

}  // namespace tessel
