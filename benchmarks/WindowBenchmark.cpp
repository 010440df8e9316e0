/// Measures how soon the window appears, and the longest time that it ever keeps the user waiting.

#include <unistd.h>

#include <QApplication>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

#include "app/VelmoraTesselApp.h"
#include "benchmarks/Table.h"
#include "platform/Process.h"
#include "platform/concurrency/Background.h"
#include "rehearsal/FileDevice.h"
#include "rehearsal/Stage.h"
#include "rehearsal/StandardMachine.h"
#include "rehearsal/window/ScriptedUser.h"

namespace tessel::benchmark {

namespace {

constexpr int rounds = 5;

/// Ends the process as soon as the first frame of the window has been painted.
class EndAtFirstPaint : public QObject {
  public:
    explicit EndAtFirstPaint(QWidget& window) { window.installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) QTimer::singleShot(0, [] { std::_Exit(EXIT_SUCCESS); });
        return false;
    }
};

int showUntilFirstPaint(const SystemUtilities& utilities) {
    VelmoraTesselApp application({.utilities = utilities, .makeDevice = makeRehearsalDevice});
    const EndAtFirstPaint end(application.window());
    application.run();
    return EXIT_FAILURE;
}

void measureFirstPaint(const std::filesystem::path& program) {
    Stage stage;
    const auto utilities = stage.reader().utilities();
    const auto showOnce = [&] {
        Process process({.executable = program,
                         .arguments = {"--first-paint", utilities.diskUtility.string(),
                                       utilities.authorizationUtility.string()},
                         .environment = {}},
                        {.standardOutput = STDOUT_FILENO, .standardError = STDERR_FILENO});
        if (!process.waitUntilExit({.streams = {}, .timeout = std::nullopt}).termination.isSuccess())
            throw std::runtime_error("the window was not painted");
    };
    showOnce();  // warms the cache
    double best = 1e9;
    for (int round = 0; round < rounds; ++round)
        best = std::min(best, secondsOf(showOnce));
    printRow({"process start to first painted window / 300 ms", best * 1000, 300, "ms", 1.0});
}

/// Measures the longest time, in milliseconds, between two timer events of the event loop while `counts`
/// holds.
class LongestTurn {
  public:
    explicit LongestTurn(std::function<bool()> counts) : counts(std::move(counts)) {
        pulse.setTimerType(Qt::PreciseTimer);
        pulse.callOnTimeout([this] { beat(); });
        pulse.start(std::chrono::milliseconds(1));
    }

    double milliseconds() const { return longest.count(); }

  private:
    void beat() {
        const auto now = std::chrono::steady_clock::now();
        if (counts()) longest = std::max<std::chrono::duration<double, std::milli>>(longest, now - last);
        last = now;
    }

    std::function<bool()> counts;
    QTimer pulse;
    std::chrono::steady_clock::time_point last = std::chrono::steady_clock::now();
    std::chrono::duration<double, std::milli> longest{0};
};

/// Plays a user who rescans the disks and then writes the card.
struct Play {
    VelmoraTesselApp& application;
    bool isScanning = false;
    std::exception_ptr error = nullptr;

    Task<> run() {
        try {
            auto& viewModel = application.viewModel();
            while (viewModel.targets().disks().empty())
                co_await sleepFor(std::chrono::milliseconds(100));
            isScanning = true;
            viewModel.refreshDisks();
            while (viewModel.isBusy())
                co_await sleepFor(std::chrono::milliseconds(1));
            isScanning = false;
            ScriptedUser user(application, {.watch = [](const QString&) {}, .listen = [] {}});
            co_await user.writeSuggestedImage(usbReaderCard);
        } catch (const std::exception&) {
            error = std::current_exception();
        }
        application.window().closeWhenWriteEnds();
    }
};

void measureTurns() {
    Stage stage;
    for (const char* disk : {"disk0", "disk2", "disk4", "disk5", "disk6", "disk7"})
        stage.reader().setBehaviour(disk, {.delays = {{"info", 0.2}}});
    VelmoraTesselApp application(
        {.utilities = stage.reader().utilities(), .makeDevice = makeRehearsalDevice});
    application.desktop().setSuggestedFile(stage.makeSampleImage());

    Play play{application};
    const LongestTurn scanning([&] { return play.isScanning; });
    const LongestTurn writing([&] { return application.viewModel().write().exists(); });
    startTask(application.mainThread(), play.run());
    application.run();
    if (play.error) std::rethrow_exception(play.error);
    printRow({"longest turn while slow disks are scanned / 50 ms", scanning.milliseconds(), 50, "ms", 1.0});
    printRow({"longest turn of a write at full speed / 50 ms", writing.milliseconds(), 50, "ms", 1.0});
}

}  // namespace

}  // namespace tessel::benchmark

int main(int argc, char* argv[]) {
    using namespace tessel::benchmark;
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication qtApplication(argc, argv);
    tessel::prepareApplication();
    if (argc == 4 && std::string(argv[1]) == "--first-paint")
        return showUntilFirstPaint({.diskUtility = argv[2], .authorizationUtility = argv[3]});
    printHeader("The window");
    measureFirstPaint(std::filesystem::read_symlink("/proc/self/exe"));
    measureTurns();
}
