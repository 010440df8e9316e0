#pragma once

#include <optional>
#include <span>

class QString;

/// What the program says about itself.
namespace tessel {

/// What a command line asks for, other than the window.
struct CommandLineAnswer {
    std::optional<int> exitStatus;  ///< of a command line that has been answered already
    bool wantsManual = false;       ///< instead of the window
};

/// Prints what the arguments ask for, or why they are not understood. Needs no display.
[[nodiscard]] CommandLineAnswer answerCommandLine(std::span<char* const> arguments);

/// Returns the name, the version and how the manual is opened.
[[nodiscard]] QString aboutText();

/// Opens the installed manual with the desktop's own viewer. Returns why that failed, or an empty text.
[[nodiscard]] QString openManual();

}  // namespace tessel
