#include <QApplication>
#include <filesystem>

#include "app/Application.h"
#include "platform/LockedBlockDevice.h"
#include "platform/qt/TerminationSignal.h"

namespace {

/// The utilities that are installed beside this program. Nothing outside this file chooses them.
tessel::SystemUtilities installedUtilities() {
    const auto executable = std::filesystem::read_symlink("/proc/self/exe");
    const auto folder = executable.parent_path().parent_path() / "libexec" / "velmora-tessel";
    return {.diskUtility = folder / "diskutil", .authorizationUtility = folder / "authopen"};
}

}  // namespace

int main(int argc, char* argv[]) {
    tessel::TerminationSignal terminationSignal;
    const QApplication qtApplication(argc, argv);
    tessel::prepareApplication();
    tessel::Application application(
        {.utilities = installedUtilities(), .makeDevice = tessel::makeBlockDevice});
    return application.run(terminationSignal);
}
