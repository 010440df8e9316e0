#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "foundation/Published.h"

namespace tessel {

/// Records what the program has done, as lines with the time of day. It only grows until it is cleared. It
/// may be used on the main thread only.
class OperationLog {
  public:
    explicit OperationLog(const std::function<void()>& onChange) : logLines(onChange, {}) {}

    Published<std::vector<std::string>> logLines;

    /// Returns all lines as one text, or a placeholder if the log is empty. After the log has grown, this
    /// costs no more than the new lines do.
    [[nodiscard]] const std::string& logText() const;

    void appendLog(const std::string& message);
    /// Appends "Error: " and the sentence that describes the error.
    void appendLog(const std::exception_ptr& error);
    void clear();

  private:
    /// The first lines of the log, already joined.
    struct JoinedLines {
        std::string text;
        size_t count = 0;
    };

    mutable JoinedLines joined;
};

}  // namespace tessel
