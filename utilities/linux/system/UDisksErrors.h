#pragma once

#include <gio/gio.h>

#include <memory>

#include "foundation/Errors.h"
#include "foundation/Release.h"

namespace tessel {

using OwnedError = std::unique_ptr<GError, Release<g_error_free>>;

/// Returns whether another program uses the device.
[[nodiscard]] bool isBusy(const GError& error);

/// Returns whether UDisks2 tried and failed, rather than refused or disappeared.
[[nodiscard]] bool isFailedAttempt(const GError& error);

/// Returns whether polkit denies the operation, or allows it only after authentication.
[[nodiscard]] bool isUnauthorized(const GError& error);

/// Returns whether UDisks2, or the bus to it, did not answer or disappeared.
[[nodiscard]] bool isWithoutAnswer(const GError& error);

/// Returns the error to throw, whose text reads as a cancellation only after a dismissed dialog.
[[nodiscard]] PlatformError refusal(const GError& error);

}  // namespace tessel
