#include <QApplication>
#include <span>

#include "app/CommandLine.h"
#include "app/VelmoraTesselApp.h"
#include "platform/BlockDevice.h"
#include "platform/qt/DiskChanges.h"
#include "platform/qt/TerminationSignal.h"

int main(int argc, char* argv[]) {
    if (const auto status = tessel::answerCommandLine(std::span(argv + 1, argv + argc))) return *status;
    tessel::TerminationSignal terminationSignal;
    const QApplication qtApplication(argc, argv);
    tessel::prepareApplication();
    tessel::VelmoraTesselApp application({.utilities = tessel::installedUtilities(),
                                          .makeDevice = tessel::makeBlockDevice,
                                          .watch = tessel::watchDisks});
    return application.run(terminationSignal);
}
