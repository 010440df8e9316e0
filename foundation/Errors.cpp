#include "foundation/Errors.h"

#include <new>
#include <system_error>

#include "foundation/Text.h"

namespace tessel {

std::string localizedDescription(const std::exception_ptr& error) {
    if (const auto own = errorOfType<Error>(error)) return own->localizedDescription();
    if (errorOfType<std::bad_alloc>(error)) return "There is not enough memory.";
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& other) {
        return other.what();
    }
}

std::string systemErrorText(int code) {
    return std::generic_category().message(code);
}

PlatformError posixError(const std::string& subject, int code) {
    return {code, printable(subject) + ": " + systemErrorText(code) + "."};
}

}  // namespace tessel
