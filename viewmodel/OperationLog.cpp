#include "viewmodel/OperationLog.h"

#include <utility>

#include "model/TesselError.h"
#include "platform/TimeOfDay.h"

namespace tessel {

void OperationLog::append(const std::string& message) {
    auto line = "[" + timeOfDayText() + "] " + message;
    published.modify([&line](auto& lines) { lines.push_back(std::move(line)); });
}

void OperationLog::append(const std::exception_ptr& error) {
    append("Error: " + localizedDescription(error));
}

void OperationLog::clear() {
    joined = {};
    published = {};
}

const std::string& OperationLog::text() const {
    static const std::string emptyText = "No operation messages yet.";
    for (; joined.count < lines().size(); ++joined.count) {
        if (joined.count > 0) joined.text += '\n';
        joined.text += lines()[joined.count];
    }
    return lines().empty() ? emptyText : joined.text;
}

}  // namespace tessel
