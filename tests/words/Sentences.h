#pragma once

#include <array>

#include "foundation/SystemWords.h"

namespace tessel {

/// All of them, in their order: while an entry is missing here, this does not compile.
inline auto sentencesOf(const SystemWords& words) {
    const auto& [scanStarted, noWholeDisks, cardNotWritable, authorizationUtilityUnavailable,
                 authorizationUtilityNotLaunched, rawAccessDenied, cardEjected, cardEjectedAfterWrite,
                 callsCard] = words;
    return std::array{scanStarted,
                      noWholeDisks,
                      cardNotWritable,
                      authorizationUtilityUnavailable,
                      authorizationUtilityNotLaunched,
                      rawAccessDenied,
                      cardEjected,
                      cardEjectedAfterWrite,
                      callsCard};
}

}  // namespace tessel
