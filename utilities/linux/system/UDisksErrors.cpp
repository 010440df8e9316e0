#include "utilities/linux/system/UDisksErrors.h"

#include <locale.h>
#include <udisks/udisks.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <optional>
#include <vector>

namespace tessel {

namespace {

bool hasCode(const GError& error, UDisksError code) {
    return error.domain == udisks_error_quark() && error.code == code;
}

/// Returns the message without the name of the error, which the bus puts in front of it.
std::string ownWords(const GError& error) {
    const OwnedError copy(g_error_copy(&error));
    g_dbus_error_strip_remote_error(copy.get());
    return copy->message;
}

/// Returns advice that the message of UDisks2 lacks: it is the same whether no user could be asked,
/// authentication failed or the rules forbid it. A dismissed dialog is another error, except on Plasma.
std::optional<std::string> adviceOnAuthorization(const GError& error) {
    if (hasCode(error, UDISKS_ERROR_NOT_AUTHORIZED_CAN_OBTAIN))
        return "Nobody could be asked, because no authentication agent is running in this session. Start the "
               "polkit agent of your desktop, such as lxpolkit, and try again.";
    if (hasCode(error, UDISKS_ERROR_NOT_AUTHORIZED))
        return "Authentication failed or was cancelled, or the polkit rules of this computer forbid it. If "
               "no dialog was shown, start the polkit agent of your desktop, such as lxpolkit, and try "
               "again.";
    return std::nullopt;
}

/// Returns the languages, besides English, in which the programs of this computer may report: the user's and
/// the system's own.
std::vector<std::string> localeNames() {
    std::vector<std::string> names;
    if (const char* const language = std::getenv("LANG")) names.emplace_back(language);
    for (const char* const path : {"/etc/locale.conf", "/etc/default/locale"}) {
        std::ifstream settings(path);
        for (std::string line; std::getline(settings, line);) {
            std::erase(line, '"');
            if (line.starts_with("LANG=")) names.push_back(line.substr(5));
        }
    }
    return names;
}

/// Returns whether the text contains the system's text for this errno, in any of those languages.
bool mentions(const std::string& text, int error) {
    if (text.find(systemErrorText(error)) != std::string::npos) return true;
    const auto names = localeNames();
    return std::ranges::any_of(names, [&](const std::string& name) {
        const locale_t locale = newlocale(LC_CTYPE_MASK | LC_MESSAGES_MASK, name.c_str(), nullptr);
        if (!locale) return false;
        const std::string words = strerror_l(error, locale);
        freelocale(locale);
        return text.find(words) != std::string::npos;
    });
}

}  // namespace

bool isBusy(const GError& error) {
    // A failed exclusive opening has no code of its own, only the system's text in the language of the
    // service.
    return hasCode(error, UDISKS_ERROR_DEVICE_BUSY) ||
           (hasCode(error, UDISKS_ERROR_FAILED) && mentions(ownWords(error), EBUSY));
}

bool isFailedAttempt(const GError& error) {
    return hasCode(error, UDISKS_ERROR_FAILED) || hasCode(error, UDISKS_ERROR_NOT_SUPPORTED);
}

bool isUnauthorized(const GError& error) {
    return hasCode(error, UDISKS_ERROR_NOT_AUTHORIZED) ||
           hasCode(error, UDISKS_ERROR_NOT_AUTHORIZED_CAN_OBTAIN);
}

bool isWithoutAnswer(const GError& error) {
    return g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_CANCELLED) ||
           g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
           g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_CLOSED) ||
           g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_TIMEOUT) ||
           g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY);
}

PlatformError refusal(const GError& error) {
    const auto worded = [&](const std::string& text) { return PlatformError(error.code, text); };
    if (hasCode(error, UDISKS_ERROR_NOT_AUTHORIZED_DISMISSED)) return worded("User canceled.");
    if (isWithoutAnswer(error)) return worded("The disk service UDisks2 did not answer. Try again.");
    if (isBusy(error)) return worded("Resource busy: " + ownWords(error));
    if (const auto advice = adviceOnAuthorization(error)) return worded(ownWords(error) + ". " + *advice);
    return worded(ownWords(error));
}

}  // namespace tessel
