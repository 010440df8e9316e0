#include "platform/qt/SleepBlock.h"

#include <unistd.h>

#include "foundation/Errors.h"
#include "platform/Process.h"

namespace tessel {

namespace {

/// Runs the system's own program for this, which ends with this one at the latest.
struct Caffeinate : TemporaryActivity {
    Process process{{.executable = "/usr/bin/caffeinate",
                     .arguments = {"-i", "-w", std::to_string(getpid())},
                     .environment = {}},
                    {.standardOutput = STDOUT_FILENO, .standardError = STDERR_FILENO}};
};

}  // namespace

std::unique_ptr<TemporaryActivity> blockSleep(const std::string&) {
    try {
        return std::make_unique<Caffeinate>();
    } catch (const PlatformError&) {
        return nullptr;
    }
}

}  // namespace tessel
