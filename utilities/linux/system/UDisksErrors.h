#pragma once

#include <gio/gio.h>

#include <memory>

#include "foundation/Errors.h"
#include "foundation/Release.h"

namespace tessel {

using OwnedError = std::unique_ptr<GError, Release<g_error_free>>;

/// Whether somebody uses what was to be changed.
[[nodiscard]] bool isBusy(const GError& error);

/// Whether UDisks2 tried, and what it tried failed; not that it was refused, or went away.
[[nodiscard]] bool isFailedAttempt(const GError& error);

/// Whether UDisks2, or the bus to it, said nothing, or went away before it did.
[[nodiscard]] bool isWithoutAnswer(const GError& error);

/// The refusal of UDisks2, worded so that a dismissed dialog reads as a cancellation and nothing else does.
[[nodiscard]] PlatformError refusal(const GError& error);

}  // namespace tessel
