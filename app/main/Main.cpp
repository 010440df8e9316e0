#include <QApplication>
#include <cstdio>
#include <span>

#include "app/About.h"
#include "app/VelmoraTesselApp.h"
#include "platform/BlockDevice.h"
#include "platform/qt/DiskChanges.h"

int main(int argc, char* argv[]) {
    const auto answer = tessel::answerCommandLine(std::span(argv + 1, argv + argc));
    if (answer.exitStatus) return *answer.exitStatus;
    const auto qtApplication = tessel::connectToDisplay(argc, argv);
    if (answer.wantsManual) {
        const auto failure = tessel::openManual();
        if (!failure.isEmpty()) std::fprintf(stderr, "velmora-tessel: %s\n", qPrintable(failure));
        return failure.isEmpty() ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    tessel::prepareApplication();
    const auto look = tessel::followDesktopLook();
    tessel::VelmoraTesselApp application({.utilities = tessel::installedUtilities(),
                                          .makeDevice = tessel::makeBlockDevice,
                                          .watch = tessel::watchDisks});
    return application.run();
}
