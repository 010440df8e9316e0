// Measures what one more line costs the operation log once it is long: the call that shows it, and the turn
// of the event loop that scrolls and paints.
#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <ctime>
#include <string>
#include <vector>

#include "benchmarks/Table.h"
#include "views/log/OperationLogView.h"

namespace {

constexpr std::size_t lineCount = 100'000;
constexpr std::size_t addedLineCount = 201;

std::string line(std::size_t number) {
    return "[12:34:56] Entry " + std::to_string(number) + ": a message of an ordinary length about the card.";
}

/// Returns the processor time that the work takes, in milliseconds. Waiting for events costs nothing.
template <typename Work>
double costOf(Work work) {
    const std::clock_t start = std::clock();
    work();
    return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// Runs the event loop long enough for both scrolls and the painting to finish.
void turnEventLoop() {
    QEventLoop loop;
    QTimer::singleShot(20, &loop, &QEventLoop::quit);
    loop.exec();
}

double median(std::vector<double> costs) {
    std::ranges::nth_element(costs, costs.begin() + static_cast<std::ptrdiff_t>(costs.size() / 2));
    return costs[costs.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);

    std::string text = line(1);
    for (std::size_t number = 2; number <= lineCount; ++number)
        text += "\n" + line(number);
    tessel::OperationLogView view(std::chrono::seconds(5));
    view.resize(410, 300);
    view.show();
    view.setLog(text, lineCount);
    turnEventLoop();

    std::vector<double> updates, turns;
    for (std::size_t number = lineCount + 1; number <= lineCount + addedLineCount; ++number) {
        text += "\n" + line(number);
        const std::string published = text;  // each call gets a text object of its own
        updates.push_back(costOf([&] { view.setLog(published, number); }));
        turns.push_back(costOf(turnEventLoop));
    }
    using namespace tessel::benchmark;
    printHeader("One more line at 100,000 lines, in processor time, against the longest that is allowed");
    printRow({"update and turn of the event loop / limit", median(updates) + median(turns), 5, "ms", 1.0});
}
