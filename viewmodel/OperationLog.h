#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "foundation/Published.h"

namespace tessel {

/// Records what the program has done, as lines with the time of day. It only grows until it is cleared. Use
/// it on the main thread only.
class OperationLog {
  public:
    explicit OperationLog(const std::function<void()>& onChange) : published(onChange, {}) {}

    void append(const std::string& message);
    /// Appends "Error: " and the sentence that describes the error.
    void append(const std::exception_ptr& error);
    void clear();

    [[nodiscard]] const std::vector<std::string>& lines() const { return published(); }

    /// Returns all lines as one text, or a placeholder if the log is empty. After the log has grown, this
    /// costs no more than the new lines do.
    [[nodiscard]] const std::string& text() const;

  private:
    /// Holds the first lines of the log, already joined.
    struct JoinedLines {
        std::string text;
        size_t count = 0;
    };

    Published<std::vector<std::string>> published;
    mutable JoinedLines joined;
};

}  // namespace tessel
