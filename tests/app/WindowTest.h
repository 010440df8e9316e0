#pragma once

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QTest>
#include <functional>
#include <memory>
#include <source_location>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/VelmoraTesselApp.h"
#include "rehearsal/SimulatedReader.h"
#include "rehearsal/window/WidgetSearch.h"
#include "tests/app/HeldCard.h"
#include "tests/support/TemporaryFolder.h"
#include "views/alerts/AlertDialog.h"
#include "views/controls/Style.h"
#include "views/disks/CompactDiskRow.h"

namespace tessel {

/// The program's window on a simulated reader, operated with real mouse and key events. The reader has a
/// system disk (disk0), two cards (disk4, disk5) and a USB stick (disk7). Searches that find nothing throw.
class WindowTest : public testing::Test {
  protected:
    using Condition = std::function<bool()>;

    static constexpr uint64_t cardSize = uint64_t{600'000'000} / 512 * 512;
    static constexpr size_t imageSize = 20'000'001;  ///< in bytes: three chunks

    WindowTest();
    ~WindowTest() override;

    /// Starts the program, shows its window and waits for the first scan to end.
    void open();
    /// Opens the window and chooses an image and disk4.
    void openReady();
    /// Opens the window and confirms the write.
    void startWrite();
    /// Opens the window, confirms the write and waits until the first chunk is written.
    void openWriting();

    ContentView& window() { return application->window(); }
    TesselViewModel& viewModel() { return application->viewModel(); }
    /// Handles events until the condition holds.
    void until(const Condition& holds, std::source_location caller = std::source_location::current());
    void untilIdle();

    // What can be seen

    /// Returns the only visible widget of a class.
    template <typename T>
    T& the() {
        const auto found = shownWidgets<T>(window());
        if (found.size() != 1) throw std::runtime_error(std::string("not one ") + typeid(T).name());
        return *found.front();
    }
    template <typename T>
    T& control(const QString& text) {
        if (T* found = shownControl<T>(alert() ? static_cast<QWidget&>(*alert()) : window(), text))
            return *found;
        throw std::runtime_error("no control " + text.toStdString());
    }
    Button& button(const QString& text) { return control<Button>(text); }
    /// Returns every text that labels, fields and buttons below the widget show.
    static std::vector<std::string> textsIn(const QWidget& widget);
    std::vector<std::string> texts() { return textsIn(window()); }
    std::string badge();
    /// Returns the lines of the log as the window shows them, without their times.
    std::vector<std::string> log();
    std::vector<std::string> shownDisks();
    CompactDiskRow& row(const std::string& diskID);
    AlertDialog* alert() const;
    AlertDialog* alertTitled(const QString& title) const;
    /// Returns the operations on a disk that the reader was asked for, such as "unmountDisk", "authopen",
    /// "eject".
    std::vector<std::string> deeds() const;

    // What the user does

    /// Waits until keys are accepted again after something has appeared.
    static void notice() { QTest::qWait(1100); }
    static void click(QWidget& widget, QPoint position = {12, 12});
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void clickTarget(const std::string& diskID);
    void clickRow(const std::string& diskID);
    /// Opens the panel and answers it with the button of that text.
    void answerPanel(const std::filesystem::path& image, const QString& answer = "Select Image");
    /// Presses "Select Image" and waits for the open panel.
    QWidget& openPanel();
    /// Presses the button that scans again.
    void rescan();

    TemporaryFolder folder;
    SimulatedReader reader{folder.path() / "reader", TESSEL_SIMULATED_PROGRAMS};
    std::filesystem::path image;
    HeldCard::Holds holds;
    std::unique_ptr<VelmoraTesselApp> application;
};

}  // namespace tessel
