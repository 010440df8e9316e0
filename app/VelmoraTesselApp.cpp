#include "app/VelmoraTesselApp.h"

#include <QApplication>
#include <QSessionManager>
#include <cstdio>
#include <cstdlib>

#include "platform/qt/DesktopLook.h"
#include "platform/qt/QtMainThread.h"
#include "platform/qt/TerminationRequests.h"
#include "views/alerts/AlertDialog.h"
#include "views/controls/Style.h"
#include "views/controls/Symbol.h"

namespace tessel {

namespace {

AlertDialog::Fields fieldsOf(const Desktop::Alert& alert) {
    return {.symbol = QString::fromStdString(alert.symbol),
            .symbolTone = Tone::green,
            .symbolDescription = QString::fromStdString(alert.symbolDescription),
            .message = QString::fromStdString(alert.message),
            .informativeText = QString::fromStdString(alert.informativeText),
            .actions = {{.title = QString::fromStdString(alert.button), .look = Button::Look::prominent}}};
}

ImageWriterService makeWriterService(const VelmoraTesselApp::Disks& disks) {
    return {DiskService(disks.utilities.diskUtility),
            RawDiskOpener(disks.utilities.authorizationUtility, disks.makeDevice)};
}

/// Drops the warnings that lead to a fatal message, which say the same in words that are no use to the user.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type != QtFatalMsg) return;
    const QString reason = isDisplayNamed()
                               ? "No window can be opened on the display: " + message.section('\n', 0, 0)
                               : "There is no display to open a window on.";
    std::fprintf(stderr, "velmora-tessel: %s\n", qPrintable(reason));
    std::_Exit(EXIT_FAILURE);
}

/// Returns the installed icon, or a drawing of it where none is installed.
QIcon programIcon() {
    QIcon drawn;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        drawn.addPixmap(symbolPixmap("sdcard.fill", size, QColor("#2f9e5b"), 1));
    return QIcon::fromTheme("velmora-tessel", drawn);
}

}  // namespace

VelmoraTesselApp::VelmoraTesselApp(const Disks& disks) :
    thread(std::make_shared<QtMainThread>()),
    qtDesktop([this](const Desktop::Alert& alert) { contentView.present(fieldsOf(alert)); }),
    model(TesselViewModel::create({.mainThread = thread,
                                   .desktop = qtDesktop,
                                   .diskService = DiskService(disks.utilities.diskUtility),
                                   .imageWriterService = makeWriterService(disks)})),
    contentView(model) {
    qtDesktop.setWindow(&contentView);
    if (disks.watch)
        diskWatch = disks.watch([this](const DiskChange& change) { model->noteDiskChange(change); });
}

int VelmoraTesselApp::run() {
    terminationWatch.reset();
    terminationWatch = watchTerminationRequests([this] { contentView.closeWhenWriteEnds(); });
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, &contentView, [this](QSessionManager&) {
        contentView.closeWhenWriteEnds();
        handleEventsUntil([this] { return !model->write().exists(); });
    });
    contentView.show();
    const int status = QApplication::exec();
    handleEventsUntil([this] { return !model->isBusy(); });
    return status;
}

bool isDisplayNamed() {
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

std::unique_ptr<QApplication> connectToDisplay(int& argumentCount, char** arguments) {
    const auto usualHandler = qInstallMessageHandler(endWithoutDisplay);
    auto application = std::make_unique<QApplication>(argumentCount, arguments);
    qInstallMessageHandler(usualHandler);
    return application;
}

void prepareApplication() {
    QApplication::setApplicationName("velmora-tessel");
    QApplication::setApplicationDisplayName("Velmora Tessel");
    QApplication::setDesktopFileName("velmora-tessel");
    QApplication::setStyle("Fusion");
    QApplication::setCursorFlashTime(0);  // the log has a text cursor, but nothing is ever typed there
    QApplication::setWindowIcon(programIcon());
}

std::unique_ptr<TemporaryActivity> followDesktopLook() {
    return watchDesktopLook([usual = QApplication::font(), scale = 1.0](const DesktopLook& look) mutable {
        QApplication::setPalette(QPalette());  // the toolkit's own
        const bool isDark = QApplication::palette().window().color().lightness() < 128;
        if (look.isDark && !isDark) QApplication::setPalette(darkPalette());
        // On X11 the resolution of the display contains the scale.
        const bool isScaled = !QGuiApplication::platformName().startsWith("wayland");
        if (isScaled || scale == look.textScale) return;
        scale = look.textScale;
        QFont scaled = usual;
        scaled.setPointSizeF(QFontInfo(usual).pointSizeF() * scale);
        QApplication::setFont(scaled);
    });
}

}  // namespace tessel
