#pragma once

#include <memory>
#include <string>

#include "platform/Desktop.h"

namespace tessel {

/// Keeps the computer from falling asleep until the result is dropped. Where that can't be had, nothing
/// happens.
std::unique_ptr<TemporaryActivity> blockSleep(const std::string& reason);

}  // namespace tessel
