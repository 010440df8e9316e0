#include <QApplication>

#include "app/Application.h"
#include "platform/BlockDevice.h"
#include "platform/qt/DiskChanges.h"
#include "platform/qt/TerminationSignal.h"

int main(int argc, char* argv[]) {
    tessel::TerminationSignal terminationSignal;
    const QApplication qtApplication(argc, argv);
    tessel::prepareApplication();
    tessel::Application application({.utilities = tessel::installedUtilities(),
                                     .makeDevice = tessel::makeBlockDevice,
                                     .watch = tessel::watchDisks});
    return application.run(terminationSignal);
}
