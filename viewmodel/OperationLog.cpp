#include "viewmodel/OperationLog.h"

#include <array>
#include <ctime>
#include <utility>

#include "foundation/Errors.h"

namespace tessel {

namespace {

/// Returns the local time as "14:03:27".
std::string timeOfDayText() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::array<char, sizeof "00:00:00"> text{};
    std::strftime(text.data(), text.size(), "%H:%M:%S", &local);
    return text.data();
}

}  // namespace

void OperationLog::appendLog(const std::string& message) {
    auto line = "[" + timeOfDayText() + "] " + message;
    logLines.modify([&line](auto& lines) { lines.push_back(std::move(line)); });
}

void OperationLog::appendLog(const std::exception_ptr& error) {
    appendLog("Error: " + localizedDescription(error));
}

void OperationLog::clear() {
    joined = {};
    logLines = {};
}

const std::string& OperationLog::logText() const {
    static const std::string emptyText = "No operation messages yet.";
    const auto& lines = logLines();
    for (; joined.count < lines.size(); ++joined.count) {
        if (joined.count > 0) joined.text += '\n';
        joined.text += lines[joined.count];
    }
    return lines.empty() ? emptyText : joined.text;
}

}  // namespace tessel
