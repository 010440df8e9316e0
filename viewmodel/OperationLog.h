#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "foundation/Published.h"

namespace tessel {

/// What the program has done, as lines with the time of day. It only grows, until it is cleared. Main thread
/// only.
class OperationLog {
  public:
    explicit OperationLog(const std::function<void()>& onChange) : published(onChange, {}) {}

    void append(const std::string& message);
    /// Appends "Error: " and the error's sentence.
    void append(const std::exception_ptr& error);
    void clear();

    [[nodiscard]] const std::vector<std::string>& lines() const { return published(); }

    /// All lines as one text, or what stands for an empty log. After growth it costs no more than the new
    /// lines.
    [[nodiscard]] const std::string& text() const;

  private:
    /// The first lines of the log, joined.
    struct JoinedLines {
        std::string text;
        size_t count = 0;
    };

    Published<std::vector<std::string>> published;
    mutable JoinedLines joined;
};

}  // namespace tessel
