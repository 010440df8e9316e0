#include "foundation/Errors.h"

#include <system_error>
#include <utility>

#include "foundation/Text.h"

namespace tessel {

PlatformError::PlatformError(std::string domain, int code, std::string localizedDescription) :
    domainName(std::move(domain)),
    errorCode(code),
    description(std::move(localizedDescription)) {}

std::string systemErrorText(int code) {
    return std::generic_category().message(code);
}

PlatformError posixError(const std::string& subject, int code) {
    return {posixErrorDomain, code, printable(subject) + ": " + systemErrorText(code) + "."};
}

}  // namespace tessel
