#include "tests/app/WindowTest.h"

#include <QLabel>
#include <QLineEdit>
#include <algorithm>
#include <sstream>

#include "rehearsal/FileDevice.h"
#include "rehearsal/window/ReaderWatch.h"
#include "views/controls/StatusBadge.h"
#include "views/controls/TextLabel.h"
#include "views/log/OperationLogView.h"

namespace tessel {

WindowTest::WindowTest() : image(folder.write("os.img", std::string(imageSize, 'x'))) {
    using Medium = SimulatedDisk::Medium;
    const SimulatedDisk disks[] = {
        {.identifier = "disk0",
         .mediaName = "Internal NVMe SSD",
         .sizeBytes = 500'000'000'000,
         .busProtocol = "PCI-Express",
         .deviceLocation = "Internal",
         .isInternal = true,
         .isRemovable = false,
         .isEjectable = false,
         .medium = Medium::none},
        {.identifier = "disk4", .mediaName = "SDHC Card", .sizeBytes = cardSize},
        {.identifier = "disk5", .mediaName = "SDXC Card", .sizeBytes = cardSize, .medium = Medium::none},
        {.identifier = "disk7",
         .mediaName = "USB Stick",
         .sizeBytes = 16'000'000'000,
         .medium = Medium::none},
    };
    for (const auto& disk : disks)
        reader.addDisk(disk);
}

WindowTest::~WindowTest() {
    holds.writing.release();
    holds.reading.release();
    slowImage.release();
    if (application) untilIdle();
}

void WindowTest::open() {
    const auto makeDevice = [this](FileDescriptor descriptor) {
        return std::make_unique<HeldCard>(makeRehearsalDevice(std::move(descriptor)), holds);
    };
    const auto watch = [this](std::function<void(const DiskChange&)> onChange) {
        return watchReader(reader.path(), std::move(onChange));
    };
    application =
        std::make_unique<VelmoraTesselApp>(VelmoraTesselApp::Disks{reader.utilities(), makeDevice, watch});
    window().fitInto({{1920, 1080}});
    window().show();
    window().activateWindow();
    if (!QTest::qWaitForWindowActive(&window())) throw std::runtime_error("the window is not active");
    until([this] { return viewModel().didPerformInitialScan(); });
    untilIdle();
}

void WindowTest::openReady() {
    open();
    answerPanel(image);
    clickTarget("disk4");
    until([this] { return button("Write Disk Image").isEnabled(); });
}

void WindowTest::startWrite() {
    openReady();
    click(button("Write Disk Image"));
    click(button("Erase and Write to disk4"));
}

void WindowTest::openWriting() {
    holds.writing.hold();
    startWrite();
    until([this] { return viewModel().progress().writeProgressDetail == "8.4 MB of 20 MB written."; });
    QTest::qWait(1);
}

void WindowTest::until(const Condition& holdsNow, std::source_location caller) {
    constexpr int milliseconds = 30'000;
    if (QTest::qWaitFor(holdsNow, milliseconds)) return;
    throw std::runtime_error("waited in vain in line " + std::to_string(caller.line()));
}

void WindowTest::untilIdle() {
    until([this] { return !viewModel().isBusy() && !viewModel().write().exists(); });
    QTest::qWait(1);  // changes are shown in the next turn
}

std::vector<std::string> WindowTest::textsIn(const QWidget& widget) {
    std::vector<std::string> texts;
    for (auto* label : shownWidgets<QLabel>(widget))
        texts.push_back(label->text().toStdString());
    for (auto* field : shownWidgets<QLineEdit>(widget))
        texts.push_back(field->text().toStdString());
    for (auto* button : shownWidgets<QAbstractButton>(widget))
        texts.push_back(button->text().toStdString());
    return texts;
}

std::string WindowTest::badge() {
    return textsIn(the<StatusBadge>()).front();
}

std::vector<std::string> WindowTest::log() {
    std::istringstream text(the<OperationLogView>().toPlainText().toStdString());
    std::vector<std::string> lines;
    constexpr size_t timeLength = std::string_view("[12:34:56] ").size();
    for (std::string line; std::getline(text, line);)
        lines.push_back(line.starts_with('[') ? line.substr(timeLength) : line);
    return lines;
}

std::vector<std::string> WindowTest::shownDisks() {
    auto rows = shownWidgets<CompactDiskRow>(window());
    std::ranges::sort(rows, {}, [](const CompactDiskRow* each) { return each->y(); });
    std::vector<std::string> identifiers;
    for (const auto* each : rows)
        identifiers.push_back(each->fields().disk.id);
    return identifiers;
}

CompactDiskRow& WindowTest::row(const std::string& diskID) {
    for (auto* each : shownWidgets<CompactDiskRow>(window())) {
        if (each->fields().disk.id == diskID) return *each;
    }
    throw std::runtime_error("no row of " + diskID);
}

AlertDialog* WindowTest::alert() const {
    return dynamic_cast<AlertDialog*>(QApplication::activeModalWidget());
}

AlertDialog* WindowTest::alertTitled(const QString& title) const {
    return alert() && alert()->windowTitle() == title ? alert() : nullptr;
}

std::vector<std::string> WindowTest::deeds() const {
    std::vector<std::string> done;
    for (const auto& call : reader.calls()) {
        if (call.starts_with("authopen")) done.emplace_back("authopen");
        for (const std::string command : {"unmountDisk", "eject"}) {
            if (call.starts_with("diskutil " + command)) done.push_back(command);
        }
    }
    return done;
}

void WindowTest::click(QWidget& widget, QPoint position) {
    if (qobject_cast<QDialog*>(widget.window())) QTest::qWait(QApplication::doubleClickInterval());
    QTest::mouseClick(&widget, Qt::LeftButton, {}, position);
}

void WindowTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    auto* dialog = QApplication::activeModalWidget();
    auto* active = dialog ? dialog : &window();
    active->activateWindow();  // off screen no window manager does this when a dialog closes
    until([active] { return active->isActiveWindow(); });
    QTest::keyClick(active->focusWidget() ? active->focusWidget() : active, key, modifiers);
}

void WindowTest::clickTarget(const std::string& diskID) {
    constexpr QPoint targetCell(30, 25);
    auto& disk = row(diskID);
    auto* under = disk.childAt(targetCell);
    click(*under, under->mapFrom(&disk, targetCell));
}

void WindowTest::clickRow(const std::string& diskID) {
    click(row(diskID), {300, 25});
}

QWidget& WindowTest::openPanel() {
    click(button("Select Image"));
    until([] { return QApplication::activeModalWidget(); });
    return *QApplication::activeModalWidget();
}

void WindowTest::answerPanel(const std::filesystem::path& file, const QString& answer) {
    application->desktop().setSuggestedFile(file);
    auto* answering = shownControl<QPushButton>(openPanel(), answer);
    if (!answering) throw std::runtime_error("the panel has no such button");
    click(*answering);
    untilIdle();
}

void WindowTest::rescan() {
    click(button("Refresh Disks"));
    until([this] { return viewModel().isBusy(); });
    untilIdle();
}

}  // namespace tessel
