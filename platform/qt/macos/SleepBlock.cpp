#include "platform/qt/SleepBlock.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

#include "foundation/Errors.h"
#include "platform/Process.h"

namespace tessel {

namespace {

/// The system's own program for this, which ends with this one at the latest.
class Caffeinate : public TemporaryActivity {
  public:
    Caffeinate() :
        // Not this program's own outputs: giving a child a descriptor under its own number may fail here.
        silence(open("/dev/null", O_WRONLY | O_CLOEXEC)),
        process(Process::launch({.executable = "/usr/bin/caffeinate",
                                 .arguments = {"-i", "-w", std::to_string(getpid())},
                                 .environment = {}},
                                {.standardOutput = silence.get(), .standardError = silence.get()})) {}

  private:
    FileDescriptor silence;
    Process process;
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
