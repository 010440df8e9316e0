#pragma once

#include <string>

namespace tessel {

/// Every sentence, or part of one, that names the operating system, its settings or its mechanisms. Each is
/// true on one system only, so each system has its own source. All other sentences are written where they are
/// used.
struct SystemWords {
    std::string scanStarted;
    std::string noWholeDisks;
    std::string cardNotWritable;
    std::string authorizationUtilityUnavailable;
    std::string authorizationUtilityNotLaunched;  ///< followed by the reason
    std::string rawAccessDenied;
    std::string cardEjected;
    std::string cardEjectedAfterWrite;  ///< appended to a sentence about the write
    std::string callsCard;              ///< followed by the system's own name for the card
};

/// Returns the texts for the system that the program was built for.
[[nodiscard]] const SystemWords& systemWords();

}  // namespace tessel
