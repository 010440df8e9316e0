#include "rehearsal/window/ScriptedUser.h"

#include <QFileDialog>
#include <QPushButton>
#include <QTest>
#include <chrono>
#include <stdexcept>
#include <utility>

#include "platform/concurrency/Background.h"
#include "rehearsal/window/WidgetSearch.h"
#include "views/alerts/AlertDialog.h"
#include "views/controls/Button.h"
#include "views/controls/DisclosureButton.h"
#include "views/controls/Switch.h"
#include "views/disks/CompactDiskRow.h"

namespace tessel {

namespace {

using namespace std::chrono_literals;

constexpr auto timeToRead = 500ms;  ///< the buttons of a new dialog heed no click for 400 of them

/// Returns whether such a dialog is open above the window.
template <typename Dialog>
bool isOpen() {
    return dynamic_cast<Dialog*>(QApplication::activeModalWidget());
}

template <typename Dialog>
Dialog& openDialog() {
    if (auto* dialog = dynamic_cast<Dialog*>(QApplication::activeModalWidget())) return *dialog;
    throw std::runtime_error("A dialog was closed before it was answered.");
}

}  // namespace

Task<> ScriptedUser::writeSuggestedImage(std::string diskID) {
    co_await until("the first scan ends",
                   [this] { return !application.viewModel().targets().disks().empty(); });
    audience.watch("01-scanned");
    co_await lookAround();
    co_await chooseImage();
    co_await chooseCard(diskID);
    co_await confirm();
    co_await watchTheWrite();
}

/// Shows all disks, inspects the system disk and opens its details.
Task<> ScriptedUser::lookAround() {
    auto& window = application.window();
    auto* showAll = shownControl<Switch>(window, "Show All Disks");
    click(showAll);
    co_await until("all disks are listed",
                   [&window] { return shownWidgets<CompactDiskRow>(window).size() > 2; });
    clickRow("disk0", {300, 25});
    co_await until("details are offered",
                   [&window] { return !shownWidgets<DisclosureButton>(window).empty(); });
    click(shownWidgets<DisclosureButton>(window).front());
    co_await until("details are open",
                   [&window] { return shownWidgets<DisclosureButton>(window).size() == 2; });
    click(shownWidgets<DisclosureButton>(window).back());
    co_await sleepFor(50ms);
    audience.watch("02-all-disks");
    click(showAll);
}

Task<> ScriptedUser::chooseImage() {
    click(shownControl<Button>(application.window(), "Select Image"));
    co_await until("the open panel appears", isOpen<QFileDialog>);
    audience.watch("03-open-panel");
    co_await sleepFor(timeToRead);
    click(shownControl<QPushButton>(openDialog<QFileDialog>(), "Select Image"));
    co_await until("the image is selected",
                   [this] { return application.viewModel().image().selectedImage().has_value(); });
    co_await sleepFor(50ms);
    audience.watch("04-image-selected");
}

Task<> ScriptedUser::chooseCard(std::string diskID) {
    clickRow(diskID, {8 + 22, 25});
    co_await until("the target is chosen",
                   [&] { return application.viewModel().targets().selectedDiskID() == diskID; });
    co_await sleepFor(50ms);
    audience.watch("05-target-selected");
}

Task<> ScriptedUser::confirm() {
    click(shownControl<Button>(application.window(), "Write Disk Image"));
    co_await until("the confirmation appears", isOpen<AlertDialog>);
    audience.watch("06-confirmation");
    co_await sleepFor(timeToRead);
    for (auto* button : shownWidgets<Button>(openDialog<AlertDialog>())) {
        if (button->text().startsWith("Erase and Write")) click(button);
    }
    co_await until("the write runs", [this] { return application.viewModel().write().exists(); });
}

Task<> ScriptedUser::watchTheWrite() {
    const auto& viewModel = application.viewModel();
    const auto isIn = [&viewModel](ImageWritePhase phase) {
        return viewModel.progress().currentWritePhase == phase;
    };
    const auto hasComeTo = [&viewModel](double progress) {
        return viewModel.progress().writeOperationProgress >= progress;
    };
    co_await until("half of the image is written",
                   [&] { return hasComeTo(0.35) || !viewModel.write().exists(); });
    if (isIn(ImageWritePhase::writingImage)) audience.watch("07-writing");
    co_await until("half of the image is verified",
                   [&] { return hasComeTo(0.83) || !viewModel.write().exists(); });
    if (isIn(ImageWritePhase::verifyingImage)) audience.watch("08-verifying");
    co_await until("the write ends", [&] { return !viewModel.write().exists(); });
    if (!viewModel.state().isSuccessfulCompletion())
        throw std::runtime_error(viewModel.progress().writeProgressDetail);

    co_await until("the card may be removed", isOpen<AlertDialog>);
    co_await sleepFor(timeToRead);
    audience.watch("09-safe-to-remove");
    click(shownControl<Button>(openDialog<AlertDialog>(), "Done"));
    co_await until("the alert is closed", [] { return !isOpen<AlertDialog>(); });
    audience.watch("10-done");
}

/// Waits until the condition holds, which it checks at short intervals. Throws std::runtime_error if an
/// operation fails, or if neither the progress nor the log moves for a minute.
Task<> ScriptedUser::until(std::string expectation, std::function<bool()> isFulfilled) const {
    const auto& viewModel = application.viewModel();
    const auto position = [&viewModel] {
        return std::pair(viewModel.progress().writeOperationProgress, viewModel.log().logLines().size());
    };
    auto lastPosition = position();
    auto lastMove = std::chrono::steady_clock::now();
    while (!isFulfilled()) {
        audience.listen();
        const auto now = std::chrono::steady_clock::now();
        if (position() != lastPosition) {
            lastPosition = position();
            lastMove = now;
        }
        if (viewModel.state().kind == TesselOperationState::Case::failed)
            throw std::runtime_error(viewModel.state().text + ".");
        if (now - lastMove > 60s) throw std::runtime_error("Waited in vain until " + expectation + ".");
        co_await sleepFor(10ms);
    }
    audience.listen();
    co_await sleepFor(10ms);  // the window shows the change in the next turn of the event loop
}

void ScriptedUser::click(QAbstractButton* button) const {
    if (!button || !button->isVisible())
        throw std::runtime_error("A control is missing, or the window was closed.");
    if (!button->isEnabled())
        throw std::runtime_error("“" + button->text().toStdString() + "” can't be clicked.");
    QTest::mouseClick(button, Qt::LeftButton, {}, {12, button->height() / 2});
}

void ScriptedUser::clickRow(const std::string& diskID, QPoint position) const {
    for (auto* row : shownWidgets<CompactDiskRow>(application.window())) {
        if (row->fields().disk.id != diskID) continue;
        auto* under = row->childAt(position);
        QTest::mouseClick(under ? under : row, Qt::LeftButton, {},
                          under ? under->mapFrom(row, position) : position);
    }
}

}  // namespace tessel
