#pragma once

#include <string>

namespace tessel {

/// Every sentence, or part of one, that names the operating system, its settings or its mechanisms. Each is
/// true on one system only, so each system has its own source. All other sentences stand where they are used.
struct SystemWords {
    std::string scanStarted;
    std::string noWholeDisks;
    std::string cardNotWritable;
    std::string authorizationUtilityUnavailable;
    std::string authorizationUtilityNotLaunched;  ///< the reason follows
    std::string rawAccessDenied;
    std::string cardEjected;
    std::string cardEjectedAfterWrite;  ///< follows a sentence about the write
    std::string callsCard;              ///< the system's own name of the card follows
};

/// Returns the words of the system that the program was built for.
[[nodiscard]] const SystemWords& systemWords();

}  // namespace tessel
